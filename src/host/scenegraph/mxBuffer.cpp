#include "mxBuffer.h"

namespace mx {

const mxRtti mxBuffer::TYPE("mxCore.mxBuffer", &mxObject::TYPE);

mxBuffer::mxBuffer(Kind kind, unsigned int elementCount)
    : kind(kind), elementCount(elementCount), version(0) {
    if (kind == VERTEX) {
        vertices.assign(static_cast<std::size_t>(elementCount) * 3u, 0.0f);
    } else {
        indices.assign(elementCount, 0u);
    }
}

mxBuffer::~mxBuffer() = default;

const mxRtti& mxBuffer::GetType() const { return TYPE; }

std::size_t mxBuffer::getElementSize() const {
    return kind == VERTEX ? 3u * sizeof(float) : sizeof(std::uint32_t);
}

const void* mxBuffer::getData() const {
    return kind == VERTEX ? static_cast<const void*>(vertices.data())
                          : static_cast<const void*>(indices.data());
}

float* mxBuffer::editVertices() {
    if (kind != VERTEX) {
        return nullptr;
    }
    ++version;
    return vertices.data();
}

std::uint32_t* mxBuffer::editIndices() {
    if (kind != INDEX) {
        return nullptr;
    }
    ++version;
    return indices.data();
}

} // namespace mx
