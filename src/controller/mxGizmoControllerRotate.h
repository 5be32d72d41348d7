// mxGizmoControllerRotate: the drag controller of the rotate mode.
//
// mxGizmoController owns one and drives it with a gizmo node, the view's camera and the mouse
// position normalised to [0, 1] from the lower left of the view. The rotate gizmo shows one
// circle of radius 1 (in the gizmo's frame) about each axis; hovering picks the circle nearest
// the mouse on screen, of which only the half facing the viewer counts. A drag turns the
// reference objects about the picked circle's axis, through the gizmo's position, by the angle
// the mouse has swept around the gizmo's centre since the press, rounded to 5 degrees. A press
// within 1.6 pixels of the centre (on both axes) cannot define an angle and drops the pick.
//
// At the release the gizmo's own orientation is squared to 5-degree steps when the node asks
// for it (shouldSnapRotationToAxis).
//
// A null node or camera makes every operation return false or do nothing, except that the
// release still ends the drag.
#pragma once

#include "scenegraph/mxGenericTransformation.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include <vector>

namespace mx {

class mx3DManipulatorMotionListener;
class mxCamera;
class mxGizmoNode;

class mxGizmoControllerRotate {
public:
    // listeners is the owner's list, read at each announcement; it must outlive this object.
    explicit mxGizmoControllerRotate(std::vector<mx3DManipulatorMotionListener*>& listeners);
    // Copies the drag state and shares the source's listener list; the copy has its own
    // circle table.
    mxGizmoControllerRotate(const mxGizmoControllerRotate& other);
    mxGizmoControllerRotate& operator=(const mxGizmoControllerRotate&) = delete;
    virtual ~mxGizmoControllerRotate();

    // The picked circle's axis in world space, of unit length: (0, 0, 0) when no circle is
    // picked or no drag has run.
    virtual Wm4::Vector3<float> getPickedWorldAxe() const;
    // 0, 1 or 2 for the circle about X, Y, Z; -1 when none is picked.
    virtual int getPickedAxe() const;

    // Picks the enabled circle of the rotate sub-gizmo nearest the mouse and highlights it,
    // or puts the current mode's colours back when none lies within maxDistance pixels. Ties
    // and the exact tolerance go to the later circle. Returns whether a circle is picked.
    bool updateRotateHover(mxGizmoNode* node, const mxCamera* camera,
                           const Wm4::Vector2<float>& mouse, float maxDistance, int width,
                           int height);
    // Whether an enabled circle lies within maxDistance pixels of the mouse. Changes nothing.
    bool isOver(const mxGizmoNode* node, const mxCamera* camera, const Wm4::Vector2<float>& mouse,
                float maxDistance, int width, int height) const;

    // Starts a rotation of the picked circle: records the objects' transformations and where
    // the pick ray meets the circle's plane (behind the eye too), shows the circle as dragged
    // and tells the listeners onRotateManipulatorStart. A press on the centre, a ray parallel
    // to the plane, or a gizmo whose world transformation is not held as rotation and scale
    // (which has no normal, and is logged) drops the pick and tells nobody.
    void setMousePressed(mxGizmoNode* node, const mxCamera* camera,
                         const Wm4::Vector2<float>& mouse, int width, int height);
    // Turns the reference objects by the angle swept since the press, rounded to 5 degrees.
    // Returns false, changing nothing, without a drag, for a mouse coordinate outside [0, 1]
    // (the bounds are inside), on the centre, and when the ray runs parallel to the plane.
    bool setMousePos(mxGizmoNode* node, const mxCamera* camera, const Wm4::Vector2<float>& mouse,
                     int width, int height);
    // A last move, the optional squaring of the gizmo, then the end of the drag: the circle
    // is shown idle and the listeners hear onRotateManipulatorEnd with the rotation since the
    // press. Without a drag it only forgets the node.
    void setMouseReleased(mxGizmoNode* node, const mxCamera* camera,
                          const Wm4::Vector2<float>& mouse, int width, int height);

private:
    // The gizmo controller makes it forget the node of the drag when it is reset.
    friend class mxGizmoController;

    // Whether pickedAxe names a circle.
    bool hasPickedAxis() const { return pickedAxe >= 0 && pickedAxe <= 2; }
    void initRotate();
    // pickedAxe = the enabled circle nearest the mouse within maxDistance, or -1.
    bool pickCircle(const mxGizmoNode* node, const mxCamera* camera,
                    const Wm4::Vector2<float>& mouse, float maxDistance, int width, int height);
    // The distance in pixels from mousePixels to the half of circle axis that faces the eye;
    // the largest finite float when no sample of it faces the eye.
    float getNearestDistCirclePoint(const mxGizmoNode* node, int axis, const mxCamera* camera,
                                    const Wm4::Vector2<float>& mousePixels, int width,
                                    int height) const;
    // axis turned by the node's world rotation, of unit length; (0, 0, 0) for a null node and,
    // logged, for a node whose world transformation is not rotation and scale.
    Wm4::Vector3<float> getWorldNormal(const Wm4::Vector3<float>& axis,
                                       const mxGizmoNode* node) const;
    // Squares the gizmo's orientation to 5-degree steps when the node asks for it.
    void onEndPos(mxGizmoNode* node);
    // The local point of sample k of the circle about axis.
    Wm4::Vector3<float> circlePoint(int axis, int k) const;

    // At the press: the node's world rotation and its local translation, the centre of the
    // rotation.
    mxGenericTransformation<float> startTransformation;
    // The rotation about the centre since the press.
    mxGenericTransformation<float> resultTransformation;
    // The unit circle in 40 steps of 9 degrees from angle 0; entry 40 repeats entry 0.
    Wm4::Vector2<float>* circleSamples;
    // Each circle's 40 samples, coordinate by coordinate, and their mean, in the gizmo's
    // frame.
    struct CirclePoints {
        float x[40];
        float y[40];
        float z[40];
    };
    CirclePoints circlePoints[3];
    Wm4::Vector3<float> circleCentres[3];
    // The node of the current drag; not owned.
    mxGizmoNode* gizmo;
    // Where the pick ray met the circle's plane at the press, in world space.
    Wm4::Vector3<float> pressPoint;
    std::vector<mx3DManipulatorMotionListener*>& listeners;
    // -1 for none, else 0, 1, 2 for the circle about X, Y, Z.
    int pickedAxe;
};

} // namespace mx
