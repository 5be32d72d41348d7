// mxGeometry: geometry in the form a renderer draws: a vertex buffer, an index buffer and
// how the indices are read. Scene geometries (mxBaseGeometry) generate one from their model
// data; 2-D overlays are batched as mxGeometry directly (mx2DPrimitivesPass).
#pragma once

#include "mxBuffer.h"
#include "mxObject.h"
#include "mxPointer.h"

namespace mx {

class mxGeometry : public mxObject {
public:
    static const mxRtti TYPE;

    // How the index buffer is read.
    enum Primitive {
        PRIMITIVE_SEGMENTS = 0,  // index pairs, one segment each
        PRIMITIVE_POLYLINE = 3,  // one connected polyline through all indices
        PRIMITIVE_TRIANGLES = 4  // index triples
    };

    explicit mxGeometry(Primitive primitive);
    ~mxGeometry() override;
    const mxRtti& GetType() const override;

    Primitive getPrimitive() const { return primitive; }
    void setPrimitive(Primitive newPrimitive) { primitive = newPrimitive; }

    // Buffer 0 holds the vertices, buffer 1 the indices; null when absent or for any other
    // index.
    const mxBuffer* getGeneratedBuffer(int index) const;
    mxBuffer* editGeneratedBuffer(int index);
    // Holds buffer in slot index (0 or 1; other indices are ignored).
    void setGeneratedBuffer(int index, mxBuffer* buffer);

private:
    Primitive primitive;
    mxPointer<mxBuffer> buffers[2];
};

} // namespace mx
