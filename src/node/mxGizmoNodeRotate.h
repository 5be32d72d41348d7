// mxGizmoNodeRotate: the rotate manipulator's geometry: per axis a unit circle about that
// axis, drawn as a polyline. While its axis is dragged a circle is drawn as segments (the
// node's setActiveState), which shows it dashed.
#pragma once

#include "mxGizmoNodeBase.h"

namespace mx {

class mxGizmoNodeRotate : public mxGizmoNodeBase {
public:
    // The number of points of a circle.
    static constexpr unsigned int csCirclePoints = 64;

    mxGizmoNodeRotate();
    ~mxGizmoNodeRotate() override;
    // A sub-gizmo's lines belong to one node: sub-gizmos are not copied.
    mxGizmoNodeRotate(const mxGizmoNodeRotate&) = delete;
    mxGizmoNodeRotate& operator=(const mxGizmoNodeRotate&) = delete;

    // Builds the circles, attaches them to owner in axis order, resets the highlight colour
    // to white and applies the normal colours. Does nothing without an owner.
    void build(mxGizmoNode* owner);
    // Circle i: 64 points on the unit circle about axis i, 2 pixels wide. Its last index
    // goes back to point 0, so point 63 is never drawn and the closing segment spans two
    // steps: 64 indices, not 65, on purpose.
    void buildCircles();

    // Shows the enabled circles (visible true) or hides them all.
    void applyEnabledAxis(bool visible);
    // Every circle in its normal colour; markDirty marks the owner once per axis.
    void setDefaultColors(bool markDirty);
    // Circle axis in its hovered shade, the others in their normal colour.
    void highlightAxis(unsigned int axis);

    // The circle of axis (null before building or above 2).
    mxLine* getCircle(unsigned int axis) const { return lineAt(circles, axis); }

private:
    LineList circles;
};

} // namespace mx
