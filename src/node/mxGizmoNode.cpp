#include "mxGizmoNode.h"

#include "mxGizmoNodeRotate.h"
#include "mxGizmoNodeScale.h"
#include "mxGizmoNodeTranslate.h"

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
} // namespace

mxGizmoNode::mxGizmoNode()
    : subGizmos(new SubGizmos), centerOffset(Wm4::Vector3<float>::ZERO),
      scaleReference(1.0f, 1.0f, 1.0f), expectedPixelSize(60.0f), mode(GIZMO_UNSET), options() {
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
