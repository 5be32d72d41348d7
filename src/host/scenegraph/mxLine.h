// mxLine: line geometry drawn with a colour and a width in pixels.
//
// How the index list is read is the draw method: DRAW_POLYLINE (3) draws one connected
// polyline through the indices in order; DRAW_SEGMENTS (0) draws one segment per index pair
// (0-1, 2-3, ...), so a polyline's index list drawn as segments shows dashed. A line made
// with a vertex count alone, or with strip true, starts as a polyline; with strip false it
// starts as segments.
#pragma once

#include "mxBaseGeometry.h"
#include "mxDescriptionInterface.h"

namespace mx {

class mxLine : public mxBaseGeometry, public mxDescriptionInterface {
public:
    static const mxRtti TYPE;

    enum DrawMethod { DRAW_SEGMENTS = 0, DRAW_POLYLINE = 3 };

    // vertexCount vertices at the origin, indexed 0, 1, ..., vertexCount - 1, as a polyline.
    explicit mxLine(unsigned int vertexCount);
    // vertexCount vertices at the origin and indexCount indices, all 0; strip chooses the
    // initial draw method (true polyline, false segments). Negative counts count as 0.
    mxLine(int vertexCount, int indexCount, bool strip);
    ~mxLine() override;
    const mxRtti& GetType() const override;

    // Width in pixels; 1 until set.
    void setWidth(float width) { lineWidth = width; }
    float getWidth() const { return lineWidth; }

    // Only DRAW_SEGMENTS and DRAW_POLYLINE are taken; any other value is ignored.
    void setDrawMethod(DrawMethod method);
    DrawMethod getDrawMethod() const { return drawMethod; }
    // The strip flag the line was made with.
    bool isStrip() const { return strip; }

    // "line: <n> vertices, <m> indices, polyline|segments, width <w>".
    void updateObjectDescription() override;

protected:
    mxGeometry::Primitive getPrimitive() const override;

private:
    float lineWidth;
    DrawMethod drawMethod;
    bool strip;
};

} // namespace mx
