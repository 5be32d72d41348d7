#include "mxLine.h"

#include <sstream>

namespace mx {

const mxRtti mxLine::TYPE("mxCore.mxLine", &mxBaseGeometry::TYPE);

mxLine::mxLine(unsigned int vertexCount)
    : mxBaseGeometry(vertexCount, vertexCount), lineWidth(1.0f), drawMethod(DRAW_POLYLINE),
      strip(true) {
    for (unsigned int i = 0; i < vertexCount; ++i) {
        setIndex(i, i);
    }
    updateObjectDescription();
}

mxLine::mxLine(int vertexCount, int indexCount, bool strip)
    : mxBaseGeometry(vertexCount > 0 ? static_cast<unsigned int>(vertexCount) : 0u,
                     indexCount > 0 ? static_cast<unsigned int>(indexCount) : 0u),
      lineWidth(1.0f), drawMethod(strip ? DRAW_POLYLINE : DRAW_SEGMENTS), strip(strip) {
    updateObjectDescription();
}

mxLine::~mxLine() = default;

const mxRtti& mxLine::GetType() const { return TYPE; }

void mxLine::setDrawMethod(DrawMethod method) {
    if (method != DRAW_SEGMENTS && method != DRAW_POLYLINE) {
        return;
    }
    if (method != drawMethod) {
        drawMethod = method;
        readingChanged();
    }
}

void mxLine::updateObjectDescription() {
    std::ostringstream text;
    // A stream swallows a failed allocation (it only sets badbit); let it out, so that a line
    // that cannot be made fully is not made at all.
    text.exceptions(std::ios_base::badbit);
    text << "line: " << getVertexCount() << " vertices, " << getIndexCount() << " indices, "
         << (drawMethod == DRAW_POLYLINE ? "polyline" : "segments") << ", width " << lineWidth;
    objectDescription = text.str();
}

mxGeometry::Primitive mxLine::getPrimitive() const {
    return drawMethod == DRAW_POLYLINE ? mxGeometry::PRIMITIVE_POLYLINE
                                       : mxGeometry::PRIMITIVE_SEGMENTS;
}

} // namespace mx
