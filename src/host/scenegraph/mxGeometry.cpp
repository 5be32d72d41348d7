#include "mxGeometry.h"

namespace mx {

const mxRtti mxGeometry::TYPE("mxCore.mxGeometry", &mxObject::TYPE);

mxGeometry::mxGeometry(Primitive primitive) : primitive(primitive) {}

mxGeometry::~mxGeometry() = default;

const mxRtti& mxGeometry::GetType() const { return TYPE; }

const mxBuffer* mxGeometry::getGeneratedBuffer(int index) const {
    return (index == 0 || index == 1) ? buffers[index].get() : nullptr;
}

mxBuffer* mxGeometry::editGeneratedBuffer(int index) {
    return (index == 0 || index == 1) ? buffers[index].get() : nullptr;
}

void mxGeometry::setGeneratedBuffer(int index, mxBuffer* buffer) {
    if (index == 0 || index == 1) {
        buffers[index] = buffer;
    }
}

} // namespace mx
