#include "scenegraph/mxBuffer.h"
#include "scenegraph/mxPointer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

using mx::mxBuffer;
using mx::mxPointer;

TEST(mxBufferTest, TypeIsBufferDerivedFromObject) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::VERTEX, 1u);
    EXPECT_TRUE(buffer->IsExactly(mxBuffer::TYPE));
    EXPECT_TRUE(buffer->IsDerived(mx::mxObject::TYPE));
    EXPECT_STREQ("mxCore.mxBuffer", buffer->GetType().getName());
}

TEST(mxBufferTest, KindValuesAreVertexZeroAndIndexOne) {
    EXPECT_EQ(0, static_cast<int>(mxBuffer::VERTEX));
    EXPECT_EQ(1, static_cast<int>(mxBuffer::INDEX));
}

TEST(mxBufferTest, BufferKeepsItsKindAndElementCount) {
    mxPointer<mxBuffer> vertices = new mxBuffer(mxBuffer::VERTEX, 5u);
    mxPointer<mxBuffer> indices = new mxBuffer(mxBuffer::INDEX, 7u);
    EXPECT_EQ(mxBuffer::VERTEX, vertices->getKind());
    EXPECT_EQ(5u, vertices->getElementCount());
    EXPECT_EQ(mxBuffer::INDEX, indices->getKind());
    EXPECT_EQ(7u, indices->getElementCount());
}

TEST(mxBufferTest, VertexIsThreeFloats) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::VERTEX, 5u);
    EXPECT_EQ(12u, buffer->getElementSize());
    EXPECT_EQ(3u * sizeof(float), buffer->getElementSize());
    EXPECT_EQ(60u, buffer->getByteSize());
}

TEST(mxBufferTest, IndexIsFourBytes) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::INDEX, 7u);
    EXPECT_EQ(4u, buffer->getElementSize());
    EXPECT_EQ(28u, buffer->getByteSize());
}

TEST(mxBufferTest, EmptyBufferHasNoBytes) {
    mxPointer<mxBuffer> vertices = new mxBuffer(mxBuffer::VERTEX, 0u);
    mxPointer<mxBuffer> indices = new mxBuffer(mxBuffer::INDEX, 0u);
    EXPECT_EQ(0u, vertices->getByteSize());
    EXPECT_EQ(12u, vertices->getElementSize());
    EXPECT_EQ(0u, indices->getByteSize());
    EXPECT_EQ(4u, indices->getElementSize());
}

TEST(mxBufferTest, NewVertexBufferIsAllZero) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::VERTEX, 4u);
    const float* data = static_cast<const float*>(buffer->getData());
    ASSERT_NE(nullptr, data);
    EXPECT_EQ(std::vector<float>(12u, 0.0f), std::vector<float>(data, data + 12));
}

TEST(mxBufferTest, NewIndexBufferIsAllZero) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::INDEX, 6u);
    const std::uint32_t* data = static_cast<const std::uint32_t*>(buffer->getData());
    ASSERT_NE(nullptr, data);
    EXPECT_EQ(std::vector<std::uint32_t>(6u, 0u), std::vector<std::uint32_t>(data, data + 6));
}

TEST(mxBufferTest, NewBufferIsAtVersionZero) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::VERTEX, 2u);
    EXPECT_EQ(0u, buffer->getVersion());
}

TEST(mxBufferTest, VertexEditsAreSeenThroughTheData) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::VERTEX, 2u);
    float* edit = buffer->editVertices();
    ASSERT_NE(nullptr, edit);
    for (int i = 0; i < 6; ++i) {
        edit[i] = 0.5f * static_cast<float>(i + 1);
    }
    EXPECT_EQ(static_cast<const void*>(edit), buffer->getData());
    const float* data = static_cast<const float*>(buffer->getData());
    EXPECT_EQ((std::vector<float>{0.5f, 1.0f, 1.5f, 2.0f, 2.5f, 3.0f}),
              std::vector<float>(data, data + 6));
}

TEST(mxBufferTest, IndexEditsAreSeenThroughTheData) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::INDEX, 3u);
    std::uint32_t* edit = buffer->editIndices();
    ASSERT_NE(nullptr, edit);
    edit[0] = 7u;
    edit[2] = 4000000000u;
    EXPECT_EQ(static_cast<const void*>(edit), buffer->getData());
    const std::uint32_t* data = static_cast<const std::uint32_t*>(buffer->getData());
    EXPECT_EQ((std::vector<std::uint32_t>{7u, 0u, 4000000000u}),
              std::vector<std::uint32_t>(data, data + 3));
}

TEST(mxBufferTest, EveryEditAdvancesTheVersion) {
    mxPointer<mxBuffer> vertices = new mxBuffer(mxBuffer::VERTEX, 2u);
    vertices->editVertices();
    const std::uint64_t first = vertices->getVersion();
    EXPECT_GT(first, 0u);
    vertices->editVertices();
    EXPECT_GT(vertices->getVersion(), first);

    mxPointer<mxBuffer> indices = new mxBuffer(mxBuffer::INDEX, 2u);
    indices->editIndices();
    const std::uint64_t firstIndex = indices->getVersion();
    EXPECT_GT(firstIndex, 0u);
    indices->editIndices();
    EXPECT_GT(indices->getVersion(), firstIndex);
}

TEST(mxBufferTest, ReadingDoesNotAdvanceTheVersion) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::INDEX, 2u);
    buffer->editIndices();
    const std::uint64_t version = buffer->getVersion();
    buffer->getData();
    buffer->getByteSize();
    EXPECT_EQ(version, buffer->getVersion());
}

TEST(mxBufferTest, VertexEditOfAnIndexBufferIsNullAndKeepsTheVersion) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::INDEX, 3u);
    EXPECT_EQ(nullptr, buffer->editVertices());
    EXPECT_EQ(0u, buffer->getVersion());
}

TEST(mxBufferTest, IndexEditOfAVertexBufferIsNullAndKeepsTheVersion) {
    mxPointer<mxBuffer> buffer = new mxBuffer(mxBuffer::VERTEX, 3u);
    EXPECT_EQ(nullptr, buffer->editIndices());
    EXPECT_EQ(0u, buffer->getVersion());
}
