#include "mxGizmoNodeScale.h"

#include "frame/mxLibraryStatics.h"
#include "mxGizmoNode.h"
#include "wm4/Wm4Matrix3.h"

namespace mx {

using impl::csUnitAxes;

namespace {

// The point with component axis equal to along and the components (axis + 1) and (axis + 2)
// equal to first and second.
Wm4::Vector3<float> pointAbout(unsigned int axis, float along, float first, float second) {
    Wm4::Vector3<float> point = Wm4::Vector3<float>::ZERO;
    point[axis] = along;
    point[(axis + 1) % 3] = first;
    point[(axis + 2) % 3] = second;
    return point;
}

} // namespace

mxGizmoNodeScale::mxGizmoNodeScale() = default;

mxGizmoNodeScale::~mxGizmoNodeScale() = default;

void mxGizmoNodeScale::build(mxGizmoNode* newOwner) {
    if (!newOwner) {
        return;
    }
    owner = newOwner;
    buildAxes();
    buildEndSquares();
    attachLines(axes, &endSquares);
    highlightColor = Wm4::ColorRGBA::WHITE;
    buildActiveFrames();
    attachLines(activeFrames, nullptr);
    buildCentreTriangles();
    owner->attachChild(centreTriangles.get());
    setDefaultColors(true);
}

void mxGizmoNodeScale::buildAxes() {
    resetLines(axes);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        axes[axis] = new mxLine(2u);
        setVertices(*axes[axis], {Wm4::Vector3<float>::ZERO, csUnitAxes[axis]});
        setIndices(*axes[axis], {0, 1});
    }
    finishLines(axes, 2.0f);
}

void mxGizmoNodeScale::buildEndSquares() {
    resetLines(endSquares);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        endSquares[axis] = new mxLine(4, 5, true);
        mxLine& square = *endSquares[axis];
        setVertices(square,
                    {Wm4::Vector3<float>(-0.1f, 0.1f, 0.0f), Wm4::Vector3<float>(0.1f, 0.1f, 0.0f),
                     Wm4::Vector3<float>(0.1f, -0.1f, 0.0f),
                     Wm4::Vector3<float>(-0.1f, -0.1f, 0.0f)});
        setIndices(square, {0, 1, 2, 3, 0});
        // Local x goes to axis + 1, local y to axis + 2 and the square's normal, local z, to
        // the axis itself; then the square moves to the tip.
        mxGenericTransformation<float>& local = square.editLocalTransform(true);
        local.SetRotate(Wm4::Matrix3<float>(csUnitAxes[(axis + 1) % 3], csUnitAxes[(axis + 2) % 3],
                                            csUnitAxes[axis], true));
        local.SetTranslate(csUnitAxes[axis]);
    }
    finishLines(endSquares, 1.8f);
}

void mxGizmoNodeScale::buildActiveFrames() {
    resetLines(activeFrames);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        activeFrames[axis] = new mxLine(8, 12, false);
        mxLine& frame = *activeFrames[axis];
        // Corners 0 to 3, then the cross: 4-5 along axis + 1, 6-7 along axis + 2.
        setVertices(frame,
                    {pointAbout(axis, 1.0f, -0.5f, -0.5f), pointAbout(axis, 1.0f, -0.5f, 0.5f),
                     pointAbout(axis, 1.0f, 0.5f, 0.5f), pointAbout(axis, 1.0f, 0.5f, -0.5f),
                     pointAbout(axis, 1.0f, -0.5f, 0.0f), pointAbout(axis, 1.0f, 0.5f, 0.0f),
                     pointAbout(axis, 1.0f, 0.0f, -0.5f), pointAbout(axis, 1.0f, 0.0f, 0.5f)});
        setIndices(frame, {0, 1, 1, 2, 2, 3, 3, 0, 4, 5, 6, 7});
        frame.setColor(Wm4::ColorRGB(highlightColor.R(), highlightColor.G(), highlightColor.B()));
        updateLine(frame);
    }
}

void mxGizmoNodeScale::buildCentreTriangles() {
    centreTriangles = new mxLine(6, 12, true);
    setVertices(*centreTriangles,
                {Wm4::Vector3<float>(0.5f, 0.0f, 0.0f), Wm4::Vector3<float>(0.0f, 0.5f, 0.0f),
                 Wm4::Vector3<float>(0.0f, 0.0f, 0.5f), Wm4::Vector3<float>(0.7f, 0.0f, 0.0f),
                 Wm4::Vector3<float>(0.0f, 0.7f, 0.0f), Wm4::Vector3<float>(0.0f, 0.0f, 0.7f)});
    setIndices(*centreTriangles, {0, 1, 1, 2, 2, 0, 3, 4, 4, 5, 5, 3});
    centreTriangles->setWidth(2.0f);
    updateLine(*centreTriangles);
}

void mxGizmoNodeScale::applyEnabledAxis(bool visible) {
    applyAxisCulling(axes, visible);
    applyAxisCulling(endSquares, visible);
    for (const mxPointer<mxLine>& frame : activeFrames) {
        if (frame) {
            frame->setCullingMode(mxSpatial::CULL_ALWAYS);
        }
    }
    // With no axis bit set the triangles keep whatever culling mode they had: on purpose.
    if (centreTriangles && (enabledAxis & 0x07) != 0) {
        centreTriangles->setCullingMode(visible ? mxSpatial::CULL_DYNAMIC : mxSpatial::CULL_ALWAYS);
    }
}

void mxGizmoNodeScale::setActiveState(unsigned int axis, bool active) {
    if (!isAxisEnabled(axis)) {
        return;
    }
    if (mxLine* other = lineAt(activeFrames, (axis + 1) % 3)) {
        other->setCullingMode(mxSpatial::CULL_ALWAYS);
    }
    if (mxLine* other = lineAt(activeFrames, (axis + 2) % 3)) {
        other->setCullingMode(mxSpatial::CULL_ALWAYS);
    }
    if (mxLine* frame = lineAt(activeFrames, axis)) {
        frame->setCullingMode(active ? mxSpatial::CULL_DYNAMIC : mxSpatial::CULL_ALWAYS);
    }
}

void mxGizmoNodeScale::setDefaultColors(bool markDirty) {
    applyNormalColors(axes, &endSquares, markDirty);
    if (centreTriangles) {
        centreTriangles->setColor(Wm4::ColorRGB::WHITE);
    }
}

void mxGizmoNodeScale::highlightAxis(unsigned int axis) {
    highlightLines(axes, &endSquares, axis);
    if (centreTriangles && axis < 3) {
        centreTriangles->setColor(Wm4::ColorRGB::WHITE);
    }
}

} // namespace mx
