// OrbitCamera: the viewer's camera as editors drive it: an eye orbiting a target point at a
// distance, with yaw about the world's y axis and pitch above the ground plane, in perspective
// or orthographic projection. apply() writes it into a host camera.
#pragma once

#include "scenegraph/mxCamera.h"
#include "wm4/Wm4Vector3.h"

namespace viewer {

class OrbitCamera {
public:
    // Home view: the target above the origin, seen from the front right and above.
    OrbitCamera();

    void reset();

    // Turns the eye about the target by yaw degrees around y and pitch degrees up; pitch
    // stays within +-89 degrees.
    void orbit(double yawDegrees, double pitchDegrees);
    // Moves the target (and the eye with it) so that the scene follows the mouse: dx, dy in
    // pixels of a view viewportHeight pixels tall, dy measured downwards.
    void pan(double dx, double dy, int viewportHeight);
    // Wheel notches: each one brings the eye 15% closer (negative: further).
    void zoom(double notches);
    // Places the eye at eye looking at target; false and nothing changed when they coincide.
    bool lookAt(const Wm4::Vector3<double>& eye, const Wm4::Vector3<double>& target);
    // Looks at a sphere so that it fills most of the view.
    void frame(const Wm4::Vector3<double>& centre, double radius);

    void setPerspective(bool perspective) { perspectiveProjection = perspective; }
    bool isPerspective() const { return perspectiveProjection; }

    Wm4::Vector3<double> getEye() const;
    const Wm4::Vector3<double>& getTarget() const { return target; }
    double getDistance() const { return distance; }
    double getYawDegrees() const { return yawDegrees; }
    double getPitchDegrees() const { return pitchDegrees; }
    // The vertical field of view in perspective; in orthographic projection the view is as
    // tall as the perspective view is at the target.
    double getFieldOfViewDegrees() const { return fieldOfViewDegrees; }
    double getNear() const { return nearDistance; }
    double getFar() const { return farDistance; }

    // Frame, frustum and projection of camera for a view of width x height pixels.
    void apply(mx::mxCamera& camera, int width, int height) const;

private:
    Wm4::Vector3<double> target;
    double distance;
    double yawDegrees;
    double pitchDegrees;
    double fieldOfViewDegrees;
    double nearDistance;
    double farDistance;
    bool perspectiveProjection;
};

} // namespace viewer
