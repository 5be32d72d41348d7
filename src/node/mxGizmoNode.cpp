#include "mxGizmoNode.h"

#include "mxGizmoNodeRotate.h"
#include "mxGizmoNodeScale.h"
#include "mxGizmoNodeTranslate.h"

#include "scenegraph/mxCamera.h"
#include "scenegraph/mxLine.h"
#include "system/mxLog.h"
#include "system/mxLogObject.h"
#include "wm4/Wm4IntrLine3Plane3.h"
#include "wm4/Wm4Line3.h"
#include "wm4/Wm4Plane3.h"

#include <algorithm>
#include <cmath>
#include <cstring>

// Contents:
//   construction, modes and axis masks
//   reference objects and centre
//   highlighting and active state
//   screen-constant sizing and camera facing
//   transform arithmetic (static)
//   placement and drags
//   sub-gizmo access

namespace mx {

// TYPE and the colour tables are defined with the library's other load-time objects
// (frame/mxLibraryStatics.cpp).

// The three sub-gizmos, allocated together.
struct mxGizmoNode::SubGizmos {
    mxGizmoNodeTranslate translate;
    mxGizmoNodeRotate rotate;
    mxGizmoNodeScale scale;
};

namespace {

// Bit 13 of the dirty words, set when a node is marked together with its ancestors.
constexpr unsigned int csDirtyWithAncestors = 0x2000;

// Used by every "equal within" comparison of the transform arithmetic.
constexpr double csEqualityTolerance = 1e-6;
// The parallel-column and fallback-axis tolerance of ExtractRotation.
constexpr double csParallelTolerance = 0.001;
constexpr float csFallbackTolerance = 0.001f;
// How close to the axis the line of sight may come before an arrowhead turns to the next
// choice of view vector.
constexpr float csFacingLimit = 0.99f;

// v / length, multiplying by the reciprocal length, for the length of v. A zero vector gives
// (0, 0, 0); any other vector, however short, is normalised. The reciprocal is always finite:
// the shortest length of a vector that is not zero is the square root of the smallest
// denormal, about 3.7e-23, and Length() never answers NaN: Wild Magic's square root gives 0
// for anything that is not a number at least 0.
Wm4::Vector3<float> normalised(const Wm4::Vector3<float>& v, float length) {
    if (length == 0.0f) {
        return Wm4::Vector3<float>(0.0f, 0.0f, 0.0f);
    }
    const float reciprocal = 1.0f / length;
    return Wm4::Vector3<float>(v.X() * reciprocal, v.Y() * reciprocal, v.Z() * reciprocal);
}

// v / |v| by the rule above.
Wm4::Vector3<float> normalised(const Wm4::Vector3<float>& v) {
    return normalised(v, v.Length());
}

// Whether some entry of m differs from the identity matrix's by csEqualityTolerance or more.
bool differsFromIdentity(const Wm4::Matrix3<float>& m) {
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            const double identity = row == col ? 1.0 : 0.0;
            if (!(std::fabs(static_cast<double>(m(row, col)) - identity) < csEqualityTolerance)) {
                return true;
            }
        }
    }
    return false;
}

// Whether a translation is long enough to be kept: its squared length is compared, so
// translations shorter than 0.001 are dropped.
bool isSignificantTranslation(const Wm4::Vector3<float>& t) {
    return !(static_cast<double>(t.SquaredLength()) < csEqualityTolerance);
}

// The axis to build a frame around when a column is missing or parallel to another: X, or Y
// when the column itself runs along X (or -X).
Wm4::Vector3<float> fallbackAxis(const Wm4::Vector3<float>& column) {
    if (std::fabs(std::fabs(column.X()) - 1.0f) <= csFallbackTolerance) {
        return Wm4::Vector3<float>::UNIT_Y;
    }
    return Wm4::Vector3<float>::UNIT_X;
}

// Two unit columns point the same way. Opposite directions do not count, on purpose.
bool areParallel(const Wm4::Vector3<float>& a, const Wm4::Vector3<float>& b) {
    const double dot = static_cast<double>(a.X()) * b.X() + static_cast<double>(a.Y()) * b.Y() +
                       static_cast<double>(a.Z()) * b.Z();
    return std::fabs(dot - 1.0) < csParallelTolerance;
}

// The rows of m, each divided by its own length (by the normalised rule above).
Wm4::Matrix3<float> withUnitRows(const Wm4::Matrix3<float>& m) {
    Wm4::Matrix3<float> result;
    for (int row = 0; row < 3; ++row) {
        const Wm4::Vector3<float> unit =
            normalised(Wm4::Vector3<float>(m(row, 0), m(row, 1), m(row, 2)));
        for (int col = 0; col < 3; ++col) {
            result(row, col) = unit[col];
        }
    }
    return result;
}

// Column j of m divided by its length. A zero column is missing: present becomes false and
// the column is returned as it is.
Wm4::Vector3<float> unitColumn(const Wm4::Matrix3<float>& m, int j, bool& present) {
    const Wm4::Vector3<float> c(m(0, j), m(1, j), m(2, j));
    const float length = c.Length();
    present = length != 0.0f;
    if (!present) {
        return c;
    }
    return Wm4::Vector3<float>(c.X() / length, c.Y() / length, c.Z() / length);
}

// Whether two matrices hold the same bits in every entry.
bool sameBits(const Wm4::Matrix3<float>& a, const Wm4::Matrix3<float>& b) {
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            const float x = a(row, col);
            const float y = b(row, col);
            if (std::memcmp(&x, &y, sizeof x) != 0) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

mxGizmoNode::mxGizmoNode()
    : subGizmos(new SubGizmos), facing(), facingKnown(false),
      centerOffset(Wm4::Vector3<float>::ZERO), scaleReference(1.0f, 1.0f, 1.0f),
      expectedPixelSize(60.0f), mode(GIZMO_UNSET), options() {
    // If a line cannot be allocated, the lists and the children built so far are released
    // as the exception leaves the constructor.
    subGizmos->translate.build(this);
    subGizmos->rotate.build(this);
    subGizmos->scale.build(this);
    setMode(GIZMO_NONE);
    // The node stays hidden until the application shows it.
    setCullingMode(CULL_ALWAYS);
}

mxGizmoNode::~mxGizmoNode() {
    // The sub-gizmos go first (scale, rotate, translate, each its lists in reverse); the
    // lines themselves live on as children until the host node releases them.
    subGizmos.reset();
}

const mxRtti& mxGizmoNode::GetType() const {
    return TYPE;
}

unsigned int mxGizmoNode::setDirtyDown(bool markAncestors) {
    const unsigned int marked = mxNode::setDirtyDown(markAncestors);
    const unsigned int flags = marked | DIRTY_WORLD | (markAncestors ? csDirtyWithAncestors : 0u);
    orDirtyFlags(flags, flags);
    return getDirtyFlags();
}

void mxGizmoNode::UpdateWorldData() {
    mxNode::UpdateWorldData();
}

void mxGizmoNode::UpdateWorldData_Flags() {
    mxNode::UpdateWorldData_Flags();
}

void mxGizmoNode::setMode(GizmoMode newMode) {
    subGizmos->translate.applyEnabledAxis(false);
    subGizmos->rotate.applyEnabledAxis(false);
    subGizmos->scale.applyEnabledAxis(false);
    switch (newMode) {
    case GIZMO_TRANSLATE:
        subGizmos->translate.applyEnabledAxis(true);
        break;
    case GIZMO_ROTATE:
        subGizmos->rotate.applyEnabledAxis(true);
        break;
    case GIZMO_SCALE:
        subGizmos->scale.applyEnabledAxis(true);
        break;
    default:
        break;
    }
    mode = newMode;
}

unsigned char mxGizmoNode::getEnabledAxis(GizmoMode forMode) const {
    const mxGizmoNodeBase* subGizmo = subGizmoOf(forMode);
    return subGizmo ? subGizmo->getEnabledAxis() : 0;
}

void mxGizmoNode::setEnabledAxis(GizmoMode forMode, unsigned char mask) {
    if (mxGizmoNodeBase* subGizmo = subGizmoOf(forMode)) {
        subGizmo->setEnabledAxis(mask);
    }
    // The mode field stays as it is: forMode's sub-gizmo is shown even if it is not the
    // current mode's.
    subGizmos->translate.applyEnabledAxis(forMode == GIZMO_TRANSLATE);
    subGizmos->rotate.applyEnabledAxis(forMode == GIZMO_ROTATE);
    subGizmos->scale.applyEnabledAxis(forMode == GIZMO_SCALE);
}

void mxGizmoNode::setReferenceObject(mxSpatial* object) {
    referenceObjects.clear();
    referenceObjects.push_back(object);
    applyDefaultColors();
}

void mxGizmoNode::setReferenceObjects(const std::vector<mxSpatial*>& objects) {
    if (&objects != &referenceObjects) {
        referenceObjects = objects;
    }
    applyDefaultColors();
}

Wm4::Vector3<float> mxGizmoNode::getCenterReferences() const {
    Wm4::Vector3<float> sum = Wm4::Vector3<float>::ZERO;
    for (const mxSpatial* object : referenceObjects) {
        if (!object) {
            continue;
        }
        const mxBoundingVolume& bound = object->getWorldBound();
        sum += bound.getRadius() > 0.0f ? bound.getCenter()
                                        : object->getWorldTransform().GetTranslate();
    }
    // Null entries count in the divisor on purpose: they pull the centre towards the origin.
    if (!referenceObjects.empty()) {
        sum /= static_cast<float>(referenceObjects.size());
    }
    return sum + centerOffset;
}

const Wm4::Vector3<float>& mxGizmoNode::getGizmoPosition() const {
    return getLocalTransform().GetTranslate();
}

bool mxGizmoNode::loadGPUResources() {
    return true;
}

void mxGizmoNode::getChildrenMxGeometries(std::vector<mxPointer<mxGeometry>>&) {}

void mxGizmoNode::highlight(unsigned int axis) {
    switch (mode) {
    case GIZMO_TRANSLATE:
        subGizmos->translate.highlightAxis(axis);
        break;
    case GIZMO_ROTATE:
        subGizmos->rotate.highlightAxis(axis);
        break;
    case GIZMO_SCALE:
        subGizmos->scale.highlightAxis(axis);
        break;
    default:
        break;
    }
}

void mxGizmoNode::applyDefaultColors() {
    switch (mode) {
    case GIZMO_TRANSLATE:
        subGizmos->translate.setDefaultColors(true);
        break;
    case GIZMO_ROTATE:
        subGizmos->rotate.setDefaultColors(true);
        break;
    case GIZMO_SCALE:
        subGizmos->scale.setDefaultColors(true);
        break;
    default:
        break;
    }
}

void mxGizmoNode::setHighlightColor(GizmoMode forMode, const Wm4::ColorRGBA& color) {
    if (mxGizmoNodeBase* subGizmo = subGizmoOf(forMode)) {
        subGizmo->setHighlightColor(color);
    }
}

void mxGizmoNode::setActiveState(unsigned int axis, bool active) {
    if (mode == GIZMO_ROTATE) {
        // The dragged circle is drawn as segments, which shows it dashed.
        const mxGizmoNodeRotate& rotate = subGizmos->rotate;
        mxLine* circle = rotate.getCircle(axis);
        if (circle && (rotate.getEnabledAxis() & (1u << axis)) != 0) {
            circle->setDrawMethod(active ? mxLine::DRAW_SEGMENTS : mxLine::DRAW_POLYLINE);
        }
    } else if (mode == GIZMO_SCALE) {
        subGizmos->scale.setActiveState(axis, active);
    }
}

// Screen-constant sizing and camera facing.

float mxGizmoNode::ComputeGizmoScale(const mxCamera* camera, const Wm4::Vector3<float>& position,
                                     float pixelSize, int viewportHeight) {
    if (!camera) {
        return 1.0f;
    }
    // The world height of one pixel at the near plane, times the wanted number of pixels.
    const float nearSize =
        (camera->getUMax() - camera->getUMin()) / static_cast<float>(viewportHeight) * pixelSize;
    if (!camera->isPerspective()) {
        return nearSize;
    }
    // Scaled by the depth along the view direction, not by the distance from the eye, so that
    // the size stays the same across a plane facing the camera.
    const float depth = (position - camera->getLocation()).Dot(camera->getDVector());
    return depth * nearSize / camera->getDMin();
}

float mxGizmoNode::getBestScale(const mxCamera* camera, float pixelSize, int viewportHeight) const {
    if (!camera) {
        return 1.0f;
    }
    const Wm4::Vector3<float>& eye = camera->getLocation();
    const Wm4::Vector3<float>& direction = camera->getDVector();
    const Wm4::Vector3<float> toCentre = getWorldBound().getCenter() - eye;
    const float distance = toCentre.Length();
    // The ray from the eye through the centre, and the near plane.
    const Wm4::Line3<float> ray(eye, normalised(toCentre));
    const Wm4::Plane3<float> nearPlane(direction,
                                       direction.Dot(eye + camera->getDMin() * direction));
    Wm4::IntrLine3Plane3<float> query(ray, nearPlane);
    // Whether the ray meets the plane is not asked: one that does not gives t = 0.
    query.Find();
    const float nearDistance = query.GetLineT();
    return (camera->getUMax() - camera->getUMin()) / static_cast<float>(viewportHeight) *
           pixelSize * distance / nearDistance;
}

void mxGizmoNode::updateCameraFacing(const mxCamera* camera) {
    const mxGizmoNodeTranslate& translate = subGizmos->translate;
    const mxLine* firstHead = translate.getArrowHead(0);
    const mxNode* frameNode = firstHead ? firstHead->getParent() : nullptr;
    if (!camera || !frameNode) {
        return;
    }
    // Everything the rotations follow from: the frame the arrowheads hang in (this node), the
    // tips and the camera. When it is the same, bit for bit, as last time, so are the
    // rotations, and the arithmetic is skipped: a still camera over a still gizmo costs only
    // the comparisons.
    const mxGenericTransformation<float>& frame = frameNode->getWorldTransform();
    FacingInputs inputs;
    inputs.frame = frame.GetRotate();
    inputs.centre = frame.GetTranslate();
    inputs.eye = camera->getLocation();
    inputs.direction = camera->getDVector();
    inputs.right = camera->getRVector();
    mxLine* heads[3];
    for (unsigned int axis = 0; axis < 3; ++axis) {
        heads[axis] = translate.getArrowHead(axis);
        inputs.tips[axis] = heads[axis] ? heads[axis]->getWorldTransform().GetTranslate()
                                        : Wm4::Vector3<float>::ZERO;
        inputs.hasHead[axis] = heads[axis] ? 1.0f : 0.0f;
    }
    if (!facingKnown || std::memcmp(&inputs, &facing.inputs, sizeof inputs) != 0) {
        facing.inputs = inputs;
        computeFacing(inputs, facing.rotations);
        facingKnown = true;
    }
    for (unsigned int axis = 0; axis < 3; ++axis) {
        mxLine* head = heads[axis];
        // Only a change is written, so a still camera marks nothing dirty.
        if (head && !sameBits(facing.rotations[axis], head->getLocalTransform().GetRotate())) {
            head->editLocalTransform(true).SetRotate(facing.rotations[axis]);
        }
    }
}

void mxGizmoNode::computeFacing(const FacingInputs& inputs, Wm4::Matrix3<float> rotations[3]) {
    // The frame with any scale taken out of its rows.
    const Wm4::Matrix3<float> frameRotation = withUnitRows(inputs.frame);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        if (inputs.hasHead[axis] == 0.0f) {
            continue;
        }
        const Wm4::Vector3<float>& tip = inputs.tips[axis];
        const Wm4::Vector3<float> along = normalised(tip - inputs.centre);
        // The view vectors to try in turn: the line of sight to the tip (unless the eye sits
        // on the tip), the camera's direction, then its right vector. One that runs along the
        // axis cannot say which way the head's wings should spread.
        const Wm4::Vector3<float>* views[3];
        int count = 0;
        const Wm4::Vector3<float> sight = tip - inputs.eye;
        const float sightLength = sight.Length();
        const Wm4::Vector3<float> sightDirection = normalised(sight, sightLength);
        if (!(sightLength < 1e-6f)) {
            views[count++] = &sightDirection;
        }
        views[count++] = &inputs.direction;
        views[count++] = &inputs.right;
        int chosen = 0;
        while (chosen + 1 < count && std::fabs(views[chosen]->Dot(along)) >= csFacingLimit) {
            ++chosen;
        }
        // x along the axis, wings (y) across the line of sight, normal (z) back to the eye.
        const Wm4::Vector3<float> across = normalised(along.Cross(*views[chosen]));
        const Wm4::Vector3<float> normal = along.Cross(across);
        const Wm4::Matrix3<float> facingFrame(along, across, normal, true);
        // The same frame expressed in the node's: the transposed frame times it.
        rotations[axis] = frameRotation.TransposeTimes(facingFrame);
    }
}

// Transform arithmetic. The arguments are copied first: out may be one of them.

void mxGizmoNode::ComputeRotation(const Wm4::Matrix3<float>& rotation,
                                  const Wm4::Vector3<float>& centre,
                                  mxGenericTransformation<float>& out) {
    const Wm4::Matrix3<float> r = rotation;
    const Wm4::Vector3<float> c = centre;
    out.MakeIdentity();
    if (differsFromIdentity(r)) {
        out.SetRotate(r);
    }
    // The translation that keeps the centre in place.
    const Wm4::Vector3<float> t = c - r * c;
    if (isSignificantTranslation(t)) {
        out.SetTranslate(t);
    }
}

void mxGizmoNode::ComputeRotation(const Wm4::Vector3<float>& axis, float angle,
                                  const Wm4::Vector3<float>& centre,
                                  mxGenericTransformation<float>& out) {
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    const float k = 1.0f - c;
    const float x = axis.X();
    const float y = axis.Y();
    const float z = axis.Z();
    // The right-handed rotation about the axis, taken as given (a unit axis is expected).
    const Wm4::Matrix3<float> rotation(x * x * k + c, x * y * k - z * s, x * z * k + y * s,
                                       x * y * k + z * s, y * y * k + c, y * z * k - x * s,
                                       x * z * k - y * s, y * z * k + x * s, z * z * k + c);
    ComputeRotation(rotation, centre, out);
}

void mxGizmoNode::ComputeHomotheticTransform(const Wm4::Vector3<float>& scale,
                                             const Wm4::Matrix3<float>& frame,
                                             const Wm4::Vector3<float>& centre,
                                             mxGenericTransformation<float>& out) {
    const Wm4::Vector3<float> factors = scale;
    const Wm4::Matrix3<float> axes = frame;
    const Wm4::Vector3<float> c = centre;
    const float sx = factors.X();
    const float sy = factors.Y();
    const float sz = factors.Z();
    out.MakeIdentity();
    // The translation that keeps the centre in place under a scaling along the world axes.
    const Wm4::Vector3<float> t(c.X() - c.X() * sx, c.Y() - c.Y() * sy, c.Z() - c.Z() * sz);
    // Equal factors scale the same along any frame.
    if (sx == sy && sy == sz) {
        if (sx == 1.0f) {
            return;
        }
        out.SetUniformScale(sx);
        out.SetTranslate(t);
        return;
    }
    if (!differsFromIdentity(axes)) {
        out.SetScale(factors);
        out.SetTranslate(t);
        return;
    }
    // Scaling along the frame's columns: into the frame, scale, back out.
    const Wm4::Matrix3<float> m = axes * Wm4::Matrix3<float>(sx, sy, sz) * axes.Transpose();
    const Wm4::Vector3<float> shift = c - m * c;
    if (isSignificantTranslation(shift)) {
        out.SetTranslate(shift);
    }
    if (differsFromIdentity(m)) {
        out.SetMatrix(m);
    }
}

void mxGizmoNode::ExtractRotation(const mxGenericTransformation<float>& transformation,
                                  Wm4::Matrix3<float>& rotation) {
    if (transformation.IsIdentity()) {
        rotation = Wm4::Matrix3<float>::IDENTITY;
        return;
    }
    if (transformation.IsRSMatrix()) {
        rotation = transformation.GetRotate();
        return;
    }
    const Wm4::Matrix3<float>& m = transformation.GetMatrix();
    bool has0 = false;
    bool has1 = false;
    bool has2 = false;
    Wm4::Vector3<float> c0 = unitColumn(m, 0, has0);
    Wm4::Vector3<float> c1 = unitColumn(m, 1, has1);
    Wm4::Vector3<float> c2 = unitColumn(m, 2, has2);
    // Rebuild the missing or parallel columns by cross products, keeping c0's direction
    // whenever it is there.
    if (!has0 && !has1 && !has2) {
        rotation = Wm4::Matrix3<float>::IDENTITY;
        return;
    }
    if (!has0 && !has1) {
        c0 = fallbackAxis(c2);
        c1 = normalised(c2.Cross(c0));
        c0 = normalised(c1.Cross(c2));
    } else if (!has0 && !has2) {
        c0 = fallbackAxis(c1);
        c2 = normalised(c0.Cross(c1));
        c0 = normalised(c1.Cross(c2));
    } else if (!has1 && !has2) {
        c1 = fallbackAxis(c0);
        c2 = normalised(c0.Cross(c1));
        c1 = normalised(c2.Cross(c0));
    } else if (!has0) {
        if (areParallel(c1, c2)) {
            c2 = fallbackAxis(c1);
        }
        c0 = normalised(c1.Cross(c2));
        c2 = normalised(c0.Cross(c1));
    } else if (!has1) {
        if (areParallel(c0, c2)) {
            c2 = fallbackAxis(c0);
        }
        c1 = normalised(c2.Cross(c0));
        c2 = normalised(c0.Cross(c1));
    } else if (!has2) {
        if (areParallel(c0, c1)) {
            c1 = fallbackAxis(c0);
        }
        c2 = normalised(c0.Cross(c1));
        c1 = normalised(c2.Cross(c0));
    } else if (!areParallel(c0, c1)) {
        // All three: the given c2 is not needed.
        c2 = normalised(c0.Cross(c1));
        c1 = normalised(c2.Cross(c0));
    } else if (!areParallel(c0, c2)) {
        c1 = normalised(c2.Cross(c0));
        c2 = normalised(c0.Cross(c1));
    } else {
        c1 = fallbackAxis(c0);
        c2 = normalised(c0.Cross(c1));
        c1 = normalised(c2.Cross(c0));
    }
    rotation = Wm4::Matrix3<float>(c0, c1, c2, true);
}

// Placement and drags.

bool mxGizmoNode::calculateFrameFromObjectWorldTranform(const mxGenericTransformation<float>& frame,
                                                        const mxCamera* camera, float pixelSize,
                                                        int viewportHeight) {
    if (!frame.IsRSMatrix()) {
        mxLogObject(MX_LOG_WARNING, nullptr, mxLog::msInstance, nullptr, true)
            << "The gizmo must have an RS matrix "
               "(xGizmoNode::calculateFrameFromObjectWorldTranform)";
        return false;
    }
    if (!camera) {
        return false;
    }
    const float scale = ComputeGizmoScale(camera, frame.GetTranslate(), pixelSize, viewportHeight);
    // The frame's position and rotation; its own scale is replaced by the screen-constant one.
    mxGenericTransformation<float> placement;
    if (!frame.IsIdentity()) {
        const Wm4::Vector3<float>& position = frame.GetTranslate();
        if (position.X() != 0.0f || position.Y() != 0.0f || position.Z() != 0.0f) {
            placement.SetTranslate(position);
        }
        placement.SetRotate(frame.GetRotate());
    }
    if (scale != 1.0f) {
        placement.SetUniformScale(scale);
    }
    return applyWorldTransformation(placement);
}

bool mxGizmoNode::applyWorldTransformation(const mxGenericTransformation<float>& world) {
    mxGenericTransformation<float> local = world;
    if (const mxNode* parent = getParent()) {
        mxGenericTransformation<float> inverseParent;
        parent->getWorldTransform().Inverse(inverseParent);
        local.Product(inverseParent, world);
    }
    if (getLocalTransform() == local) {
        return false;
    }
    editLocalTransform(true) = local;
    return true;
}

void mxGizmoNode::storeOriginalTransform() {
    const std::size_t count = referenceObjects.size();
    startWorldTransforms.assign(count, mxGenericTransformation<float>());
    startInverseParentTransforms.assign(count, mxGenericTransformation<float>());
    for (std::size_t i = 0; i < count; ++i) {
        const mxSpatial* object = referenceObjects[i];
        if (!object) {
            continue;
        }
        startWorldTransforms[i] = object->getWorldTransform();
        if (const mxNode* parent = object->getParent()) {
            parent->getWorldTransform().Inverse(startInverseParentTransforms[i]);
        }
    }
}

void mxGizmoNode::applyWorldTransformForReferencedObjects(
    const mxGenericTransformation<float>& delta) {
    // Objects added since the drag started have no start to apply the delta to.
    const std::size_t count = std::min(referenceObjects.size(), startWorldTransforms.size());
    for (std::size_t i = 0; i < count; ++i) {
        mxSpatial* object = referenceObjects[i];
        if (!object || (object->getStateFlags() & STATE_EXCLUDED) != 0) {
            continue;
        }
        // Always from the start of the drag, so moves never accumulate rounding.
        mxGenericTransformation<float>& world = object->editWorldTransform(false);
        world.Product(delta, startWorldTransforms[i]);
        mxGenericTransformation<float>& local = object->editLocalTransform(false);
        local.Product(startInverseParentTransforms[i], world);
        // Update the subtree below while the world transformation stays as written.
        object->setDirty(DIRTY_WORLD, true, false);
        object->forceIgnore(true, false, false);
        object->UpdateGS_Flags();
        object->forceIgnore(false, false, false);
    }
}

const mxGizmoNodeBase* mxGizmoNode::subGizmoOf(GizmoMode forMode) const {
    switch (forMode) {
    case GIZMO_TRANSLATE:
        return &subGizmos->translate;
    case GIZMO_ROTATE:
        return &subGizmos->rotate;
    case GIZMO_SCALE:
        return &subGizmos->scale;
    default:
        return nullptr;
    }
}

mxGizmoNodeBase* mxGizmoNode::subGizmoOf(GizmoMode forMode) {
    return const_cast<mxGizmoNodeBase*>(static_cast<const mxGizmoNode*>(this)->subGizmoOf(forMode));
}

const mxGizmoNodeTranslate& mxGizmoNode::getTranslateGizmo() const {
    return subGizmos->translate;
}

mxGizmoNodeTranslate& mxGizmoNode::editTranslateGizmo() {
    return subGizmos->translate;
}

const mxGizmoNodeRotate& mxGizmoNode::getRotateGizmo() const {
    return subGizmos->rotate;
}

mxGizmoNodeRotate& mxGizmoNode::editRotateGizmo() {
    return subGizmos->rotate;
}

const mxGizmoNodeScale& mxGizmoNode::getScaleGizmo() const {
    return subGizmos->scale;
}

mxGizmoNodeScale& mxGizmoNode::editScaleGizmo() {
    return subGizmos->scale;
}

} // namespace mx
