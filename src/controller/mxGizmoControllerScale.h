// mxGizmoControllerScale: the drag controller of the scale mode. It picks a handle and finds
// the point of the axis under the mouse exactly as the translate controller does; the distance
// dragged along the axis, in lengths of the gizmo's axis at the press, becomes a scale factor
// about the reference objects' centre, in the gizmo's orientation: 1 + s outwards and
// 1 / (1 - s) inwards, so that the objects grow linearly and shrink towards, never to, zero.
//
// During a drag the node's scale reference holds the current scale triple for the
// application.
#pragma once

#include "controller/mxGizmoControllerTranslate.h"

namespace mx {

class mxGizmoControllerScale : public mxGizmoControllerTranslate {
public:
    explicit mxGizmoControllerScale(std::vector<mx3DManipulatorMotionListener*>& listeners);
    mxGizmoControllerScale(const mxGizmoControllerScale& other);
    ~mxGizmoControllerScale() override;

    // The translate controller's hover: the scale handles are picked along the axis segments
    // from the centre to the unit axis tips.
    bool updateScaleHover(mxGizmoNode* node, const mxCamera* camera,
                          const Wm4::Vector2<float>& mouse, float maxDistance, int width,
                          int height);

    // Starts a scale drag. The listeners hear onTranslateManipulatorStart (whenever an axis
    // was picked, as for a translate press) and then onScaleManipulatorStart (on every press,
    // picked axis or not), on purpose. The node's scale reference becomes (1, 1, 1). A null
    // node or camera does nothing.
    void setMouseScalePressed(mxGizmoNode* node, const mxCamera* camera,
                              const Wm4::Vector2<float>& mouse);
    // Scales the reference objects by the factor the mouse gives along the picked axis, or
    // uniformly when the node asks for uniform scale. A factor of exactly 1 is applied too.
    // Returns false, changing nothing, without a drag, for a mouse coordinate outside [0, 1],
    // when the ray runs parallel to the drag plane, and when the start transformation is not
    // held as rotation and scale (which is also logged).
    bool setMouseScalePos(mxGizmoNode* node, const mxCamera* camera,
                          const Wm4::Vector2<float>& mouse);
    // A last move, then the end of the drag: the listeners hear onScaleManipulatorEnd with the
    // scaling since the press (no translate end).
    void setMouseScaleReleased(mxGizmoNode* node, const mxCamera* camera,
                               const Wm4::Vector2<float>& mouse);

private:
    // The tip of the picked axis in world space at the press; (0, 0, 0) when the press picked
    // nothing. Not set before the first press.
    Wm4::Vector3<float> axisTipAtPress;
};

} // namespace mx
