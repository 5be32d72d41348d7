// mxGizmoNodeScale: the scale manipulator's geometry: per axis a shaft with a small square
// at its tip and a larger frame shown while that axis is dragged, and two triangles joining
// the axes near the centre.
#pragma once

#include "mxGizmoNodeBase.h"

namespace mx {

class mxGizmoNodeScale : public mxGizmoNodeBase {
public:
    mxGizmoNodeScale();
    ~mxGizmoNodeScale() override;
    // A sub-gizmo's lines belong to one node: sub-gizmos are not copied.
    mxGizmoNodeScale(const mxGizmoNodeScale&) = delete;
    mxGizmoNodeScale& operator=(const mxGizmoNodeScale&) = delete;

    // Builds and attaches, in this order: shaft and end square per axis, the three active
    // frames (in the highlight colour, which is reset to white just before), the centre
    // triangles; then applies the normal colours. Does nothing without an owner.
    void build(mxGizmoNode* owner);
    // Shaft i from (0, 0, 0) to the unit axis i, 2 pixels wide.
    void buildAxes();
    // End square i: 0.2 on a side, perpendicular to axis i at its tip, 1.8 pixels wide.
    void buildEndSquares();
    // Active frame i: a unit square perpendicular to axis i at distance 1 with a cross
    // through its centre, drawn as segments, in the current highlight colour.
    void buildActiveFrames();
    // Two triangles joining the three axes at 0.5 and at 0.7, 2 pixels wide.
    void buildCentreTriangles();

    // Shows the enabled axes with their end squares (visible true) or hides them; the
    // active frames are always hidden. The centre triangles follow visible only when at
    // least one axis bit is set: with none they keep their culling mode, on purpose.
    void applyEnabledAxis(bool visible);
    // While axis is dragged (active true) its frame is shown, the other frames hidden; when
    // the drag ends it is hidden again. Nothing for a disabled axis.
    void setActiveState(unsigned int axis, bool active);
    // Every axis in its normal colour, the centre triangles white; markDirty marks the
    // owner once per axis.
    void setDefaultColors(bool markDirty);
    // Axis in its hovered shade, the others in their normal colour, the triangles white.
    void highlightAxis(unsigned int axis);

    // The lines of axis (null before building or above 2).
    mxLine* getAxis(unsigned int axis) const { return lineAt(axes, axis); }
    mxLine* getActiveFrame(unsigned int axis) const { return lineAt(activeFrames, axis); }
    mxLine* getEndSquare(unsigned int axis) const { return lineAt(endSquares, axis); }
    mxLine* getCentreTriangles() const { return centreTriangles.get(); }

private:
    LineList axes;
    LineList activeFrames;
    LineList endSquares;
    mxPointer<mxLine> centreTriangles;
};

} // namespace mx
