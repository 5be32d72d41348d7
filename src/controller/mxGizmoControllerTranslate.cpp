#include "controller/mxGizmoControllerTranslate.h"

#include "controller/mx3DManipulatorMotionListener.h"
#include "controller/mxListenerNotification.h"
#include "controller/mxPickingHelpers.h"
#include "frame/mxLibraryStatics.h"
#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"

#include <algorithm>
#include <cmath>

namespace mx {

namespace {

// The unit vector of axis 0, 1 or 2 (X, Y, Z) from the library's table.
const Wm4::Vector3<float>& unitAxis(int axis) {
    return impl::csUnitAxes[axis];
}

// The distances in pixels from the mouse to the screen segments of a gizmo's axes: each from
// the gizmo's centre to the tip of the unit axis, which the world transformation's
// screen-constant scale makes the drawn arrow.
class AxisSegments {
public:
    AxisSegments(const mxGizmoNode& node, const mxCamera& camera, const Wm4::Vector2<float>& mouse,
                 int width, int height)
        : world(node.getWorldTransform()), viewProjection(camera.getViewProjectionMatrix()),
          mousePixels(static_cast<float>(width) * mouse.X(),
                      static_cast<float>(height) * mouse.Y()),
          width(width), height(height) {
        impl::projectToScreen(viewProjection, world, Wm4::Vector3<float>::ZERO, centre, width,
                              height);
    }

    float distanceToMouse(int axis) const {
        Wm4::Vector2<float> tip;
        impl::projectToScreen(viewProjection, world, unitAxis(axis), tip, width, height);
        return impl::distanceToSegment(centre, tip, mousePixels);
    }

private:
    const mxGenericTransformation<float>& world;
    const float* viewProjection;
    Wm4::Vector2<float> mousePixels;
    int width;
    int height;
    // The gizmo's centre on screen, where every axis's segment starts.
    Wm4::Vector2<float> centre;
};

} // namespace

mxGizmoControllerTranslate::mxGizmoControllerTranslate(
    std::vector<mx3DManipulatorMotionListener*>& listeners)
    : gizmo(nullptr), pressPoint(Wm4::Vector3<float>::ZERO), listeners(listeners), pickedAxe(-1),
      useSecondPlane(0) {}

mxGizmoControllerTranslate::mxGizmoControllerTranslate(const mxGizmoControllerTranslate& other)
    : startTransformation(other.startTransformation),
      resultTransformation(other.resultTransformation), gizmo(other.gizmo),
      pressPoint(other.pressPoint), listeners(other.listeners), pickedAxe(other.pickedAxe),
      useSecondPlane(other.useSecondPlane) {}

mxGizmoControllerTranslate::~mxGizmoControllerTranslate() = default;

Wm4::Vector3<float> mxGizmoControllerTranslate::getPickedWorldAxe() const {
    if (!hasPickedAxis()) {
        return Wm4::Vector3<float>::ZERO;
    }
    return getWorldOrientation(unitAxis(pickedAxe));
}

int mxGizmoControllerTranslate::getPickedAxe() const {
    return pickedAxe;
}

bool mxGizmoControllerTranslate::updateTranslateHover(mxGizmoNode* node, const mxCamera* camera,
                                                      const Wm4::Vector2<float>& mouse,
                                                      float maxDistance, int width, int height) {
    if (!node) {
        return false;
    }
    return updateTranslateHover(node, camera, mouse, node->getEnabledAxis(node->getMode()),
                                maxDistance, width, height);
}

bool mxGizmoControllerTranslate::updateTranslateHover(mxGizmoNode* node, const mxCamera* camera,
                                                      const Wm4::Vector2<float>& mouse,
                                                      unsigned char axisMask, float maxDistance,
                                                      int width, int height) {
    if (!node || !camera) {
        return false;
    }
    AxisSegments segments(*node, *camera, mouse, width, height);
    int best = -1;
    float bestDistance = maxDistance;
    for (int axis = 0; axis < 3; ++axis) {
        if (!(axisMask & (1u << axis))) {
            continue;
        }
        const float distance = segments.distanceToMouse(axis);
        // Greater or equal: the exact tolerance is accepted, and a tie goes to the later axis.
        if (bestDistance >= distance) {
            bestDistance = distance;
            best = axis;
        }
    }

    if (best == -1) {
        node->applyDefaultColors();
    } else {
        node->highlight(static_cast<unsigned int>(best));
    }
    pickedAxe = best;
    return best != -1;
}

bool mxGizmoControllerTranslate::isOver(const mxGizmoNode* node, const mxCamera* camera,
                                        const Wm4::Vector2<float>& mouse, float maxDistance,
                                        int width, int height) const {
    if (!node || !camera) {
        return false;
    }
    const unsigned char axisMask = node->getEnabledAxis(node->getMode());
    AxisSegments segments(*node, *camera, mouse, width, height);
    for (int axis = 0; axis < 3; ++axis) {
        if ((axisMask & (1u << axis)) && maxDistance >= segments.distanceToMouse(axis)) {
            return true;
        }
    }
    return false;
}

void mxGizmoControllerTranslate::setMousePressed(mxGizmoNode* node, const mxCamera* camera,
                                                 const Wm4::Vector2<float>& mouse) {
    if (!node || !camera) {
        return;
    }
    gizmo = node;
    if (!hasPickedAxis()) {
        return;
    }

    // A mouse outside the view, or a degenerate camera, gives no ray, and then no plane is hit.
    Wm4::Vector3<float> origin = Wm4::Vector3<float>::ZERO;
    Wm4::Vector3<float> direction = Wm4::Vector3<float>::ZERO;
    const bool hasRay = camera->getPickRay(mouse.X(), mouse.Y(), origin, direction);

    node->storeOriginalTransform();
    startTransformation.SetRotate(node->getWorldTransform().GetRotate());
    startTransformation.SetTranslate(node->getCenterReferences());
    const Wm4::Vector3<float> centre = startTransformation.GetTranslate();
    const Wm4::Vector3<float> axis = getWorldOrientation(unitAxis(pickedAxe));

    // Of the two planes through the axis, drag in the one seen most face-on: the one whose
    // normal is more nearly parallel to the ray. A hit behind the eye does not count, and on
    // a tie the first plane is kept.
    float bestCos = -1.0f;
    bool found = false;
    float lineT = 0.0f;

    const Wm4::Vector3<float> firstNormal = getWorldOrientation(unitAxis((pickedAxe + 1) % 3));
    if (hasRay && impl::intersectLineAndPlane(origin, direction, firstNormal, centre, lineT) &&
        lineT >= 0.0f) {
        useSecondPlane = 0;
        found = true;
        const Wm4::Vector3<float> hit = origin + lineT * direction;
        pressPoint = centre + (hit - centre).Dot(axis) * axis;
        bestCos = std::fabs(firstNormal.Dot(direction));
    }

    const Wm4::Vector3<float> secondNormal = getWorldOrientation(unitAxis((pickedAxe + 2) % 3));
    if (hasRay && impl::intersectLineAndPlane(origin, direction, secondNormal, centre, lineT) &&
        lineT >= 0.0f) {
        found = true;
        if (std::fabs(secondNormal.Dot(direction)) > bestCos) {
            useSecondPlane = 1;
            const Wm4::Vector3<float> hit = origin + lineT * direction;
            pressPoint = centre + (hit - centre).Dot(axis) * axis;
        }
    }

    if (!found) {
        pickedAxe = -1;
    }
    resultTransformation.MakeIdentity();
    // Announced whenever an axis was picked at the press, even when no plane was hit and the
    // pick has just been dropped: on purpose.
    impl::notifyListeners(listeners, &mx3DManipulatorMotionListener::onTranslateManipulatorStart);
}

bool mxGizmoControllerTranslate::getProjectedPoint(const mxCamera* camera,
                                                   const Wm4::Vector2<float>& mouse,
                                                   bool restrictNearFar, Wm4::Vector3<float>& point,
                                                   float& t) const {
    if (!camera || !hasPickedAxis()) {
        return false;
    }
    Wm4::Vector3<float> origin;
    Wm4::Vector3<float> direction;
    if (!camera->getPickRay(mouse.X(), mouse.Y(), origin, direction)) {
        return false;
    }

    // The drag axis: the gizmo's world rotation, without its scale, applied to the unit axis.
    Wm4::Vector3<float> axis = Wm4::Vector3<float>::UNIT_X;
    const Wm4::Vector3<float>& centre = startTransformation.GetTranslate();
    if (gizmo) {
        axis = gizmo->getWorldTransform().GetRotate() * unitAxis(pickedAxe);
    }
    impl::normalizeVector(axis);

    const int normalAxis = (pickedAxe + (useSecondPlane ? 2 : 1)) % 3;
    const Wm4::Vector3<float> normal = getWorldOrientation(unitAxis(normalAxis));
    float lineT = 0.0f;
    // Unlike the press, a hit behind the eye is accepted here.
    if (!impl::intersectLineAndPlane(origin, direction, normal, centre, lineT)) {
        return false;
    }
    const Wm4::Vector3<float> onPlane = origin + lineT * direction;
    point = centre + (onPlane - centre).Dot(axis) * axis;
    t = (point - pressPoint).Dot(axis);
    if (!restrictNearFar) {
        return true;
    }

    // Keep the point between the near and far planes: clamp its distance along the axis line
    // from the press point to where that line crosses them.
    const Wm4::Vector3<float>& eye = camera->getLocation();
    const Wm4::Vector3<float>& view = camera->getDVector();
    float farT = 0.0f;
    float nearT = 0.0f;
    if (impl::intersectLineAndPlane(pressPoint, axis, view, eye + camera->getDMax() * view, farT) &&
        impl::intersectLineAndPlane(pressPoint, axis, view, eye + camera->getDMin() * view,
                                    nearT)) {
        const float low = std::min(farT, nearT);
        const float high = std::max(farT, nearT);
        if (low > t) {
            t = low;
            point = pressPoint + low * axis;
        }
        if (t > high) {
            t = high;
            point = pressPoint + high * axis;
        }
    }
    return true;
}

bool mxGizmoControllerTranslate::setMousePos(mxGizmoNode* node, const mxCamera* camera,
                                             const Wm4::Vector2<float>& mouse) {
    if (!hasPickedAxis() || !node || !camera || !impl::isInsideView(mouse)) {
        return false;
    }
    Wm4::Vector3<float> point;
    float t = 0.0f;
    if (!getProjectedPoint(camera, mouse, node->shouldRestrictPositionBetweenNearFar(), point, t)) {
        return false;
    }
    // A drag that is back exactly at its start does not re-apply.
    if (t == 0.0f) {
        return false;
    }
    mxGenericTransformation<float> translation;
    translation.SetTranslate(point - pressPoint);
    resultTransformation = translation;
    node->applyWorldTransformForReferencedObjects(resultTransformation);
    return true;
}

void mxGizmoControllerTranslate::setMouseReleased(mxGizmoNode* node, const mxCamera* camera,
                                                  const Wm4::Vector2<float>& mouse) {
    setMousePos(node, camera, mouse);
    pickedAxe = -1;
    impl::notifyListeners(listeners, &mx3DManipulatorMotionListener::onTranslateManipulatorEnd,
                          resultTransformation);
}

Wm4::Vector3<float>
mxGizmoControllerTranslate::getWorldOrientation(const Wm4::Vector3<float>& axis) const {
    if (!gizmo) {
        return Wm4::Vector3<float>::ZERO;
    }
    // The stored matrix: the rotation of a rotation-and-scale transformation, the whole matrix
    // of a general one, whose scale the normalisation takes out.
    Wm4::Vector3<float> direction = gizmo->getWorldTransform().GetMatrix() * axis;
    impl::normalizeVector(direction);
    return direction;
}

Wm4::Vector3<float> mxGizmoControllerTranslate::getResultingScale(float factor) const {
    if (!hasPickedAxis()) {
        return Wm4::Vector3<float>::ZERO;
    }
    Wm4::Vector3<float> scale(1.0f, 1.0f, 1.0f);
    scale[pickedAxe] = factor;
    return scale;
}

Wm4::Vector3<float>
mxGizmoControllerTranslate::getCurrentWorldPointPosition(const mxGizmoNode* node) const {
    if (!hasPickedAxis() || !node) {
        return Wm4::Vector3<float>::ZERO;
    }
    return node->getWorldTransform().ApplyForward(unitAxis(pickedAxe), true);
}

} // namespace mx
