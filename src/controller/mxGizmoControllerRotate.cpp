#include "controller/mxGizmoControllerRotate.h"

#include "controller/mx3DManipulatorMotionListener.h"
#include "controller/mxListenerNotification.h"
#include "controller/mxPickingHelpers.h"
#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"
#include "system/mxLog.h"
#include "system/mxLogObject.h"
#include "wm4/Wm4Math.h"
#include "wm4/Wm4Matrix3.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace mx {

namespace {

constexpr int csSampleCount = 40;
// A press or move this close to the gizmo's centre on both screen axes cannot define an
// angle.
constexpr float csCentrePixels = 1.6f;
// 5 degrees: the step of every drag angle and of the squared orientation.
const float csAngleStep = Wm4::Math<float>::WM4_PI / 36.0f;

// The unit vector of axis, built from its index.
Wm4::Vector3<float> unitAxis(int axis) {
    return Wm4::Vector3<float>(axis == 0 ? 1.0f : 0.0f, axis == 1 ? 1.0f : 0.0f,
                               axis == 2 ? 1.0f : 0.0f);
}

// Whether the mouse lies within csCentrePixels of centre's projection on both screen axes.
bool isOnCentre(const Wm4::Vector3<float>& centre, const mxCamera& camera,
                const Wm4::Vector2<float>& mouse, int width, int height) {
    Wm4::Vector2<float> projected;
    impl::projectToScreen(camera.getViewProjectionMatrix(), mxGenericTransformation<float>(),
                          centre, projected, width, height);
    return std::fabs(projected.X() - static_cast<float>(width) * mouse.X()) < csCentrePixels &&
           std::fabs(projected.Y() - static_cast<float>(height) * mouse.Y()) < csCentrePixels;
}

// Whether the camera's pick ray through mouse meets the plane through centre with the given
// normal, in front of the eye or behind it; hit = the meeting point. A mouse outside the view,
// or a degenerate camera, gives no ray and so no hit.
bool pickRayMeetsPlane(const mxCamera& camera, const Wm4::Vector2<float>& mouse,
                       const Wm4::Vector3<float>& normal, const Wm4::Vector3<float>& centre,
                       Wm4::Vector3<float>& hit) {
    Wm4::Vector3<float> origin;
    Wm4::Vector3<float> direction;
    float lineT = 0.0f;
    if (!camera.getPickRay(mouse.X(), mouse.Y(), origin, direction) ||
        !impl::intersectLineAndPlane(origin, direction, normal, centre, lineT)) {
        return false;
    }
    hit = origin + lineT * direction;
    return true;
}

// x rounded to the nearest multiple of 5 degrees.
float snapToStep(float x) {
    return std::floor(x * 36.0f / Wm4::Math<float>::WM4_PI + 0.5f) * Wm4::Math<float>::WM4_PI /
           36.0f;
}

// The column (a, b, c) turned into elevation and azimuth, each rounded to 5 degrees, and back
// into a unit vector.
Wm4::Vector3<float> squaredColumn(float a, float b, float c) {
    const float h = std::sqrt(a * a + b * b);
    float elevation;
    if (h == 0.0f) {
        elevation = Wm4::Math<float>::WM4_PI * 0.5f;
        if (c < 0.0f) {
            elevation = -elevation;
        }
    } else {
        elevation = std::atan(c / h);
    }
    const float cosElevation = std::cos(elevation);
    float azimuth = 0.0f;
    if (cosElevation != 0.0f) {
        azimuth = std::atan2(b / cosElevation, a / cosElevation);
    }
    const float e = snapToStep(elevation);
    const float z = snapToStep(azimuth);
    return Wm4::Vector3<float>(std::cos(z) * std::cos(e), std::sin(z) * std::cos(e), std::sin(e));
}

} // namespace

// The branches gcc adds to the constructors and to initRotate's new[] only clean up after an
// allocation that throws, which no test makes happen inside them; coverage leaves them out.
mxGizmoControllerRotate::mxGizmoControllerRotate(
    std::vector<mx3DManipulatorMotionListener*>& listeners)
    : circleSamples(nullptr), gizmo(nullptr), pressPoint(Wm4::Vector3<float>::ZERO),
      listeners(listeners), pickedAxe(-1) { // GCOVR_EXCL_BR_LINE
    initRotate();
}

mxGizmoControllerRotate::mxGizmoControllerRotate(const mxGizmoControllerRotate& other)
    : startTransformation(other.startTransformation),
      resultTransformation(other.resultTransformation), circleSamples(nullptr), gizmo(other.gizmo),
      pressPoint(other.pressPoint), listeners(other.listeners),
      pickedAxe(other.pickedAxe) { // GCOVR_EXCL_BR_LINE
    // Each controller frees its table, so the copy gets its own.
    initRotate();
}

mxGizmoControllerRotate::~mxGizmoControllerRotate() {
    delete[] circleSamples;
    circleSamples = nullptr;
}

Wm4::Vector3<float> mxGizmoControllerRotate::getPickedWorldAxe() const {
    if (!hasPickedAxis()) {
        return Wm4::Vector3<float>::ZERO;
    }
    return getWorldNormal(unitAxis(pickedAxe), gizmo);
}

int mxGizmoControllerRotate::getPickedAxe() const {
    return pickedAxe;
}

void mxGizmoControllerRotate::initRotate() {
    circleSamples = new Wm4::Vector2<float>[csSampleCount + 1]; // GCOVR_EXCL_BR_LINE
    for (int k = 0; k < csSampleCount; ++k) {
        const float theta = static_cast<float>(2 * k) * Wm4::Math<float>::WM4_PI /
                            static_cast<float>(csSampleCount);
        circleSamples[k] = Wm4::Vector2<float>(std::cos(theta), std::sin(theta));
    }
    circleSamples[csSampleCount] = circleSamples[0];
    // Each circle's points and centre (the mean of its samples), the same for every node:
    // taken once.
    for (int axis = 0; axis < 3; ++axis) {
        Wm4::Vector3<float> mean = Wm4::Vector3<float>::ZERO;
        for (int k = 0; k < csSampleCount; ++k) {
            const Wm4::Vector3<float> point = circlePoint(axis, k);
            circlePoints[axis].x[k] = point.X();
            circlePoints[axis].y[k] = point.Y();
            circlePoints[axis].z[k] = point.Z();
            mean += point;
        }
        mean *= 0.025f;
        circleCentres[axis] = mean;
    }
}

Wm4::Vector3<float> mxGizmoControllerRotate::circlePoint(int axis, int k) const {
    const float c = circleSamples[k].X();
    const float s = circleSamples[k].Y();
    switch (axis) {
    case 0:
        return Wm4::Vector3<float>(0.0f, c, s);
    case 1:
        return Wm4::Vector3<float>(c, 0.0f, s);
    default:
        return Wm4::Vector3<float>(c, s, 0.0f);
    }
}

float mxGizmoControllerRotate::getNearestDistCirclePoint(const mxGizmoNode* node, int axis,
                                                         const mxCamera* camera,
                                                         const Wm4::Vector2<float>& mousePixels,
                                                         int width, int height) const {
    const mxGenericTransformation<float>& world = node->getWorldTransform();
    const Wm4::Vector3<float> centre = world.ApplyForward(circleCentres[axis], true);
    Wm4::Vector3<float> toCentre = centre - camera->getLocation();
    impl::normalizeVector(toCentre);

    // Every sample in world space, on screen, and whether it faces the viewer: its direction
    // from the centre, normalised, does not point away from the eye (a little slack lets a
    // circle seen edge-on count whole). The samples are worked on side by side, coordinate by
    // coordinate, with the arithmetic of ApplyForward, normalizeVector and projectToScreen
    // written out so that the compiler can do several at once; the results are theirs, bit for
    // bit. Sample 40 is sample 0 again.
    const CirclePoints& local = circlePoints[axis];
    float x[csSampleCount];
    float y[csSampleCount];
    float z[csSampleCount];
    if (world.IsIdentity()) {
        for (int k = 0; k < csSampleCount; ++k) {
            x[k] = local.x[k];
            y[k] = local.y[k];
            z[k] = local.z[k];
        }
    } else {
        const Wm4::Matrix3<float> m = world.GetFullMatrix();
        const Wm4::Vector3<float>& t = world.GetTranslate();
        for (int k = 0; k < csSampleCount; ++k) {
            x[k] = m(0, 0) * local.x[k] + m(0, 1) * local.y[k] + m(0, 2) * local.z[k] + t.X();
            y[k] = m(1, 0) * local.x[k] + m(1, 1) * local.y[k] + m(1, 2) * local.z[k] + t.Y();
            z[k] = m(2, 0) * local.x[k] + m(2, 1) * local.y[k] + m(2, 2) * local.z[k] + t.Z();
        }
    }
    bool faces[csSampleCount];
    for (int k = 0; k < csSampleCount; ++k) {
        const float ox = x[k] - centre.X();
        const float oy = y[k] - centre.Y();
        const float oz = z[k] - centre.Z();
        const float length = std::sqrt(ox * ox + oy * oy + oz * oz);
        const float reciprocal = 1.0f / length;
        const float ux = ox * reciprocal;
        const float uy = oy * reciprocal;
        const float uz = oz * reciprocal;
        // A zero length, or a reciprocal that is not finite, gives the zero vector.
        const bool unit = reciprocal <= std::numeric_limits<float>::max();
        const float nx = unit ? ux : 0.0f;
        const float ny = unit ? uy : 0.0f;
        const float nz = unit ? uz : 0.0f;
        faces[k] = nx * toCentre.X() + ny * toCentre.Y() + nz * toCentre.Z() <= 0.01f;
    }
    const float* m = camera->getViewProjectionMatrix();
    const double widthPixels = static_cast<double>(static_cast<float>(width));
    const double heightPixels = static_cast<double>(static_cast<float>(height));
    float screenX[csSampleCount];
    float screenY[csSampleCount];
    for (int k = 0; k < csSampleCount; ++k) {
        const float cx = m[0] * x[k] + m[4] * y[k] + m[8] * z[k] + m[12];
        const float cy = m[1] * x[k] + m[5] * y[k] + m[9] * z[k] + m[13];
        const float cw = m[3] * x[k] + m[7] * y[k] + m[11] * z[k] + m[15];
        screenX[k] = static_cast<float>((cx / cw + 1.0) * 0.5 * widthPixels);
        screenY[k] = static_cast<float>((cy / cw + 1.0) * 0.5 * heightPixels);
    }
    auto onScreen = [&](int k) { return Wm4::Vector2<float>(screenX[k], screenY[k]); };

    // Start at the first sample that faces the viewer (or at sample 39 whatever it faces).
    int first = 0;
    while (first < csSampleCount - 1 && !faces[first]) {
        ++first;
    }
    const int next = first + 1;
    Wm4::Vector2<float> from;
    Wm4::Vector2<float> to = onScreen(first);
    float best = std::numeric_limits<float>::max();
    // Join each visible sample to the last visible one; hidden samples leave the end alone.
    for (int k = next; k < csSampleCount; ++k) {
        from = to;
        if (faces[k]) {
            to = onScreen(k);
            best = std::min(best, impl::distanceToSegment(from, to, mousePixels));
        }
    }
    // The closing step goes to the sample after the first visible one, not back to the first:
    // on purpose. That is sample 0 again when the first visible one is the last.
    const int closing = next % csSampleCount;
    from = to;
    if (faces[closing]) {
        to = onScreen(closing);
        best = std::min(best, impl::distanceToSegment(from, to, mousePixels));
    }
    return best;
}

bool mxGizmoControllerRotate::pickCircle(const mxGizmoNode* node, const mxCamera* camera,
                                         const Wm4::Vector2<float>& mouse, float maxDistance,
                                         int width, int height) {
    pickedAxe = -1;
    const unsigned char mask = node->getEnabledAxis(mxGizmoNode::GIZMO_ROTATE);
    const Wm4::Vector2<float> mousePixels(static_cast<float>(width) * mouse.X(),
                                          static_cast<float>(height) * mouse.Y());
    float best = maxDistance;
    for (int axis = 0; axis < 3; ++axis) {
        if (!(mask & (1u << axis))) {
            continue;
        }
        const float distance =
            getNearestDistCirclePoint(node, axis, camera, mousePixels, width, height);
        // Greater or equal: the exact tolerance is accepted, and a tie goes to the later
        // circle.
        if (best >= distance) {
            pickedAxe = axis;
            best = distance;
        }
    }
    return pickedAxe != -1;
}

bool mxGizmoControllerRotate::updateRotateHover(mxGizmoNode* node, const mxCamera* camera,
                                                const Wm4::Vector2<float>& mouse, float maxDistance,
                                                int width, int height) {
    if (!node || !camera) {
        return false;
    }
    if (pickCircle(node, camera, mouse, maxDistance, width, height)) {
        node->highlight(static_cast<unsigned int>(pickedAxe));
        return true;
    }
    node->applyDefaultColors();
    return false;
}

bool mxGizmoControllerRotate::isOver(const mxGizmoNode* node, const mxCamera* camera,
                                     const Wm4::Vector2<float>& mouse, float maxDistance, int width,
                                     int height) const {
    if (!node || !camera) {
        return false;
    }
    const unsigned char mask = node->getEnabledAxis(mxGizmoNode::GIZMO_ROTATE);
    const Wm4::Vector2<float> mousePixels(static_cast<float>(width) * mouse.X(),
                                          static_cast<float>(height) * mouse.Y());
    for (int axis = 0; axis < 3; ++axis) {
        if ((mask & (1u << axis)) &&
            maxDistance >=
                getNearestDistCirclePoint(node, axis, camera, mousePixels, width, height)) {
            return true;
        }
    }
    return false;
}

Wm4::Vector3<float> mxGizmoControllerRotate::getWorldNormal(const Wm4::Vector3<float>& axis,
                                                            const mxGizmoNode* node) const {
    Wm4::Vector3<float> normal = Wm4::Vector3<float>::ZERO;
    if (!node) {
        return normal;
    }
    const mxGenericTransformation<float>& world = node->getWorldTransform();
    if (world.IsRSMatrix()) {
        normal = world.GetRotate() * axis;
    } else {
        mxLogObject(MX_LOG_WARNING, nullptr, mxLog::msInstance, nullptr, true)
            << "The gizmo must have an RS matrix (mxGizmoControllerRotate::getWorldNormal)";
    }
    impl::normalizeVector(normal);
    return normal;
}

void mxGizmoControllerRotate::setMousePressed(mxGizmoNode* node, const mxCamera* camera,
                                              const Wm4::Vector2<float>& mouse, int width,
                                              int height) {
    if (!hasPickedAxis() || !node || !camera) {
        return;
    }
    gizmo = node;
    node->storeOriginalTransform();
    startTransformation.SetRotate(node->getWorldTransform().GetRotate());
    startTransformation.SetTranslate(node->getLocalTransform().GetTranslate());
    const Wm4::Vector3<float> centre = startTransformation.GetTranslate();

    if (isOnCentre(centre, *camera, mouse, width, height)) {
        pickedAxe = -1;
        return;
    }

    const Wm4::Vector3<float> normal = getWorldNormal(unitAxis(pickedAxe), node);
    // A hit behind the eye counts.
    if (!pickRayMeetsPlane(*camera, mouse, normal, centre, pressPoint)) {
        pickedAxe = -1;
        return;
    }
    node->setActiveState(static_cast<unsigned int>(pickedAxe), true);
    resultTransformation.MakeIdentity();
    impl::notifyListeners(listeners, &mx3DManipulatorMotionListener::onRotateManipulatorStart);
}

bool mxGizmoControllerRotate::setMousePos(mxGizmoNode* node, const mxCamera* camera,
                                          const Wm4::Vector2<float>& mouse, int width, int height) {
    if (!hasPickedAxis() || !node || !camera || !impl::isInsideView(mouse)) {
        return false;
    }
    gizmo = node;
    const Wm4::Vector3<float> centre = startTransformation.GetTranslate();
    if (isOnCentre(centre, *camera, mouse, width, height)) {
        return false;
    }

    const Wm4::Vector3<float> normal = getWorldNormal(unitAxis(pickedAxe), node);
    Wm4::Vector3<float> hit;
    if (!pickRayMeetsPlane(*camera, mouse, normal, centre, hit)) {
        return false;
    }

    // The signed angle about the normal from the press direction to the current one, always
    // rounded to 5 degrees: the node's snap option only squares the gizmo at the release.
    Wm4::Vector3<float> current = hit - centre;
    impl::normalizeVector(current);
    Wm4::Vector3<float> atPress = pressPoint - centre;
    impl::normalizeVector(atPress);
    float angle = std::atan2(normal.Cross(atPress).Dot(current), atPress.Dot(current));
    angle = std::round(angle / csAngleStep) * csAngleStep;

    mxGizmoNode::ComputeRotation(normal, angle, centre, resultTransformation);
    node->applyWorldTransformForReferencedObjects(resultTransformation);
    return true;
}

void mxGizmoControllerRotate::onEndPos(mxGizmoNode* node) {
    if (pickedAxe == -1 || !node || !node->shouldSnapRotationToAxis()) {
        return;
    }
    mxGenericTransformation<float>& local = node->editLocalTransform(true);
    if (!local.IsRSMatrix()) {
        mxLogObject(MX_LOG_WARNING, nullptr, mxLog::msInstance, nullptr, true)
            << "The gizmo must have an RS matrix (mxGizmoControllerRotate::onEndPos)";
    } else {
        const Wm4::Matrix3<float>& rotation = std::as_const(local).GetRotate();
        const Wm4::Vector3<float> first =
            squaredColumn(rotation(0, 0), rotation(1, 0), rotation(2, 0));
        const Wm4::Vector3<float> second =
            squaredColumn(rotation(0, 1), rotation(1, 1), rotation(2, 1));
        // The third column is the cross product as it comes: the columns are not made
        // orthogonal again, on purpose.
        const Wm4::Vector3<float> third = first.Cross(second);
        local.SetRotate(Wm4::Matrix3<float>(first, second, third, true));
    }
    node->UpdateGS_Flags();
}

void mxGizmoControllerRotate::setMouseReleased(mxGizmoNode* node, const mxCamera* camera,
                                               const Wm4::Vector2<float>& mouse, int width,
                                               int height) {
    if (pickedAxe == -1) {
        gizmo = nullptr;
        return;
    }
    setMousePos(node, camera, mouse, width, height);
    onEndPos(node);
    if (node && hasPickedAxis()) {
        node->setActiveState(static_cast<unsigned int>(pickedAxe), false);
    }
    impl::notifyListeners(listeners, &mx3DManipulatorMotionListener::onRotateManipulatorEnd,
                          resultTransformation);
    pickedAxe = -1;
    gizmo = nullptr;
}

} // namespace mx
