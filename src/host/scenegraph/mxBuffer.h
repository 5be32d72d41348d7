// mxBuffer: a block of data generated for the GPU, vertices (three floats per vertex) or
// indices (one 32-bit unsigned integer each). A renderer's prepareBuffer uploads it; the
// version tells it when the data changed since the last upload.
#pragma once

#include "mxObject.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace mx {

class mxBuffer : public mxObject {
public:
    static const mxRtti TYPE;

    enum Kind { VERTEX = 0, INDEX = 1 };

    // elementCount elements of kind, all zero. A vertex has three floats.
    mxBuffer(Kind kind, unsigned int elementCount);
    ~mxBuffer() override;
    const mxRtti& GetType() const override;

    Kind getKind() const { return kind; }
    unsigned int getElementCount() const { return elementCount; }
    // Bytes per element: 12 for a vertex, 4 for an index.
    std::size_t getElementSize() const;
    std::size_t getByteSize() const { return getElementSize() * elementCount; }
    const void* getData() const;

    // Writable data of a vertex buffer (3 floats per vertex), null for an index buffer.
    float* editVertices();
    // Writable data of an index buffer, null for a vertex buffer.
    std::uint32_t* editIndices();

    // Advances with every edit; renderers compare it with what they uploaded.
    std::uint64_t getVersion() const { return version; }

private:
    Kind kind;
    unsigned int elementCount;
    std::vector<float> vertices;
    std::vector<std::uint32_t> indices;
    std::uint64_t version;
};

} // namespace mx
