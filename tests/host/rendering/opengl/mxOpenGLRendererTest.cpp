#include "mxOpenGLTestSupport.h"

#include "rendering/mxOpenGLRenderer.h"
#include "rendering/mxRendererInterface.h"
#include "rendering/mxSceneRenderer.h"

#include "controller/mxControllerTestSupport.h"
#include "support/mxTestGeometry.h"

#include "node/mxGizmoNodeBase.h"
#include "scenegraph/mxBuffer.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGeometry.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4ColorRGBA.h"
#include "wm4/Wm4Vector3.h"

#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QSurface>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

using mx::mxBaseGeometry;
using mx::mxBuffer;
using mx::mxCamera;
using mx::mxGeometry;
using mx::mxLine;
using mx::mxMesh;
using mx::mxNode;
using mx::mxOpenGLRenderer;
using mx::mxPointer;
using mx::mxRendererInterface;
using mx::mxSceneRenderer;
using mx::mxSpatial;
using mx::test::ColorNear;
using mx::test::Pixel;
using Color = Wm4::ColorRGBA;
using Vector = Wm4::Vector3<float>;

namespace {

// Line and mesh colours whose channels are whole multiples of 1/255, so that the framebuffer
// holds them exactly: (255, 153, 51) and (204, 153, 102).
const Color csLineColor(1.0f, 0.6f, 0.2f, 1.0f);
const Color csMeshColor(0.8f, 0.6f, 0.4f, 1.0f);

// Makes the sub-gizmos' buffer preparation callable.
class PreparingGizmo : public mx::mxGizmoNodeBase {
public:
    using mx::mxGizmoNodeBase::PrepareGeneratedPrimitives;
};

// An orthographic camera at (0, 0, 10) looking down -Z whose view box is 200 x 200 world units
// wide, over the 200 x 200 framebuffer: one world unit is one pixel, and the centre of pixel
// (x, y), counted from the lower left, lies at world (x - 99.5, y - 99.5). A horizontal line at
// y = 0.5 runs through the centres of row 100.
mxPointer<mxCamera> MakePixelCamera() {
    mxPointer<mxCamera> camera = new mxCamera(false);
    camera->setFrame(Vector(0.0f, 0.0f, 10.0f), Vector(0.0f, 0.0f, -1.0f), Vector(0.0f, 1.0f, 0.0f),
                     Vector(1.0f, 0.0f, 0.0f));
    camera->setFrustum(-100.0f, 100.0f, -100.0f, 100.0f, 1.0f, 100.0f);
    return camera;
}

// A polyline through points in its model space, updated so that its world transformation and
// bound are current.
mxPointer<mxLine> MakeLine(std::initializer_list<Vector> points, float width,
                           const Color& color = csLineColor) {
    mxPointer<mxLine> line = new mxLine(static_cast<unsigned int>(points.size()));
    unsigned int index = 0;
    for (const Vector& point : points) {
        line->setVertexPosition(index++, point);
    }
    line->setWidth(width);
    line->setColor(color);
    line->UpdateGS();
    return line;
}

// The pixel camera's horizontal line through the centres of row 100, from column 10 to 189,
// at depth z.
mxPointer<mxLine> MakeRowLine(float width, float z = 0.0f) {
    return MakeLine({Vector(-90.0f, 0.5f, z), Vector(90.0f, 0.5f, z)}, width);
}

// A square of side 2 * half around the origin in the plane z = 0 of its model space, made of
// two triangles wound counter-clockwise seen from +Z (or clockwise with reversed true).
mxPointer<mxMesh> MakeSquare(float half, bool reversed = false) {
    mxPointer<mxMesh> mesh = new mxMesh(4, 2);
    mesh->setVertexPosition(0, Vector(-half, -half, 0.0f));
    mesh->setVertexPosition(1, Vector(half, -half, 0.0f));
    mesh->setVertexPosition(2, Vector(half, half, 0.0f));
    mesh->setVertexPosition(3, Vector(-half, half, 0.0f));
    if (reversed) {
        mesh->setTriangle(0, 0, 2, 1);
        mesh->setTriangle(1, 0, 3, 2);
    } else {
        mesh->setTriangle(0, 0, 1, 2);
        mesh->setTriangle(1, 0, 2, 3);
    }
    mesh->setColor(csMeshColor);
    mesh->UpdateGS();
    return mesh;
}

Color Scaled(const Color& color, float factor) {
    return Color(color.R() * factor, color.G() * factor, color.B() * factor, color.A());
}

// The GL functions of the current context.
QOpenGLExtraFunctions& GL() {
    return *QOpenGLContext::currentContext()->extraFunctions();
}

// Success when no GL error is pending; otherwise a failure listing the pending codes (which
// reading clears).
::testing::AssertionResult NoGLError() {
    std::vector<GLenum> codes;
    for (GLenum code = GL().glGetError(); code != GL_NO_ERROR && codes.size() < 8;
         code = GL().glGetError()) {
        codes.push_back(code);
    }
    if (codes.empty()) {
        return ::testing::AssertionSuccess();
    }
    ::testing::AssertionResult failure = ::testing::AssertionFailure();
    failure << "GL errors:";
    for (GLenum code : codes) {
        failure << " 0x" << std::hex << code;
    }
    return failure;
}

// The bytes of an mxBuffer.
std::vector<unsigned char> BytesOf(const mxBuffer& buffer) {
    const auto* first = static_cast<const unsigned char*>(buffer.getData());
    return std::vector<unsigned char>(first, first + buffer.getByteSize());
}

// A renderer in a fresh 200 x 200 framebuffer (the standard view's size) of a fresh context.
class mxOpenGLRendererTest : public ::testing::Test {
protected:
    void SetUp() override { useContext(true); }

    // A fresh context and renderer, with the deprecated functions (wide lines) or without.
    void useContext(bool deprecatedFunctions) {
        // The old context goes first: its destructor leaves no context current.
        renderer.reset();
        gl.reset();
        gl = std::make_unique<mx::test::mxOffscreenGL>(deprecatedFunctions);
        ASSERT_TRUE(gl->isReady()) << gl->problem();
        renderer = std::make_unique<mxOpenGLRenderer>();
        ASSERT_TRUE(renderer->isValid()) << renderer->getError();
    }

    void TearDown() override {
        mxRendererInterface::SetHardwareRenderer(nullptr);
        // The renderer goes while its context is still current.
        renderer.reset();
        if (gl && gl->isReady()) {
            EXPECT_TRUE(NoGLError()) << "after destroying the renderer";
        }
    }

    // Prepares both generated buffers of geometry, as mxSceneRenderer does before a draw.
    bool prepare(mxBaseGeometry& geometry, bool force = false) {
        mxGeometry* generated = geometry.getGeneratedGeometry();
        return renderer->prepareBuffer(generated->getGeneratedBuffer(0), force) &&
               renderer->prepareBuffer(generated->getGeneratedBuffer(1), force);
    }

    // One whole frame over the whole framebuffer: the meshes, then the lines, each prepared
    // first; no GL error after any step.
    void drawFrame(const mxCamera& camera, const std::vector<mxMesh*>& meshes,
                   const std::vector<mxLine*>& lines) {
        renderer->beginFrame();
        EXPECT_TRUE(NoGLError()) << "after beginFrame";
        renderer->setView(camera, gl->width, gl->height);
        for (mxMesh* mesh : meshes) {
            EXPECT_TRUE(prepare(*mesh));
            renderer->drawMesh(*mesh);
            EXPECT_TRUE(NoGLError()) << "after drawMesh";
        }
        for (mxLine* line : lines) {
            EXPECT_TRUE(prepare(*line));
            renderer->drawLine(*line);
            EXPECT_TRUE(NoGLError()) << "after drawLine";
        }
        renderer->endFrame();
        EXPECT_TRUE(NoGLError()) << "after endFrame";
    }

    void drawLines(const mxCamera& camera, const std::vector<mxLine*>& lines) {
        drawFrame(camera, {}, lines);
    }

    // The framebuffer pixel (x, y) from the lower left.
    Pixel at(int x, int y) const { return gl->pixel(x, y); }
    Color clear() const { return renderer->getClearColor(); }

    // Declared first, destroyed last: the renderer needs the context until it is gone.
    std::unique_ptr<mx::test::mxOffscreenGL> gl;
    std::unique_ptr<mxOpenGLRenderer> renderer;
};

} // namespace

// ---------------------------------------------------------------------------------------------
// Construction and settings

TEST_F(mxOpenGLRendererTest, IsValidWithNoErrorInAThreeThreeCompatibilityContext) {
    EXPECT_TRUE(renderer->isValid());
    EXPECT_EQ("", renderer->getError());
    EXPECT_EQ(0u, renderer->getHeldBufferCount());
    EXPECT_EQ(0u, renderer->getUploadCount());
    EXPECT_TRUE(NoGLError());
}

TEST_F(mxOpenGLRendererTest, StartsWithADarkGreyClearColourAndANormalisedLightDirection) {
    EXPECT_EQ(0.18f, clear().R());
    EXPECT_EQ(0.19f, clear().G());
    EXPECT_EQ(0.21f, clear().B());
    EXPECT_EQ(1.0f, clear().A());
    // (-0.4, -1, -0.6) has length sqrt(1.52).
    const float length = std::sqrt(1.52f);
    EXPECT_TRUE(mx::test::VectorNear(Vector(-0.4f / length, -1.0f / length, -0.6f / length),
                                     renderer->getLightDirection(), 1e-6f));
}

TEST_F(mxOpenGLRendererTest, SetLightDirectionNormalisesAndIgnoresAZeroDirection) {
    renderer->setLightDirection(Vector(0.0f, 3.0f, -4.0f));
    EXPECT_TRUE(
        mx::test::VectorNear(Vector(0.0f, 0.6f, -0.8f), renderer->getLightDirection(), 1e-6f));
    renderer->setLightDirection(Vector(0.0f, 0.0f, 0.0f));
    EXPECT_TRUE(
        mx::test::VectorNear(Vector(0.0f, 0.6f, -0.8f), renderer->getLightDirection(), 1e-6f));
}

TEST_F(mxOpenGLRendererTest, BeginFrameClearsToTheClearColour) {
    renderer->setClearColor(Color(0.2f, 0.4f, 0.6f, 1.0f));
    renderer->beginFrame();
    renderer->endFrame();
    EXPECT_TRUE(NoGLError());
    EXPECT_TRUE(ColorNear(Color(0.2f, 0.4f, 0.6f, 1.0f), at(0, 0)));
    EXPECT_TRUE(ColorNear(Color(0.2f, 0.4f, 0.6f, 1.0f), at(199, 199)));
}

TEST_F(mxOpenGLRendererTest, WithoutACurrentContextItIsInvalidRefusesBuffersAndDrawsNothing) {
    // The fixture's frame, cleared to a colour the other renderer never uses.
    renderer->setClearColor(Color(0.2f, 0.4f, 0.6f, 1.0f));
    renderer->beginFrame();
    renderer->endFrame();
    QOpenGLContext* context = QOpenGLContext::currentContext();
    ASSERT_NE(nullptr, context);
    QSurface* surface = context->surface();
    mxPointer<mxLine> line = MakeRowLine(5.0f);
    mxPointer<mxMesh> square = MakeSquare(20.0f);
    const mxPointer<mxCamera> camera = MakePixelCamera();

    context->doneCurrent();
    {
        mxOpenGLRenderer orphan;
        EXPECT_FALSE(orphan.isValid());
        EXPECT_EQ("no current OpenGL context", orphan.getError());
        EXPECT_TRUE(orphan.prepareBuffer(nullptr, false));
        EXPECT_FALSE(
            orphan.prepareBuffer(line->getGeneratedGeometry()->getGeneratedBuffer(0), true));
        EXPECT_EQ(0u, orphan.getHeldBufferCount());
        EXPECT_EQ(0u, orphan.getUploadCount());
        orphan.setClearColor(Color(1.0f, 1.0f, 1.0f, 1.0f));
        orphan.beginFrame();
        orphan.setView(*camera, 200, 200);
        orphan.drawMesh(*square);
        orphan.drawLine(*line);
        orphan.beginOverlay();
        orphan.drawLine(*line);
        orphan.endFrame();
    }
    ASSERT_TRUE(context->makeCurrent(surface));

    // Nothing reached the framebuffer: no clear to white, no square or line in the middle.
    EXPECT_TRUE(ColorNear(Color(0.2f, 0.4f, 0.6f, 1.0f), at(100, 100)));
    EXPECT_TRUE(ColorNear(Color(0.2f, 0.4f, 0.6f, 1.0f), at(0, 0)));
    EXPECT_TRUE(NoGLError());
}

// ---------------------------------------------------------------------------------------------
// Buffers

TEST_F(mxOpenGLRendererTest, PrepareGeneratedPrimitivesUploadsBothBuffersOfEveryGeometry) {
    mxPointer<mxLine> first = MakeLine({Vector(1.0f, 2.0f, 3.0f), Vector(4.0f, 5.0f, 6.0f)}, 1.0f);
    mxPointer<mxLine> second = MakeLine(
        {Vector(-1.0f, 0.0f, 0.0f), Vector(0.0f, 1.0f, 0.0f), Vector(0.0f, 0.0f, 7.5f)}, 1.0f);
    const std::vector<mxPointer<mxGeometry>> geometries = {first->getGeneratedGeometry(),
                                                           second->getGeneratedGeometry()};
    mxRendererInterface::SetHardwareRenderer(renderer.get());

    EXPECT_TRUE(PreparingGizmo::PrepareGeneratedPrimitives(geometries));
    EXPECT_TRUE(NoGLError());

    EXPECT_EQ(4u, renderer->getHeldBufferCount());
    EXPECT_EQ(4u, renderer->getUploadCount());
    std::vector<unsigned int> objects;
    for (const mxPointer<mxGeometry>& geometry : geometries) {
        for (int slot = 0; slot < 2; ++slot) {
            const mxBuffer* buffer = geometry->getGeneratedBuffer(slot);
            const unsigned int object = renderer->getBufferObject(buffer);
            ASSERT_NE(0u, object) << "slot " << slot;
            EXPECT_EQ(BytesOf(*buffer), gl->bufferBytes(object, buffer->getByteSize()))
                << "slot " << slot;
            objects.push_back(object);
        }
    }
    // Four buffers in four objects.
    std::sort(objects.begin(), objects.end());
    EXPECT_EQ(objects.end(), std::adjacent_find(objects.begin(), objects.end()));
    EXPECT_TRUE(NoGLError());
}

TEST_F(mxOpenGLRendererTest, PrepareBufferOfNullIsTrueAndHoldsNothing) {
    EXPECT_TRUE(renderer->prepareBuffer(nullptr, false));
    EXPECT_TRUE(renderer->prepareBuffer(nullptr, true));
    EXPECT_EQ(0u, renderer->getHeldBufferCount());
    EXPECT_EQ(0u, renderer->getUploadCount());
    EXPECT_EQ(0u, renderer->getBufferObject(nullptr));
    EXPECT_TRUE(NoGLError());
}

TEST_F(mxOpenGLRendererTest, AnEmptyBufferIsHeldWithAnEmptyUpload) {
    mxPointer<mxBuffer> empty = new mxBuffer(mxBuffer::INDEX, 0);
    EXPECT_TRUE(renderer->prepareBuffer(empty.get(), false));
    EXPECT_NE(0u, renderer->getBufferObject(empty.get()));
    EXPECT_EQ(1u, renderer->getUploadCount());
    GLint size = -1;
    GL().glBindBuffer(GL_ARRAY_BUFFER, renderer->getBufferObject(empty.get()));
    GL().glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &size);
    GL().glBindBuffer(GL_ARRAY_BUFFER, 0);
    EXPECT_EQ(0, size);
    EXPECT_TRUE(NoGLError());
}

TEST_F(mxOpenGLRendererTest, ForceUploadsAnUnchangedBufferAgainAndNoForceDoesNot) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::VERTEX, 2);
    ASSERT_TRUE(renderer->prepareBuffer(buffer.get(), false));
    EXPECT_EQ(1u, renderer->getUploadCount());
    EXPECT_TRUE(renderer->prepareBuffer(buffer.get(), false));
    EXPECT_EQ(1u, renderer->getUploadCount());
    EXPECT_TRUE(renderer->prepareBuffer(buffer.get(), true));
    EXPECT_EQ(2u, renderer->getUploadCount());
    EXPECT_EQ(1u, renderer->getHeldBufferCount());
    EXPECT_TRUE(NoGLError());
}

TEST_F(mxOpenGLRendererTest, AChangedBufferIsUploadedAgainWithItsNewData) {
    mxPointer<mxLine> line = MakeLine({Vector(0.0f, 0.0f, 0.0f), Vector(1.0f, 0.0f, 0.0f)}, 1.0f);
    ASSERT_TRUE(prepare(*line));
    EXPECT_EQ(2u, renderer->getUploadCount());

    // Moving a vertex regenerates the vertex buffer in place, with a new version.
    line->setVertexPosition(1, Vector(8.0f, 9.0f, 10.0f));
    const mxBuffer* vertices = line->getGeneratedGeometry()->getGeneratedBuffer(0);
    ASSERT_TRUE(prepare(*line));

    EXPECT_EQ(4u, renderer->getUploadCount());
    const float expected[6] = {0.0f, 0.0f, 0.0f, 8.0f, 9.0f, 10.0f};
    const std::vector<unsigned char> uploaded =
        gl->bufferBytes(renderer->getBufferObject(vertices), sizeof(expected));
    ASSERT_EQ(sizeof(expected), uploaded.size());
    EXPECT_EQ(0, std::memcmp(expected, uploaded.data(), sizeof(expected)));
    EXPECT_TRUE(NoGLError());
}

TEST_F(mxOpenGLRendererTest, BuffersNoOneElseHoldsAreReleasedAtEndFrame) {
    mxPointer<mxBuffer> kept = new mxBuffer(mxBuffer::VERTEX, 3);
    mxPointer<mxLine> line = MakeLine({Vector(0.0f, 0.0f, 0.0f), Vector(1.0f, 0.0f, 0.0f)}, 1.0f);
    ASSERT_TRUE(renderer->prepareBuffer(kept.get(), false));
    ASSERT_TRUE(prepare(*line));
    const unsigned int keptObject = renderer->getBufferObject(kept.get());
    const unsigned int lineVertices =
        renderer->getBufferObject(line->getGeneratedGeometry()->getGeneratedBuffer(0));
    const unsigned int lineIndices =
        renderer->getBufferObject(line->getGeneratedGeometry()->getGeneratedBuffer(1));
    ASSERT_EQ(3u, renderer->getHeldBufferCount());

    // Nothing is released while the line still holds its buffers.
    renderer->beginFrame();
    renderer->endFrame();
    EXPECT_EQ(3u, renderer->getHeldBufferCount());

    // Without the line, the renderer is the last holder of its two buffers.
    line.reset();
    renderer->beginFrame();
    renderer->endFrame();
    EXPECT_TRUE(NoGLError());

    EXPECT_EQ(1u, renderer->getHeldBufferCount());
    EXPECT_EQ(keptObject, renderer->getBufferObject(kept.get()));
    EXPECT_EQ(GL_TRUE, GL().glIsBuffer(keptObject));
    EXPECT_EQ(GL_FALSE, GL().glIsBuffer(lineVertices));
    EXPECT_EQ(GL_FALSE, GL().glIsBuffer(lineIndices));
    EXPECT_EQ(2, kept->GetReferences()) << "the test's reference and the renderer's";
}

TEST_F(mxOpenGLRendererTest, DestroyingTheRendererDeletesItsBufferObjects) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::VERTEX, 3);
    ASSERT_TRUE(renderer->prepareBuffer(buffer.get(), false));
    const unsigned int object = renderer->getBufferObject(buffer.get());
    ASSERT_EQ(GL_TRUE, GL().glIsBuffer(object));
    EXPECT_EQ(2, buffer->GetReferences());

    renderer.reset();

    EXPECT_EQ(GL_FALSE, GL().glIsBuffer(object));
    EXPECT_EQ(1, buffer->GetReferences());
}

// ---------------------------------------------------------------------------------------------
// Lines

TEST_F(mxOpenGLRendererTest, ALineIsDrawnInItsColourAndNotFivePixelsAway) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    mxPointer<mxLine> line = MakeRowLine(3.0f);
    drawLines(*camera, {line.get()});

    EXPECT_TRUE(ColorNear(csLineColor, at(100, 100)));
    EXPECT_TRUE(ColorNear(csLineColor, at(20, 100)));
    EXPECT_TRUE(ColorNear(clear(), at(100, 105)));
    EXPECT_TRUE(ColorNear(clear(), at(100, 95)));
    // Past its ends, too.
    EXPECT_TRUE(ColorNear(clear(), at(5, 100)));
    EXPECT_TRUE(ColorNear(clear(), at(195, 100)));
}

TEST_F(mxOpenGLRendererTest, SegmentsLeaveEveryOtherSegmentOutAndAPolylineDrawsThemAll) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    // Vertices 0 to 3 at x = -60, -20, 20, 60, indexed 0, 1, 2, 3: as segments, 0-1 and 2-3.
    mxPointer<mxLine> line = MakeLine({Vector(-60.0f, 0.5f, 0.0f), Vector(-20.0f, 0.5f, 0.0f),
                                       Vector(20.0f, 0.5f, 0.0f), Vector(60.0f, 0.5f, 0.0f)},
                                      3.0f);
    line->setDrawMethod(mxLine::DRAW_SEGMENTS);
    drawLines(*camera, {line.get()});
    EXPECT_TRUE(ColorNear(csLineColor, at(60, 100))) << "over 0-1";
    EXPECT_TRUE(ColorNear(clear(), at(100, 100))) << "over 1-2";
    EXPECT_TRUE(ColorNear(csLineColor, at(140, 100))) << "over 2-3";

    line->setDrawMethod(mxLine::DRAW_POLYLINE);
    drawLines(*camera, {line.get()});
    EXPECT_TRUE(ColorNear(csLineColor, at(60, 100))) << "over 0-1";
    EXPECT_TRUE(ColorNear(csLineColor, at(100, 100))) << "over 1-2";
    EXPECT_TRUE(ColorNear(csLineColor, at(140, 100))) << "over 2-3";
}

TEST_F(mxOpenGLRendererTest, AWidthFiveLineCoversAPixelTwoPixelsOffItsCentreAndAWidthOneDoesNot) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    mxPointer<mxLine> line = MakeRowLine(5.0f);
    drawLines(*camera, {line.get()});
    EXPECT_TRUE(ColorNear(csLineColor, at(100, 102)));
    EXPECT_TRUE(ColorNear(csLineColor, at(100, 98)));
    EXPECT_TRUE(ColorNear(clear(), at(100, 104)));

    line->setWidth(1.0f);
    drawLines(*camera, {line.get()});
    EXPECT_TRUE(ColorNear(csLineColor, at(100, 100)));
    EXPECT_TRUE(ColorNear(clear(), at(100, 102)));
    EXPECT_TRUE(ColorNear(clear(), at(100, 98)));
}

TEST_F(mxOpenGLRendererTest, AHalfTransparentLineIsBlendedOverTheClearColour) {
    renderer->setClearColor(Color(0.0f, 0.0f, 0.0f, 1.0f));
    mxPointer<mxCamera> camera = MakePixelCamera();
    mxPointer<mxLine> line = MakeRowLine(3.0f);
    line->setColor(Color(1.0f, 1.0f, 1.0f, 0.5f));
    drawLines(*camera, {line.get()});
    EXPECT_TRUE(ColorNear(Color(0.5f, 0.5f, 0.5f, 1.0f), at(100, 100)));
}

// ---------------------------------------------------------------------------------------------
// Placement

TEST_F(mxOpenGLRendererTest, ALineTranslatedByTwoInXAppearsWhereTheCameraProjectsIt) {
    mxPointer<mxCamera> camera = mx::test::MakeStandardCamera();
    // A vertical line at x = 0.05, which the translation takes to x = 2.05: through the
    // centres of a pixel column of the standard view.
    mxPointer<mxLine> line =
        MakeLine({Vector(0.05f, -5.0f, 0.0f), Vector(0.05f, 5.0f, 0.0f)}, 3.0f);
    line->editLocalTransform(true).SetTranslate(Vector(2.0f, 0.0f, 0.0f));
    line->UpdateGS();
    drawLines(*camera, {line.get()});

    const Wm4::Vector2<float> expected = mx::test::PixelOf(*camera, Vector(2.05f, 0.0f, 0.0f));
    const int column = static_cast<int>(std::floor(expected.X()));
    const int row = static_cast<int>(std::floor(expected.Y()));
    ASSERT_EQ(120, column) << "the standard view shows 10 pixels per unit at depth 10";
    EXPECT_TRUE(ColorNear(csLineColor, at(column, row)));
    EXPECT_TRUE(ColorNear(csLineColor, at(column, row + 40)));
    EXPECT_TRUE(ColorNear(clear(), at(column - 5, row)));
    EXPECT_TRUE(ColorNear(clear(), at(100, row))) << "where the untranslated line would be";
}

TEST_F(mxOpenGLRendererTest, RotationAndNonUniformScaleOfTheWorldTransformationBothApply) {
    mxPointer<mxCamera> camera = mx::test::MakeStandardCamera();
    // The scale (1, 2, 1) takes the horizontal line at y = -1.025 to y = -2.05, then the
    // quarter turn about Z takes (x, y) to (-y, x): a vertical line at x = 2.05 (column 120).
    // The rotation alone would put it at x = 1.025 (column 110); the rotation transposed at
    // x = -2.05 (column 79).
    mxPointer<mxLine> line =
        MakeLine({Vector(-5.0f, -1.025f, 0.0f), Vector(5.0f, -1.025f, 0.0f)}, 3.0f);
    line->editLocalTransform(true).SetRotate(
        mx::test::Rotation(0.0f, 0.0f, 1.0f, static_cast<float>(mx::test::csPi / 2.0)));
    line->editLocalTransform(true).SetScale(Vector(1.0f, 2.0f, 1.0f));
    line->UpdateGS();
    ASSERT_TRUE(line->getWorldTransform().IsRSMatrix());
    drawLines(*camera, {line.get()});

    EXPECT_TRUE(ColorNear(csLineColor, at(120, 100)));
    EXPECT_TRUE(ColorNear(csLineColor, at(120, 140)));
    EXPECT_TRUE(ColorNear(clear(), at(110, 100)));
    EXPECT_TRUE(ColorNear(clear(), at(79, 100)));
}

// ---------------------------------------------------------------------------------------------
// Meshes

// The standard view sees the square of half size 5 at z = 0 face on over its centre pixels.
TEST_F(mxOpenGLRendererTest, ASquareFacingTheEyeWithTheLightAlongTheViewHasItsBaseColour) {
    mxPointer<mxCamera> camera = mx::test::MakeStandardCamera();
    renderer->setLightDirection(Vector(0.0f, 0.0f, -1.0f));
    mxPointer<mxMesh> square = MakeSquare(5.0f);
    drawFrame(*camera, {square.get()}, {});
    EXPECT_TRUE(ColorNear(csMeshColor, at(100, 100)));
    EXPECT_TRUE(ColorNear(csMeshColor, at(60, 140)));
    EXPECT_TRUE(ColorNear(clear(), at(10, 10))) << "outside the square";
}

TEST_F(mxOpenGLRendererTest, ASquareLitPerpendicularlyHasOnlyTheAmbientThirtyFivePercent) {
    mxPointer<mxCamera> camera = mx::test::MakeStandardCamera();
    renderer->setLightDirection(Vector(1.0f, 0.0f, 0.0f));
    mxPointer<mxMesh> square = MakeSquare(5.0f);
    drawFrame(*camera, {square.get()}, {});
    EXPECT_TRUE(ColorNear(Scaled(csMeshColor, 0.35f), at(100, 100)));
}

TEST_F(mxOpenGLRendererTest, ASquareLitFromBehindHasOnlyTheAmbientTerm) {
    mxPointer<mxCamera> camera = mx::test::MakeStandardCamera();
    // The light travels towards the eye and so falls on the side the eye does not see.
    renderer->setLightDirection(Vector(0.0f, 0.0f, 1.0f));
    mxPointer<mxMesh> square = MakeSquare(5.0f);
    drawFrame(*camera, {square.get()}, {});
    EXPECT_TRUE(ColorNear(Scaled(csMeshColor, 0.35f), at(100, 100)));
}

TEST_F(mxOpenGLRendererTest, ASquareFacingTheLightIsBrighterThanOneTurnedAwayFromIt) {
    mxPointer<mxCamera> camera = mx::test::MakeStandardCamera();
    renderer->setLightDirection(Vector(0.0f, 0.0f, -1.0f));
    mxPointer<mxMesh> square = MakeSquare(5.0f);
    drawFrame(*camera, {square.get()}, {});
    const Pixel facing = at(100, 100);

    // Turned by 60 degrees about Y, the square meets the light at cos 60 = 0.5: 0.35 + 0.65 *
    // 0.5 of its colour.
    square->editLocalTransform(true).SetRotate(
        mx::test::Rotation(0.0f, 1.0f, 0.0f, static_cast<float>(mx::test::csPi / 3.0)));
    square->UpdateGS();
    drawFrame(*camera, {square.get()}, {});
    const Pixel turned = at(100, 100);

    EXPECT_TRUE(ColorNear(csMeshColor, facing));
    EXPECT_TRUE(ColorNear(Scaled(csMeshColor, 0.675f), turned));
    for (int channel = 0; channel < 3; ++channel) {
        EXPECT_GT(facing.rgba[channel], turned.rgba[channel] + 20) << "channel " << channel;
    }
}

TEST_F(mxOpenGLRendererTest, TheWindingOfTheTrianglesDoesNotChangeTheShading) {
    mxPointer<mxCamera> camera = mx::test::MakeStandardCamera();
    renderer->setLightDirection(Vector(0.0f, -0.6f, -0.8f));
    mxPointer<mxMesh> square = MakeSquare(5.0f);
    drawFrame(*camera, {square.get()}, {});
    const Pixel counterClockwise = at(100, 100);
    mxPointer<mxMesh> reversed = MakeSquare(5.0f, true);
    drawFrame(*camera, {reversed.get()}, {});
    const Pixel clockwise = at(100, 100);

    // Facing the eye, the square meets the light at 0.8: 0.35 + 0.65 * 0.8 = 0.87.
    EXPECT_TRUE(ColorNear(Scaled(csMeshColor, 0.87f), counterClockwise));
    EXPECT_TRUE(ColorNear(Scaled(csMeshColor, 0.87f), clockwise));
}

// The pixel camera looks down -Z from (0, 0, 10). A square turned by 30 degrees about Y and
// moved to x = 50 faces (0.5, 0, 0.866): towards the viewer, although the eye point itself lies
// behind its plane ((0, 0, 10) - (50, 0, 0) makes -16.3 with that normal).
TEST_F(mxOpenGLRendererTest, AnOrthographicViewLightsTheSideItSeesWhereverTheEyePointLies) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    mxPointer<mxMesh> square = MakeSquare(20.0f);
    square->editLocalTransform(true).SetRotate(
        mx::test::Rotation(0.0f, 1.0f, 0.0f, static_cast<float>(mx::test::csPi / 6.0)));
    square->editLocalTransform(true).SetTranslate(Vector(50.0f, 0.0f, 0.0f));
    square->UpdateGS();
    // The light falls straight onto the seen side.
    renderer->setLightDirection(Vector(-0.5f, 0.0f, -std::sqrt(0.75f)));
    drawFrame(*camera, {square.get()}, {});
    EXPECT_TRUE(ColorNear(csMeshColor, at(150, 100)));
}

TEST_F(mxOpenGLRendererTest, ALineAtTheDepthOfAMeshShowsOverIt) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    renderer->setLightDirection(Vector(0.0f, 0.0f, -1.0f));
    mxPointer<mxMesh> square = MakeSquare(50.0f);
    mxPointer<mxLine> line = MakeRowLine(3.0f);
    drawFrame(*camera, {square.get()}, {line.get()});
    EXPECT_TRUE(ColorNear(csLineColor, at(100, 100)));
    EXPECT_TRUE(ColorNear(csMeshColor, at(100, 130)));
}

// ---------------------------------------------------------------------------------------------
// Through the scene renderer

// The pixel camera sees a square of half size 50 at z = 0 in front of a row line at z = -5
// that runs on past the square's sides.
TEST_F(mxOpenGLRendererTest, AMeshInFrontHidesALineBehindItUntilTheLineIsAnOverlay) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    renderer->setLightDirection(Vector(0.0f, 0.0f, -1.0f));
    mxPointer<mxNode> root = new mxNode();
    mxPointer<mxMesh> square = MakeSquare(50.0f);
    mxPointer<mxLine> line = MakeRowLine(3.0f, -5.0f);
    root->attachChild(square.get());
    root->attachChild(line.get());
    root->UpdateGS();
    mxSceneRenderer scene(renderer.get());

    scene.renderScene(root.get(), *camera, gl->width, gl->height);
    EXPECT_TRUE(NoGLError());
    EXPECT_EQ(2u, scene.getLastDrawn().size());
    EXPECT_TRUE(ColorNear(csMeshColor, at(100, 100))) << "the square hides the line";
    EXPECT_TRUE(ColorNear(csLineColor, at(20, 100))) << "the line beside the square";

    line->setOverlay(true);
    scene.renderScene(root.get(), *camera, gl->width, gl->height);
    EXPECT_TRUE(NoGLError());
    EXPECT_TRUE(ColorNear(csLineColor, at(100, 100))) << "the overlay line over the square";
    EXPECT_TRUE(ColorNear(csMeshColor, at(100, 130))) << "the square is kept";
}

TEST_F(mxOpenGLRendererTest, CullingModeAlwaysIsNeverDrawn) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    mxPointer<mxNode> root = new mxNode();
    mxPointer<mxLine> line = MakeRowLine(3.0f);
    root->attachChild(line.get());
    root->UpdateGS();
    mxSceneRenderer scene(renderer.get());

    line->setCullingMode(mxSpatial::CULL_ALWAYS);
    scene.renderScene(root.get(), *camera, gl->width, gl->height);
    EXPECT_TRUE(NoGLError());
    EXPECT_TRUE(ColorNear(clear(), at(100, 100)));

    // The same line in mode 2 is there.
    line->setCullingMode(mxSpatial::CULL_NEVER);
    scene.renderScene(root.get(), *camera, gl->width, gl->height);
    EXPECT_TRUE(NoGLError());
    EXPECT_TRUE(ColorNear(csLineColor, at(100, 100)));
}

// ---------------------------------------------------------------------------------------------
// What is not drawn

TEST_F(mxOpenGLRendererTest, AViewOfZeroWidthOrHeightDrawsNothingUntilTheNextSetView) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    mxPointer<mxLine> line = MakeRowLine(3.0f);
    ASSERT_TRUE(prepare(*line));
    renderer->beginFrame();
    renderer->setView(*camera, 0, gl->height);
    renderer->drawLine(*line);
    renderer->setView(*camera, gl->width, 0);
    renderer->drawLine(*line);
    EXPECT_TRUE(NoGLError());
    EXPECT_TRUE(ColorNear(clear(), at(100, 100)));

    renderer->setView(*camera, gl->width, gl->height);
    renderer->drawLine(*line);
    renderer->endFrame();
    EXPECT_TRUE(NoGLError());
    EXPECT_TRUE(ColorNear(csLineColor, at(100, 100)));
}

TEST_F(mxOpenGLRendererTest, AnUnpreparedGeometryIsNotDrawnAndRaisesNoError) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    renderer->setLightDirection(Vector(0.0f, 0.0f, -1.0f));
    mxPointer<mxLine> line = MakeRowLine(3.0f);
    mxPointer<mxMesh> square = MakeSquare(50.0f);
    renderer->beginFrame();
    renderer->setView(*camera, gl->width, gl->height);
    renderer->drawMesh(*square);
    renderer->drawLine(*line);
    // Only the index buffer prepared is not enough either.
    ASSERT_TRUE(
        renderer->prepareBuffer(line->getGeneratedGeometry()->getGeneratedBuffer(1), false));
    renderer->drawLine(*line);
    renderer->endFrame();
    EXPECT_TRUE(NoGLError());
    EXPECT_TRUE(ColorNear(clear(), at(100, 100)));
    EXPECT_TRUE(ColorNear(clear(), at(100, 130)));
}

TEST_F(mxOpenGLRendererTest, ALineEditedSinceItWasPreparedIsNotDrawnUntilPreparedAgain) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    mxPointer<mxLine> line = MakeRowLine(3.0f);
    ASSERT_TRUE(prepare(*line));
    // Moved up by 30 pixels after the upload: the GL copy is stale.
    line->setVertexPosition(0, Vector(-90.0f, 30.5f, 0.0f));
    line->setVertexPosition(1, Vector(90.0f, 30.5f, 0.0f));
    renderer->beginFrame();
    renderer->setView(*camera, gl->width, gl->height);
    renderer->drawLine(*line);
    EXPECT_TRUE(NoGLError());
    EXPECT_TRUE(ColorNear(clear(), at(100, 100)));
    EXPECT_TRUE(ColorNear(clear(), at(100, 130)));

    ASSERT_TRUE(prepare(*line));
    renderer->drawLine(*line);
    renderer->endFrame();
    EXPECT_TRUE(NoGLError());
    EXPECT_TRUE(ColorNear(csLineColor, at(100, 130)));
}

TEST_F(mxOpenGLRendererTest, ALineWithAnIndexNamingNoVertexIsNotDrawn) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    mxPointer<mxLine> line = MakeRowLine(3.0f);
    line->setIndex(1, 7);
    drawLines(*camera, {line.get()});
    // Nothing of it, not even from the vertex that exists.
    EXPECT_TRUE(ColorNear(clear(), at(11, 100)));
    EXPECT_TRUE(ColorNear(clear(), at(20, 100)));
    EXPECT_TRUE(ColorNear(clear(), at(100, 100)));
}

TEST_F(mxOpenGLRendererTest, AnIndexEqualToTheVertexCountIsAlreadyOutOfRange) {
    // Two vertices: index 2 is the first that names none.
    mxPointer<mxCamera> camera = MakePixelCamera();
    mxPointer<mxLine> line = MakeRowLine(3.0f);
    line->setIndex(1, 2);
    drawLines(*camera, {line.get()});
    EXPECT_TRUE(ColorNear(clear(), at(11, 100)));
    EXPECT_TRUE(ColorNear(clear(), at(20, 100)));
}

TEST_F(mxOpenGLRendererTest, EndFrameLeavesNoProgramOrVertexArrayBound) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    mxPointer<mxLine> line = MakeRowLine(3.0f);
    mxPointer<mxMesh> square = MakeSquare(10.0f);
    drawFrame(*camera, {square.get()}, {line.get()});
    GLint program = -1;
    GLint vertexArray = -1;
    GL().glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    GL().glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &vertexArray);
    EXPECT_EQ(0, program);
    EXPECT_EQ(0, vertexArray);
    EXPECT_TRUE(ColorNear(csLineColor, at(20, 100))) << "the frame did draw";
}

TEST_F(mxOpenGLRendererTest, AForwardCompatibleContextDrawsWideLinesOnePixelWideWithoutError) {
    ASSERT_NO_FATAL_FAILURE(useContext(false));
    GLint flags = 0;
    GL().glGetIntegerv(GL_CONTEXT_FLAGS, &flags);
    ASSERT_NE(0, flags & GL_CONTEXT_FLAG_FORWARD_COMPATIBLE_BIT);
    mxPointer<mxCamera> camera = MakePixelCamera();
    mxPointer<mxLine> line = MakeRowLine(5.0f);
    drawLines(*camera, {line.get()});
    EXPECT_TRUE(ColorNear(csLineColor, at(100, 100)));
    EXPECT_TRUE(ColorNear(clear(), at(100, 102)));
}

TEST_F(mxOpenGLRendererTest, AWidthThatIsNotANumberDrawsOnePixelWideWithoutError) {
    mxPointer<mxCamera> camera = MakePixelCamera();
    mxPointer<mxLine> line = MakeRowLine(std::nanf(""));
    drawLines(*camera, {line.get()});
    EXPECT_TRUE(ColorNear(csLineColor, at(100, 100)));
    EXPECT_TRUE(ColorNear(clear(), at(100, 102)));
}
