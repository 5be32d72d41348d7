#include "controller/mxGizmoControllerScale.h"

#include "controller/mx3DManipulatorMotionListener.h"
#include "controller/mxListenerNotification.h"
#include "controller/mxPickingHelpers.h"
#include "node/mxGizmoNode.h"
#include "system/mxLog.h"
#include "system/mxLogObject.h"

namespace mx {

mxGizmoControllerScale::mxGizmoControllerScale(
    std::vector<mx3DManipulatorMotionListener*>& listeners)
    : mxGizmoControllerTranslate(listeners) {}

mxGizmoControllerScale::mxGizmoControllerScale(const mxGizmoControllerScale& other)
    : mxGizmoControllerTranslate(other), axisTipAtPress(other.axisTipAtPress) {}

mxGizmoControllerScale::~mxGizmoControllerScale() = default;

bool mxGizmoControllerScale::updateScaleHover(mxGizmoNode* node, const mxCamera* camera,
                                              const Wm4::Vector2<float>& mouse, float maxDistance,
                                              int width, int height) {
    return updateTranslateHover(node, camera, mouse, maxDistance, width, height);
}

void mxGizmoControllerScale::setMouseScalePressed(mxGizmoNode* node, const mxCamera* camera,
                                                  const Wm4::Vector2<float>& mouse) {
    if (!node || !camera) {
        return;
    }
    // The translate press announces a translate start whenever an axis is picked; the scale
    // start follows. Both are kept on purpose.
    setMousePressed(node, camera, mouse);
    if (hasPickedAxis()) {
        node->setActiveState(static_cast<unsigned int>(pickedAxe), true);
    }
    node->setScaleReference(Wm4::Vector3<float>(1.0f, 1.0f, 1.0f));
    axisTipAtPress = getCurrentWorldPointPosition(node);
    resultTransformation.MakeIdentity();
    node->setScaleReference(resultTransformation.GetScale());
    impl::notifyListeners(listeners, &mx3DManipulatorMotionListener::onScaleManipulatorStart);
}

bool mxGizmoControllerScale::setMouseScalePos(mxGizmoNode* node, const mxCamera* camera,
                                              const Wm4::Vector2<float>& mouse) {
    if (!hasPickedAxis() || !node || !camera || !impl::isInsideView(mouse)) {
        return false;
    }
    const bool uniform = node->shouldUseUniformScale();
    Wm4::Vector3<float> point;
    float t = 0.0f;
    if (!getProjectedPoint(camera, mouse, node->shouldRestrictPositionBetweenNearFar(), point, t)) {
        return false;
    }

    // The distance dragged along the axis, in lengths of the axis as it stood at the press.
    // An axis of length 0 divides by zero: not guarded.
    const Wm4::Vector3<float>& centre = startTransformation.GetTranslate();
    const Wm4::Vector3<float> axis = axisTipAtPress - centre;
    const float s = (point - pressPoint).Dot(axis) / axis.Dot(axis);
    // Outwards the objects grow linearly; inwards they shrink towards, never to, zero.
    const float factor = s >= 0.0f ? 1.0f + s : 1.0f / (1.0f - s);

    if (!startTransformation.IsRSMatrix()) {
        mxLogObject(MX_LOG_WARNING, nullptr, mxLog::msInstance, nullptr, true)
            << "The gizmo must have an RS matrix (mxGizmoControllerScale::setMouseScalePos)";
        return false;
    }
    const Wm4::Vector3<float> scale =
        uniform ? Wm4::Vector3<float>(factor, factor, factor) : getResultingScale(factor);
    mxGizmoNode::ComputeHomotheticTransform(scale, startTransformation.GetRotate(), centre,
                                            resultTransformation);
    node->applyWorldTransformForReferencedObjects(resultTransformation);
    node->setScaleReference(scale);
    return true;
}

void mxGizmoControllerScale::setMouseScaleReleased(mxGizmoNode* node, const mxCamera* camera,
                                                   const Wm4::Vector2<float>& mouse) {
    if (hasPickedAxis() && node) {
        node->setActiveState(static_cast<unsigned int>(pickedAxe), false);
    }
    setMouseScalePos(node, camera, mouse);
    pickedAxe = -1;
    impl::notifyListeners(listeners, &mx3DManipulatorMotionListener::onScaleManipulatorEnd,
                          resultTransformation);
}

} // namespace mx
