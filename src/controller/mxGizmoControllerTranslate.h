// mxGizmoControllerTranslate: the drag controller of the translate mode, and the base of the
// scale controller, which picks and projects exactly as it does.
//
// mxGizmoController owns one and drives it with a gizmo node, the view's camera and the mouse
// position normalised to [0, 1] from the lower left of the view (mxCamera::getPickRay's
// convention). Picking is done on screen, in pixels: an axis is under the mouse when the
// segment from the gizmo's centre to the tip of the axis, projected by the camera, passes
// within maxDistance pixels of the mouse.
//
// Calling order: hover calls while no button is down (they pick an axis), setMousePressed when
// the button goes down, setMousePos per move, setMouseReleased when it goes up. A drag moves
// the node's reference objects along the picked axis: the pick ray meets the plane through the
// axis that faces the camera best, and the hit is projected onto the axis. Every move is
// measured from the press, so moves never accumulate.
//
// A null node or camera makes every operation return false or do nothing, except that the
// release still ends the drag and tells the listeners.
#pragma once

#include "scenegraph/mxGenericTransformation.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include <vector>

namespace mx {

class mx3DManipulatorMotionListener;
class mxCamera;
class mxGizmoController;
class mxGizmoNode;

class mxGizmoControllerTranslate {
public:
    // listeners is the owner's list, read at each announcement; it must outlive this object.
    explicit mxGizmoControllerTranslate(std::vector<mx3DManipulatorMotionListener*>& listeners);
    // Copies the drag state and shares the source's listener list.
    mxGizmoControllerTranslate(const mxGizmoControllerTranslate& other);
    mxGizmoControllerTranslate& operator=(const mxGizmoControllerTranslate&) = delete;
    virtual ~mxGizmoControllerTranslate();

    // The picked axis in world space, of unit length: (0, 0, 0) when no axis is picked or
    // before the first press.
    virtual Wm4::Vector3<float> getPickedWorldAxe() const;
    // 0, 1 or 2 for X, Y, Z; -1 when no axis is picked.
    virtual int getPickedAxe() const;

    // Picks the axis nearest the mouse among the enabled axes of the node's current mode and
    // highlights it, or puts that mode's colours back when none lies within maxDistance pixels
    // (width x height: the view in pixels). An axis exactly maxDistance away counts, and of
    // two equally near axes the later one wins. Returns whether an axis is picked.
    bool updateTranslateHover(mxGizmoNode* node, const mxCamera* camera,
                              const Wm4::Vector2<float>& mouse, float maxDistance, int width,
                              int height);
    // Whether an enabled axis of the node's current mode lies within maxDistance pixels of
    // the mouse. Changes nothing.
    bool isOver(const mxGizmoNode* node, const mxCamera* camera, const Wm4::Vector2<float>& mouse,
                float maxDistance, int width, int height) const;

    // Starts a drag on the picked axis: records the objects' transformations and the point of
    // the axis under the mouse, and tells the listeners onTranslateManipulatorStart. The start
    // is announced whenever an axis was picked, even when the pick ray meets neither plane
    // through the axis in front of the eye; the pick is then dropped and the drag goes
    // nowhere. Without a picked axis only the node is remembered.
    void setMousePressed(mxGizmoNode* node, const mxCamera* camera,
                         const Wm4::Vector2<float>& mouse);
    // Moves the reference objects by the translation along the axis since the press. Returns
    // false, changing nothing, without a drag, for a mouse coordinate outside [0, 1] (the
    // bounds are inside), when the ray runs parallel to the drag plane, and when the mouse is
    // back exactly at the press point.
    bool setMousePos(mxGizmoNode* node, const mxCamera* camera, const Wm4::Vector2<float>& mouse);
    // A last move, then the end of the drag: the pick is dropped and the listeners hear
    // onTranslateManipulatorEnd with the translation since the press (the identity when no
    // move took effect).
    void setMouseReleased(mxGizmoNode* node, const mxCamera* camera,
                          const Wm4::Vector2<float>& mouse);

protected:
    // The gizmo controller hovers with the mask of the sub-gizmo it dispatches to.
    friend class mxGizmoController;

    // The hover of the public overload over the axes whose bits are set in axisMask.
    bool updateTranslateHover(mxGizmoNode* node, const mxCamera* camera,
                              const Wm4::Vector2<float>& mouse, unsigned char axisMask,
                              float maxDistance, int width, int height);
    // point = the point of the drag axis under the mouse, t = its signed distance from
    // pressPoint along the axis. A hit behind the eye counts. With restrictNearFar the point
    // is kept between the camera's near and far planes. Returns false, leaving point and t
    // alone, when the ray runs parallel to the drag plane, when the camera gives no pick ray
    // (a mouse outside the view) and when no axis is picked.
    bool getProjectedPoint(const mxCamera* camera, const Wm4::Vector2<float>& mouse,
                           bool restrictNearFar, Wm4::Vector3<float>& point, float& t) const;
    // axis, a direction in the gizmo's frame, in world space and of unit length; (0, 0, 0)
    // before the first press.
    Wm4::Vector3<float> getWorldOrientation(const Wm4::Vector3<float>& axis) const;
    // (1, 1, 1) with the picked axis's component set to factor; (0, 0, 0) without a pick.
    Wm4::Vector3<float> getResultingScale(float factor) const;
    // The tip of the picked axis of node in world space; (0, 0, 0) without a pick or a node.
    Wm4::Vector3<float> getCurrentWorldPointPosition(const mxGizmoNode* node) const;

    // Whether pickedAxe names an axis. Only -1 is ever stored for none, but any other value
    // counts as none too.
    bool hasPickedAxis() const { return pickedAxe >= 0 && pickedAxe <= 2; }

    // At the press: the node's world rotation and the reference objects' centre.
    mxGenericTransformation<float> startTransformation;
    // The translation since the press: what the objects were last moved by.
    mxGenericTransformation<float> resultTransformation;
    // The node of the current or last drag; not owned.
    mxGizmoNode* gizmo;
    // The point of the drag axis under the mouse at the press, in world space.
    Wm4::Vector3<float> pressPoint;
    std::vector<mx3DManipulatorMotionListener*>& listeners;
    // -1 for none, else 0, 1, 2 for X, Y, Z.
    int pickedAxe : 3;
    // The drag plane contains the picked axis; its normal is axis (pickedAxe + 1) mod 3, or
    // (pickedAxe + 2) mod 3 when this is set.
    unsigned int useSecondPlane : 1;
};

} // namespace mx
