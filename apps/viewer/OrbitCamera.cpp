#include "OrbitCamera.h"

#include <algorithm>
#include <cmath>

namespace viewer {

namespace {

constexpr double csPi = 3.14159265358979323846;

double radians(double degrees) {
    return degrees * csPi / 180.0;
}

Wm4::Vector3<float> toFloat(const Wm4::Vector3<double>& v) {
    return Wm4::Vector3<float>(static_cast<float>(v.X()), static_cast<float>(v.Y()),
                               static_cast<float>(v.Z()));
}

} // namespace

OrbitCamera::OrbitCamera() {
    reset();
}

void OrbitCamera::reset() {
    target = Wm4::Vector3<double>(0.0, 0.5, 0.0);
    distance = 11.0;
    yawDegrees = 35.0;
    pitchDegrees = 28.0;
    fieldOfViewDegrees = 45.0;
    nearDistance = 0.1;
    farDistance = 500.0;
    perspectiveProjection = true;
}

void OrbitCamera::orbit(double yaw, double pitch) {
    yawDegrees = std::fmod(yawDegrees + yaw, 360.0);
    pitchDegrees = std::clamp(pitchDegrees + pitch, -89.0, 89.0);
}

void OrbitCamera::pan(double dx, double dy, int viewportHeight) {
    if (viewportHeight <= 0) {
        return;
    }
    // World units per pixel at the target's depth.
    const double unitsPerPixel =
        2.0 * distance * std::tan(radians(fieldOfViewDegrees) / 2.0) / viewportHeight;
    const double yaw = radians(yawDegrees);
    const double pitch = radians(pitchDegrees);
    const Wm4::Vector3<double> right(std::cos(yaw), 0.0, -std::sin(yaw));
    const Wm4::Vector3<double> up(-std::sin(pitch) * std::sin(yaw), std::cos(pitch),
                                  -std::sin(pitch) * std::cos(yaw));
    // Dragging right moves the scene right: the target goes left.
    target -= right * (dx * unitsPerPixel);
    target += up * (dy * unitsPerPixel);
}

void OrbitCamera::zoom(double notches) {
    distance = std::clamp(distance * std::pow(0.85, notches), 0.5, 400.0);
}

bool OrbitCamera::lookAt(const Wm4::Vector3<double>& eye, const Wm4::Vector3<double>& newTarget) {
    const Wm4::Vector3<double> offset = eye - newTarget;
    const double length = offset.Length();
    if (!(length > 1e-9) || !std::isfinite(length)) {
        return false;
    }
    target = newTarget;
    distance = length;
    pitchDegrees = std::clamp(std::asin(offset.Y() / length) * 180.0 / csPi, -89.0, 89.0);
    yawDegrees = std::atan2(offset.X(), offset.Z()) * 180.0 / csPi;
    return true;
}

void OrbitCamera::frame(const Wm4::Vector3<double>& centre, double radius) {
    target = centre;
    const double half = radians(fieldOfViewDegrees) / 2.0;
    distance = std::clamp(std::max(radius, 0.25) / std::sin(half) * 1.2, 0.5, 400.0);
}

Wm4::Vector3<double> OrbitCamera::getEye() const {
    const double yaw = radians(yawDegrees);
    const double pitch = radians(pitchDegrees);
    const Wm4::Vector3<double> offset(std::cos(pitch) * std::sin(yaw), std::sin(pitch),
                                      std::cos(pitch) * std::cos(yaw));
    return target + offset * distance;
}

void OrbitCamera::apply(mx::mxCamera& camera, int width, int height) const {
    camera.lookAt(toFloat(getEye()), toFloat(target), Wm4::Vector3<float>(0.0f, 1.0f, 0.0f));
    const double aspect = height > 0 && width > 0 ? static_cast<double>(width) / height : 1.0;
    camera.setPerspective(perspectiveProjection);
    if (perspectiveProjection) {
        camera.setFrustum(static_cast<float>(fieldOfViewDegrees), static_cast<float>(aspect),
                          static_cast<float>(nearDistance), static_cast<float>(farDistance));
    } else {
        const double halfHeight = distance * std::tan(radians(fieldOfViewDegrees) / 2.0);
        const double halfWidth = halfHeight * aspect;
        camera.setFrustum(static_cast<float>(-halfWidth), static_cast<float>(halfWidth),
                          static_cast<float>(-halfHeight), static_cast<float>(halfHeight),
                          static_cast<float>(nearDistance), static_cast<float>(farDistance));
    }
}

} // namespace viewer
