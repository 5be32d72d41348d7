#include "mxGizmoNodeTranslate.h"

#include "frame/mxLibraryStatics.h"
#include "wm4/Wm4Math.h"
#include "wm4/Wm4Matrix3.h"

namespace mx {

using impl::csUnitAxes;

mxGizmoNodeTranslate::mxGizmoNodeTranslate() = default;

mxGizmoNodeTranslate::~mxGizmoNodeTranslate() = default;

void mxGizmoNodeTranslate::build(mxGizmoNode* newOwner) {
    if (!newOwner) {
        return;
    }
    owner = newOwner;
    buildAxes();
    buildArrowHeads();
    attachLines(axes, &arrowHeads);
    highlightColor = Wm4::ColorRGBA::WHITE;
    setDefaultColors(true);
}

void mxGizmoNodeTranslate::buildAxes() {
    resetLines(axes);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        axes[axis] = new mxLine(2u);
        setVertices(*axes[axis], {Wm4::Vector3<float>::ZERO, csUnitAxes[axis]});
        setIndices(*axes[axis], {0, 1});
    }
    // Thicker than the scale shafts on purpose.
    finishLines(axes, 2.5f);
}

void mxGizmoNodeTranslate::buildArrowHeads() {
    // Wings 0.2 back from the tip, each at pi/8 from the shaft.
    const float h = 0.2f * Wm4::Math<float>::Tan(Wm4::Math<float>::WM4_PI / 8.0f);
    resetLines(arrowHeads);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        arrowHeads[axis] = new mxLine(3u);
        mxLine& head = *arrowHeads[axis];
        setVertices(head, {Wm4::Vector3<float>(-0.2f, h, 0.0f), Wm4::Vector3<float>::ZERO,
                           Wm4::Vector3<float>(-0.2f, -h, 0.0f)});
        setIndices(head, {0, 1, 2});
        mxGenericTransformation<float>& local = head.editLocalTransform(true);
        local.SetRotate(Wm4::Matrix3<float>::IDENTITY);
        local.SetTranslate(csUnitAxes[axis]);
    }
    finishLines(arrowHeads, 1.8f);
}

void mxGizmoNodeTranslate::applyEnabledAxis(bool visible) {
    applyAxisCulling(axes, visible);
    applyAxisCulling(arrowHeads, visible);
}

void mxGizmoNodeTranslate::setDefaultColors(bool markDirty) {
    applyNormalColors(axes, &arrowHeads, markDirty);
}

void mxGizmoNodeTranslate::highlightAxis(unsigned int axis) {
    highlightLines(axes, &arrowHeads, axis);
}

} // namespace mx
