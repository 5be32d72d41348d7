#include "scenegraph/mxLine.h"

#include "support/mxLogCapture.h"
#include "support/mxTestGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

using mx::mxBoundingVolume;
using mx::mxBuffer;
using mx::mxGeometry;
using mx::mxLine;
using mx::mxPointer;
using mx::test::expectVectorNear;
using Vec3 = Wm4::Vector3<float>;

namespace {

// Vertex coordinates of order 10: a few ulps of that.
constexpr float csTolerance = 1e-5f;

void expectColor(const Wm4::ColorRGBA& expected, const Wm4::ColorRGBA& actual) {
    EXPECT_FLOAT_EQ(expected.R(), actual.R());
    EXPECT_FLOAT_EQ(expected.G(), actual.G());
    EXPECT_FLOAT_EQ(expected.B(), actual.B());
    EXPECT_FLOAT_EQ(expected.A(), actual.A());
}

// A three-vertex polyline (1,2,3) - (4,5,6) - (-7,8,-9).
mxPointer<mxLine> makeBentLine() {
    mxPointer<mxLine> line = new mxLine(3u);
    line->setVertexPosition(0, Vec3(1.0f, 2.0f, 3.0f));
    line->setVertexPosition(1, Vec3(4.0f, 5.0f, 6.0f));
    line->setVertexPosition(2, Vec3(-7.0f, 8.0f, -9.0f));
    return line;
}

std::vector<float> vertexFloats(const mxBuffer& buffer) {
    const float* data = static_cast<const float*>(buffer.getData());
    return std::vector<float>(data, data + 3u * buffer.getElementCount());
}

std::vector<std::uint32_t> indexValues(const mxBuffer& buffer) {
    const std::uint32_t* data = static_cast<const std::uint32_t*>(buffer.getData());
    return std::vector<std::uint32_t>(data, data + buffer.getElementCount());
}

} // namespace

TEST(mxLineTest, DrawMethodValuesAreSegmentsZeroAndPolylineThree) {
    EXPECT_EQ(0, static_cast<int>(mxLine::DRAW_SEGMENTS));
    EXPECT_EQ(3, static_cast<int>(mxLine::DRAW_POLYLINE));
}

TEST(mxLineTest, TypeIsLine) {
    mxPointer<mxLine> line = new mxLine(2u);
    EXPECT_TRUE(line->IsExactly(mxLine::TYPE));
    EXPECT_STREQ("mxCore.mxLine", line->GetType().getName());
}

TEST(mxLineTest, VertexCountAloneMakesAPolylineThroughEveryVertexAtTheOrigin) {
    mxPointer<mxLine> line = new mxLine(4u);
    ASSERT_EQ(4u, line->getVertexCount());
    ASSERT_EQ(4u, line->getIndexCount());
    for (unsigned int i = 0; i < 4u; ++i) {
        expectVectorNear(Vec3(0.0f, 0.0f, 0.0f), line->getVertexPosition(i), csTolerance);
        EXPECT_EQ(i, line->getIndex(i));
    }
    EXPECT_EQ(mxLine::DRAW_POLYLINE, line->getDrawMethod());
    EXPECT_TRUE(line->isStrip());
}

TEST(mxLineTest, VertexCountZeroMakesAnEmptyPolyline) {
    mxPointer<mxLine> line = new mxLine(0u);
    EXPECT_EQ(0u, line->getVertexCount());
    EXPECT_EQ(0u, line->getIndexCount());
    EXPECT_EQ(mxLine::DRAW_POLYLINE, line->getDrawMethod());
}

TEST(mxLineTest, StripTrueMakesAPolylineWithAllIndicesZero) {
    mxPointer<mxLine> line = new mxLine(3, 5, true);
    ASSERT_EQ(3u, line->getVertexCount());
    ASSERT_EQ(5u, line->getIndexCount());
    for (unsigned int i = 0; i < 3u; ++i) {
        expectVectorNear(Vec3(0.0f, 0.0f, 0.0f), line->getVertexPosition(i), csTolerance);
    }
    for (unsigned int i = 0; i < 5u; ++i) {
        EXPECT_EQ(0u, line->getIndex(i));
    }
    EXPECT_EQ(mxLine::DRAW_POLYLINE, line->getDrawMethod());
    EXPECT_TRUE(line->isStrip());
}

TEST(mxLineTest, StripFalseMakesSegmentsWithAllIndicesZero) {
    mxPointer<mxLine> line = new mxLine(2, 4, false);
    ASSERT_EQ(2u, line->getVertexCount());
    ASSERT_EQ(4u, line->getIndexCount());
    for (unsigned int i = 0; i < 4u; ++i) {
        EXPECT_EQ(0u, line->getIndex(i));
    }
    EXPECT_EQ(mxLine::DRAW_SEGMENTS, line->getDrawMethod());
    EXPECT_FALSE(line->isStrip());
}

TEST(mxLineTest, NegativeCountsCountAsZero) {
    mxPointer<mxLine> both = new mxLine(-3, -5, true);
    EXPECT_EQ(0u, both->getVertexCount());
    EXPECT_EQ(0u, both->getIndexCount());
    mxPointer<mxLine> vertices = new mxLine(-1, 2, false);
    EXPECT_EQ(0u, vertices->getVertexCount());
    EXPECT_EQ(2u, vertices->getIndexCount());
    mxPointer<mxLine> indices = new mxLine(2, -1, false);
    EXPECT_EQ(2u, indices->getVertexCount());
    EXPECT_EQ(0u, indices->getIndexCount());
}

TEST(mxLineTest, SetVertexPositionIsReadBack) {
    mxPointer<mxLine> line = makeBentLine();
    expectVectorNear(Vec3(1.0f, 2.0f, 3.0f), line->getVertexPosition(0), csTolerance);
    expectVectorNear(Vec3(4.0f, 5.0f, 6.0f), line->getVertexPosition(1), csTolerance);
    expectVectorNear(Vec3(-7.0f, 8.0f, -9.0f), line->getVertexPosition(2), csTolerance);
    ASSERT_EQ(3u, line->getVertices().size());
    expectVectorNear(Vec3(4.0f, 5.0f, 6.0f), line->getVertices()[1], csTolerance);
}

TEST(mxLineTest, VertexReadOutOfRangeGivesZero) {
    mxPointer<mxLine> line = makeBentLine();
    expectVectorNear(Vec3(0.0f, 0.0f, 0.0f), line->getVertexPosition(3), csTolerance);
    expectVectorNear(Vec3(0.0f, 0.0f, 0.0f), line->getVertexPosition(1000000), csTolerance);
}

TEST(mxLineTest, VertexWriteOutOfRangeIsIgnored) {
    mxPointer<mxLine> line = makeBentLine();
    const std::uint64_t version = line->getModelVersion();
    line->setVertexPosition(3, Vec3(9.0f, 9.0f, 9.0f));
    EXPECT_EQ(3u, line->getVertexCount());
    EXPECT_EQ(version, line->getModelVersion());
    expectVectorNear(Vec3(0.0f, 0.0f, 0.0f), line->getVertexPosition(3), csTolerance);
    expectVectorNear(Vec3(-7.0f, 8.0f, -9.0f), line->getVertexPosition(2), csTolerance);
}

TEST(mxLineTest, SetIndexIsReadBack) {
    mxPointer<mxLine> line = new mxLine(3, 4, false);
    line->setIndex(0, 2);
    line->setIndex(3, 1);
    EXPECT_EQ(2u, line->getIndex(0));
    EXPECT_EQ(0u, line->getIndex(1));
    EXPECT_EQ(1u, line->getIndex(3));
    EXPECT_EQ((std::vector<unsigned int>{2u, 0u, 0u, 1u}), line->getIndices());
}

TEST(mxLineTest, IndexOutOfRangeReadsZeroAndWriteIsIgnored) {
    mxPointer<mxLine> line = new mxLine(3u);
    const std::uint64_t version = line->getModelVersion();
    line->setIndex(3, 2);
    EXPECT_EQ(3u, line->getIndexCount());
    EXPECT_EQ(version, line->getModelVersion());
    EXPECT_EQ(0u, line->getIndex(3));
    EXPECT_EQ(0u, line->getIndex(4000000000u));
    EXPECT_EQ((std::vector<unsigned int>{0u, 1u, 2u}), line->getIndices());
}

TEST(mxLineTest, ModelVersionAdvancesWithVertexAndIndexChanges) {
    mxPointer<mxLine> line = new mxLine(3u);
    const std::uint64_t start = line->getModelVersion();
    line->setVertexPosition(1, Vec3(1.0f, 0.0f, 0.0f));
    const std::uint64_t afterVertex = line->getModelVersion();
    EXPECT_GT(afterVertex, start);
    line->setIndex(0, 2);
    EXPECT_GT(line->getModelVersion(), afterVertex);
}

TEST(mxLineTest, DefaultColourIsOpaqueWhite) {
    mxPointer<mxLine> line = new mxLine(2u);
    expectColor(Wm4::ColorRGBA(1.0f, 1.0f, 1.0f, 1.0f), line->getColor());
}

TEST(mxLineTest, SetColourRgbaSetsAllFourChannels) {
    mxPointer<mxLine> line = new mxLine(2u);
    line->setColor(Wm4::ColorRGBA(0.1f, 0.2f, 0.3f, 0.4f));
    expectColor(Wm4::ColorRGBA(0.1f, 0.2f, 0.3f, 0.4f), line->getColor());
}

TEST(mxLineTest, SetColourRgbKeepsTheAlpha) {
    mxPointer<mxLine> line = new mxLine(2u);
    line->setColor(Wm4::ColorRGB(0.5f, 0.25f, 0.75f));
    expectColor(Wm4::ColorRGBA(0.5f, 0.25f, 0.75f, 1.0f), line->getColor());
    line->setColor(Wm4::ColorRGBA(0.0f, 0.0f, 0.0f, 0.3f));
    line->setColor(Wm4::ColorRGB(0.9f, 0.8f, 0.7f));
    expectColor(Wm4::ColorRGBA(0.9f, 0.8f, 0.7f, 0.3f), line->getColor());
}

TEST(mxLineTest, WidthIsOneUntilSet) {
    mxPointer<mxLine> line = new mxLine(2u);
    EXPECT_FLOAT_EQ(1.0f, line->getWidth());
    line->setWidth(3.5f);
    EXPECT_FLOAT_EQ(3.5f, line->getWidth());
}

TEST(mxLineTest, SetDrawMethodTakesSegmentsAndPolyline) {
    mxPointer<mxLine> line = new mxLine(4u);
    line->setDrawMethod(mxLine::DRAW_SEGMENTS);
    EXPECT_EQ(mxLine::DRAW_SEGMENTS, line->getDrawMethod());
    line->setDrawMethod(mxLine::DRAW_POLYLINE);
    EXPECT_EQ(mxLine::DRAW_POLYLINE, line->getDrawMethod());
}

TEST(mxLineTest, SetDrawMethodIgnoresOtherValues) {
    mxPointer<mxLine> line = new mxLine(4u);
    line->setDrawMethod(static_cast<mxLine::DrawMethod>(1));
    EXPECT_EQ(mxLine::DRAW_POLYLINE, line->getDrawMethod());
    line->setDrawMethod(mxLine::DRAW_SEGMENTS);
    line->setDrawMethod(static_cast<mxLine::DrawMethod>(2));
    EXPECT_EQ(mxLine::DRAW_SEGMENTS, line->getDrawMethod());
}

TEST(mxLineTest, DrawMethodDoesNotChangeTheStripFlag) {
    mxPointer<mxLine> line = new mxLine(2, 2, false);
    line->setDrawMethod(mxLine::DRAW_POLYLINE);
    EXPECT_FALSE(line->isStrip());
}

TEST(mxLineTest, ChangingTheDrawMethodAdvancesTheModelVersion) {
    mxPointer<mxLine> line = new mxLine(4u);
    const std::uint64_t start = line->getModelVersion();
    line->setDrawMethod(mxLine::DRAW_POLYLINE); // already
    EXPECT_EQ(start, line->getModelVersion());
    line->setDrawMethod(mxLine::DRAW_SEGMENTS);
    EXPECT_GT(line->getModelVersion(), start);
}

TEST(mxLineTest, UpdateModelBoundEnclosesEveryVertex) {
    mxPointer<mxLine> line = makeBentLine();
    line->UpdateMS(true, false, -2);
    const mxBoundingVolume& bound = line->getModelBound();
    for (const Vec3& vertex : line->getVertices()) {
        EXPECT_TRUE(bound.contains(vertex, 1e-4f));
    }
    // Centre of the vertices' box, radius to the farthest vertex.
    expectVectorNear(Vec3(-1.5f, 5.0f, -1.5f), bound.getCenter(), csTolerance);
    const Vec3 farthest = Vec3(-7.0f, 8.0f, -9.0f) - bound.getCenter();
    EXPECT_NEAR(std::sqrt(farthest.Dot(farthest)), bound.getRadius(), 1e-4f);
}

TEST(mxLineTest, WorldBoundFollowsTheModelBoundAfterUpdateGS) {
    mxPointer<mxLine> line = makeBentLine();
    line->UpdateMS(true, false, -2);
    line->editLocalTransform(true).SetTranslate(Vec3(10.0f, -20.0f, 5.0f));
    line->editLocalTransform(true).SetUniformScale(2.0f);
    line->UpdateGS();
    const mxBoundingVolume& model = line->getModelBound();
    const mxBoundingVolume& world = line->getWorldBound();
    expectVectorNear(Vec3(10.0f, -20.0f, 5.0f) + model.getCenter() * 2.0f, world.getCenter(),
                     csTolerance);
    EXPECT_NEAR(2.0f * model.getRadius(), world.getRadius(), 1e-4f);
    for (const Vec3& vertex : line->getVertices()) {
        EXPECT_TRUE(world.contains(line->getWorldTransform().ApplyForward(vertex), 1e-3f));
    }
}

TEST(mxLineTest, WorldBoundFollowsAVertexChangeAfterUpdateGS) {
    mxPointer<mxLine> line = makeBentLine();
    line->UpdateGS();
    line->setVertexPosition(0, Vec3(100.0f, 0.0f, 0.0f));
    line->UpdateGS();
    EXPECT_TRUE(line->getModelBound().contains(Vec3(100.0f, 0.0f, 0.0f), 1e-3f));
    EXPECT_TRUE(line->getWorldBound().contains(Vec3(100.0f, 0.0f, 0.0f), 1e-3f));
}

TEST(mxLineTest, LineWithIndicesNamingItsVerticesIsRenderable) {
    mxPointer<mxLine> line = new mxLine(3u);
    mx::test::mxLogCapture capture;
    EXPECT_TRUE(line->checkRenderable(true));
    EXPECT_TRUE(capture.lines().empty());
}

TEST(mxLineTest, LineWithoutIndicesIsNotRenderable) {
    mxPointer<mxLine> line = new mxLine(3, 0, true);
    EXPECT_FALSE(line->checkRenderable(false));
    mxPointer<mxLine> empty = new mxLine(0u);
    EXPECT_FALSE(empty->checkRenderable(false));
}

TEST(mxLineTest, LineWithAnIndexPastItsVerticesIsNotRenderable) {
    mxPointer<mxLine> line = new mxLine(3u);
    line->setIndex(1, 3);
    EXPECT_FALSE(line->checkRenderable(false));
    line->setIndex(1, 2);
    EXPECT_TRUE(line->checkRenderable(false));
}

TEST(mxLineTest, VerboseCheckLogsWhyTheLineIsNotRenderable) {
    mxPointer<mxLine> line = new mxLine(3, 0, true);
    line->SetName("rim");
    mx::test::mxLogCapture capture;
    EXPECT_FALSE(line->checkRenderable(false));
    EXPECT_TRUE(capture.lines().empty());
    EXPECT_FALSE(line->checkRenderable(true));
    const std::vector<std::string> lines = capture.lines();
    ASSERT_EQ(1u, lines.size());
    EXPECT_NE(std::string::npos, lines[0].find("'rim'")) << lines[0];
    EXPECT_NE(std::string::npos, lines[0].find("not renderable")) << lines[0];
}

TEST(mxLineTest, GeneratedVertexBufferHoldsTheVerticesAsFloats) {
    mxPointer<mxLine> line = makeBentLine();
    mxGeometry* geometry = line->getGeneratedGeometry();
    ASSERT_NE(nullptr, geometry);
    const mxBuffer* vertices = geometry->getGeneratedBuffer(0);
    ASSERT_NE(nullptr, vertices);
    EXPECT_EQ(mxBuffer::VERTEX, vertices->getKind());
    ASSERT_EQ(3u, vertices->getElementCount());
    EXPECT_EQ((std::vector<float>{1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, -7.0f, 8.0f, -9.0f}),
              vertexFloats(*vertices));
}

TEST(mxLineTest, GeneratedIndexBufferHoldsTheIndices) {
    mxPointer<mxLine> line = new mxLine(3, 4, false);
    line->setIndex(0, 2);
    line->setIndex(1, 1);
    line->setIndex(3, 2);
    mxGeometry* geometry = line->getGeneratedGeometry();
    ASSERT_NE(nullptr, geometry);
    const mxBuffer* indices = geometry->getGeneratedBuffer(1);
    ASSERT_NE(nullptr, indices);
    EXPECT_EQ(mxBuffer::INDEX, indices->getKind());
    EXPECT_EQ((std::vector<std::uint32_t>{2u, 1u, 0u, 2u}), indexValues(*indices));
}

TEST(mxLineTest, GeneratedPrimitiveFollowsTheDrawMethod) {
    mxPointer<mxLine> line = new mxLine(4u);
    EXPECT_EQ(mxGeometry::PRIMITIVE_POLYLINE, line->getGeneratedGeometry()->getPrimitive());
    line->setDrawMethod(mxLine::DRAW_SEGMENTS);
    EXPECT_EQ(mxGeometry::PRIMITIVE_SEGMENTS, line->getGeneratedGeometry()->getPrimitive());
    line->setDrawMethod(mxLine::DRAW_POLYLINE);
    EXPECT_EQ(mxGeometry::PRIMITIVE_POLYLINE, line->getGeneratedGeometry()->getPrimitive());
    mxPointer<mxLine> segments = new mxLine(2, 2, false);
    EXPECT_EQ(mxGeometry::PRIMITIVE_SEGMENTS, segments->getGeneratedGeometry()->getPrimitive());
}

TEST(mxLineTest, UnchangedLineReturnsItsGeometryWithoutRegenerating) {
    mxPointer<mxLine> line = makeBentLine();
    mxGeometry* first = line->getGeneratedGeometry();
    const std::uint64_t vertexVersion = first->getGeneratedBuffer(0)->getVersion();
    const std::uint64_t indexVersion = first->getGeneratedBuffer(1)->getVersion();
    mxGeometry* second = line->getGeneratedGeometry();
    EXPECT_EQ(first, second);
    EXPECT_EQ(vertexVersion, second->getGeneratedBuffer(0)->getVersion());
    EXPECT_EQ(indexVersion, second->getGeneratedBuffer(1)->getVersion());
}

TEST(mxLineTest, VertexChangeRegeneratesIntoTheSameBuffers) {
    mxPointer<mxLine> line = makeBentLine();
    mxGeometry* geometry = line->getGeneratedGeometry();
    const mxBuffer* vertices = geometry->getGeneratedBuffer(0);
    const mxBuffer* indices = geometry->getGeneratedBuffer(1);
    const std::uint64_t version = vertices->getVersion();
    line->setVertexPosition(1, Vec3(0.5f, -0.5f, 0.25f));
    EXPECT_EQ(geometry, line->getGeneratedGeometry());
    EXPECT_EQ(vertices, geometry->getGeneratedBuffer(0));
    EXPECT_EQ(indices, geometry->getGeneratedBuffer(1));
    EXPECT_GT(vertices->getVersion(), version);
    EXPECT_EQ((std::vector<float>{1.0f, 2.0f, 3.0f, 0.5f, -0.5f, 0.25f, -7.0f, 8.0f, -9.0f}),
              vertexFloats(*vertices));
}

TEST(mxLineTest, IndexChangeRegeneratesTheIndexBuffer) {
    mxPointer<mxLine> line = new mxLine(3u);
    mxGeometry* geometry = line->getGeneratedGeometry();
    const mxBuffer* indices = geometry->getGeneratedBuffer(1);
    const std::uint64_t version = indices->getVersion();
    line->setIndex(2, 0);
    line->getGeneratedGeometry();
    EXPECT_EQ(indices, geometry->getGeneratedBuffer(1));
    EXPECT_GT(indices->getVersion(), version);
    EXPECT_EQ((std::vector<std::uint32_t>{0u, 1u, 0u}), indexValues(*indices));
}

TEST(mxLineTest, BufferThatNoLongerFitsIsReplaced) {
    mxPointer<mxLine> line = makeBentLine();
    mxGeometry* geometry = line->getGeneratedGeometry();
    geometry->setGeneratedBuffer(0, new mxBuffer(mxBuffer::VERTEX, 1u));
    geometry->setGeneratedBuffer(1, nullptr);
    line->setVertexPosition(0, Vec3(0.0f, 0.0f, 1.0f));
    ASSERT_EQ(geometry, line->getGeneratedGeometry());
    const mxBuffer* vertices = geometry->getGeneratedBuffer(0);
    const mxBuffer* indices = geometry->getGeneratedBuffer(1);
    ASSERT_NE(nullptr, vertices);
    ASSERT_NE(nullptr, indices);
    EXPECT_EQ(3u, vertices->getElementCount());
    EXPECT_EQ((std::vector<float>{0.0f, 0.0f, 1.0f, 4.0f, 5.0f, 6.0f, -7.0f, 8.0f, -9.0f}),
              vertexFloats(*vertices));
    EXPECT_EQ((std::vector<std::uint32_t>{0u, 1u, 2u}), indexValues(*indices));
}

TEST(mxLineTest, BufferOfTheWrongKindIsReplaced) {
    mxPointer<mxLine> line = makeBentLine();
    mxGeometry* geometry = line->getGeneratedGeometry();
    // Same element counts, kinds swapped over.
    geometry->setGeneratedBuffer(0, new mxBuffer(mxBuffer::INDEX, 3u));
    geometry->setGeneratedBuffer(1, new mxBuffer(mxBuffer::VERTEX, 3u));
    line->setIndex(0, 1);
    ASSERT_EQ(geometry, line->getGeneratedGeometry());
    ASSERT_NE(nullptr, geometry->getGeneratedBuffer(0));
    ASSERT_NE(nullptr, geometry->getGeneratedBuffer(1));
    EXPECT_EQ(mxBuffer::VERTEX, geometry->getGeneratedBuffer(0)->getKind());
    EXPECT_EQ(mxBuffer::INDEX, geometry->getGeneratedBuffer(1)->getKind());
    EXPECT_EQ((std::vector<std::uint32_t>{1u, 1u, 2u}),
              indexValues(*geometry->getGeneratedBuffer(1)));
}

TEST(mxLineTest, EmptyLineGeneratesEmptyBuffers) {
    mxPointer<mxLine> line = new mxLine(0u);
    mxGeometry* geometry = line->getGeneratedGeometry();
    ASSERT_NE(nullptr, geometry);
    ASSERT_NE(nullptr, geometry->getGeneratedBuffer(0));
    ASSERT_NE(nullptr, geometry->getGeneratedBuffer(1));
    EXPECT_EQ(0u, geometry->getGeneratedBuffer(0)->getElementCount());
    EXPECT_EQ(0u, geometry->getGeneratedBuffer(1)->getByteSize());
}

TEST(mxLineTest, GeneratedGeometryLivesAsLongAsTheLineHoldsIt) {
    mxPointer<mxLine> line = new mxLine(2u);
    mxGeometry* geometry = line->getGeneratedGeometry();
    EXPECT_EQ(1, geometry->GetReferences());
    mxPointer<mxGeometry> kept = geometry;
    line.reset();
    EXPECT_EQ(1, kept->GetReferences());
    ASSERT_NE(nullptr, kept->getGeneratedBuffer(0));
    EXPECT_EQ(2u, kept->getGeneratedBuffer(0)->getElementCount());
}

TEST(mxLineTest, DescriptionIsSetAtConstruction) {
    mxPointer<mxLine> polyline = new mxLine(4u);
    EXPECT_EQ("line: 4 vertices, 4 indices, polyline, width 1",
              polyline->getObjectDescription());
    mxPointer<mxLine> segments = new mxLine(2, 6, false);
    EXPECT_EQ("line: 2 vertices, 6 indices, segments, width 1",
              segments->getObjectDescription());
}

TEST(mxLineTest, UpdateObjectDescriptionReflectsWidthAndDrawMethod) {
    mxPointer<mxLine> line = new mxLine(3u);
    line->setWidth(2.5f);
    line->setDrawMethod(mxLine::DRAW_SEGMENTS);
    line->updateObjectDescription();
    EXPECT_EQ("line: 3 vertices, 3 indices, segments, width 2.5", line->getObjectDescription());
}
