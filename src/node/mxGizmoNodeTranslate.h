// mxGizmoNodeTranslate: the translate manipulator's geometry: per axis a shaft from the
// centre to the unit tip and an arrowhead at the tip. In gizmo units; the node scales the
// whole gizmo to a constant size on screen.
#pragma once

#include "mxGizmoNodeBase.h"

namespace mx {

class mxGizmoNodeTranslate : public mxGizmoNodeBase {
public:
    mxGizmoNodeTranslate();
    ~mxGizmoNodeTranslate() override;
    // A sub-gizmo's lines belong to one node: sub-gizmos are not copied.
    mxGizmoNodeTranslate(const mxGizmoNodeTranslate&) = delete;
    mxGizmoNodeTranslate& operator=(const mxGizmoNodeTranslate&) = delete;

    // Builds the shafts and arrowheads, attaches them to owner (shaft and arrowhead per
    // axis), resets the highlight colour to white and applies the normal colours. Does
    // nothing without an owner.
    void build(mxGizmoNode* owner);
    // Shaft i from (0, 0, 0) to the unit axis i, 2.5 pixels wide.
    void buildAxes();
    // Arrowhead i: two wings meeting at the tip of axis i, in the x-y plane of its own frame
    // and pointing along +x; camera facing turns it later. 1.8 pixels wide.
    void buildArrowHeads();

    // Shows the enabled axes (visible true) or hides everything.
    void applyEnabledAxis(bool visible);
    // Every axis in its normal colour; markDirty marks the owner once per axis.
    void setDefaultColors(bool markDirty);
    // Axis in its hovered shade, the others in their normal colour.
    void highlightAxis(unsigned int axis);

    // The shaft and the arrowhead of axis (null before building or above 2).
    mxLine* getAxis(unsigned int axis) const { return lineAt(axes, axis); }
    mxLine* getArrowHead(unsigned int axis) const { return lineAt(arrowHeads, axis); }

private:
    LineList axes;
    LineList arrowHeads;
};

} // namespace mx
