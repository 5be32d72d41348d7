#include "scenegraph/mxBuffer.h"
#include "scenegraph/mxGeometry.h"
#include "scenegraph/mxPointer.h"

#include <gtest/gtest.h>

using mx::mxBuffer;
using mx::mxGeometry;
using mx::mxPointer;

namespace {

// A buffer that reports its own deletion.
class WatchedBuffer : public mxBuffer {
public:
    WatchedBuffer(Kind kind, unsigned int count, int& deletions)
        : mxBuffer(kind, count), deletions(deletions) {}
    ~WatchedBuffer() override { ++deletions; }

private:
    int& deletions;
};

} // namespace

TEST(mxGeometryTest, TypeIsGeometryDerivedFromObject) {
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_SEGMENTS);
    EXPECT_TRUE(geometry->IsExactly(mxGeometry::TYPE));
    EXPECT_TRUE(geometry->IsDerived(mx::mxObject::TYPE));
    EXPECT_STREQ("mxCore.mxGeometry", geometry->GetType().getName());
}

TEST(mxGeometryTest, PrimitiveValuesAreSegmentsPolylineAndTriangles) {
    EXPECT_EQ(0, static_cast<int>(mxGeometry::PRIMITIVE_SEGMENTS));
    EXPECT_EQ(3, static_cast<int>(mxGeometry::PRIMITIVE_POLYLINE));
    EXPECT_EQ(4, static_cast<int>(mxGeometry::PRIMITIVE_TRIANGLES));
}

TEST(mxGeometryTest, GeometryKeepsItsPrimitiveUntilSet) {
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_POLYLINE);
    EXPECT_EQ(mxGeometry::PRIMITIVE_POLYLINE, geometry->getPrimitive());
    geometry->setPrimitive(mxGeometry::PRIMITIVE_TRIANGLES);
    EXPECT_EQ(mxGeometry::PRIMITIVE_TRIANGLES, geometry->getPrimitive());
}

TEST(mxGeometryTest, NewGeometryHasNoBuffers) {
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_TRIANGLES);
    EXPECT_EQ(nullptr, geometry->getGeneratedBuffer(0));
    EXPECT_EQ(nullptr, geometry->getGeneratedBuffer(1));
    EXPECT_EQ(nullptr, geometry->editGeneratedBuffer(0));
    EXPECT_EQ(nullptr, geometry->editGeneratedBuffer(1));
}

TEST(mxGeometryTest, BuffersAreHeldInSlotsZeroAndOne) {
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_TRIANGLES);
    mxBuffer* vertices = new mxBuffer(mxBuffer::VERTEX, 3u);
    mxBuffer* indices = new mxBuffer(mxBuffer::INDEX, 3u);
    geometry->setGeneratedBuffer(0, vertices);
    geometry->setGeneratedBuffer(1, indices);
    EXPECT_EQ(vertices, geometry->getGeneratedBuffer(0));
    EXPECT_EQ(indices, geometry->getGeneratedBuffer(1));
    EXPECT_EQ(vertices, geometry->editGeneratedBuffer(0));
    EXPECT_EQ(indices, geometry->editGeneratedBuffer(1));
}

TEST(mxGeometryTest, OtherSlotsAreNull) {
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_TRIANGLES);
    geometry->setGeneratedBuffer(0, new mxBuffer(mxBuffer::VERTEX, 3u));
    geometry->setGeneratedBuffer(1, new mxBuffer(mxBuffer::INDEX, 3u));
    for (int index : {-1, 2, 3, 1000}) {
        EXPECT_EQ(nullptr, geometry->getGeneratedBuffer(index)) << index;
        EXPECT_EQ(nullptr, geometry->editGeneratedBuffer(index)) << index;
    }
}

TEST(mxGeometryTest, SettingAnOtherSlotIsIgnoredAndTakesNoReference) {
    int deletions = 0;
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_TRIANGLES);
    mxPointer<mxBuffer> buffer = new WatchedBuffer(mxBuffer::VERTEX, 1u, deletions);
    geometry->setGeneratedBuffer(2, buffer.get());
    geometry->setGeneratedBuffer(-1, buffer.get());
    EXPECT_EQ(1, buffer->GetReferences());
    EXPECT_EQ(nullptr, geometry->getGeneratedBuffer(0));
    EXPECT_EQ(nullptr, geometry->getGeneratedBuffer(1));
    buffer.reset();
    EXPECT_EQ(1, deletions);
}

TEST(mxGeometryTest, GeometryHoldsItsBuffersByCountedReference) {
    int deletions = 0;
    mxPointer<mxBuffer> buffer = new WatchedBuffer(mxBuffer::VERTEX, 2u, deletions);
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_SEGMENTS);
    geometry->setGeneratedBuffer(0, buffer.get());
    EXPECT_EQ(2, buffer->GetReferences());
    buffer.reset();
    EXPECT_EQ(0, deletions);
    ASSERT_NE(nullptr, geometry->getGeneratedBuffer(0));
    EXPECT_EQ(1, geometry->getGeneratedBuffer(0)->GetReferences());
    geometry.reset();
    EXPECT_EQ(1, deletions);
}

TEST(mxGeometryTest, ReplacingABufferReleasesTheOldOne) {
    int oldDeletions = 0;
    int newDeletions = 0;
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_SEGMENTS);
    geometry->setGeneratedBuffer(1, new WatchedBuffer(mxBuffer::INDEX, 2u, oldDeletions));
    mxBuffer* replacement = new WatchedBuffer(mxBuffer::INDEX, 4u, newDeletions);
    geometry->setGeneratedBuffer(1, replacement);
    EXPECT_EQ(1, oldDeletions);
    EXPECT_EQ(0, newDeletions);
    EXPECT_EQ(replacement, geometry->getGeneratedBuffer(1));
    EXPECT_EQ(1, replacement->GetReferences());
}

TEST(mxGeometryTest, SettingTheSameBufferAgainKeepsIt) {
    int deletions = 0;
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_SEGMENTS);
    mxBuffer* buffer = new WatchedBuffer(mxBuffer::VERTEX, 2u, deletions);
    geometry->setGeneratedBuffer(0, buffer);
    geometry->setGeneratedBuffer(0, buffer);
    EXPECT_EQ(0, deletions);
    EXPECT_EQ(buffer, geometry->getGeneratedBuffer(0));
    EXPECT_EQ(1, buffer->GetReferences());
}

TEST(mxGeometryTest, SettingNullEmptiesTheSlotAndReleasesTheBuffer) {
    int deletions = 0;
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_SEGMENTS);
    geometry->setGeneratedBuffer(0, new WatchedBuffer(mxBuffer::VERTEX, 2u, deletions));
    geometry->setGeneratedBuffer(0, nullptr);
    EXPECT_EQ(1, deletions);
    EXPECT_EQ(nullptr, geometry->getGeneratedBuffer(0));
}

TEST(mxGeometryTest, OneBufferMayFillBothSlots) {
    int deletions = 0;
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_SEGMENTS);
    mxBuffer* buffer = new WatchedBuffer(mxBuffer::INDEX, 2u, deletions);
    geometry->setGeneratedBuffer(0, buffer);
    geometry->setGeneratedBuffer(1, buffer);
    EXPECT_EQ(2, buffer->GetReferences());
    geometry.reset();
    EXPECT_EQ(1, deletions);
}

TEST(mxGeometryTest, EditingThroughTheGeometryAdvancesTheBufferVersion) {
    mxPointer<mxGeometry> geometry = new mxGeometry(mxGeometry::PRIMITIVE_TRIANGLES);
    geometry->setGeneratedBuffer(0, new mxBuffer(mxBuffer::VERTEX, 1u));
    const std::uint64_t version = geometry->getGeneratedBuffer(0)->getVersion();
    float* data = geometry->editGeneratedBuffer(0)->editVertices();
    ASSERT_NE(nullptr, data);
    data[1] = 2.0f;
    EXPECT_GT(geometry->getGeneratedBuffer(0)->getVersion(), version);
    EXPECT_EQ(2.0f, static_cast<const float*>(geometry->getGeneratedBuffer(0)->getData())[1]);
}
