#include "controller/mxGizmoController.h"

#include "controller/mx3DManipulatorMotionListener.h"
#include "controller/mxGizmoControllerRotate.h"
#include "controller/mxGizmoControllerScale.h"
#include "controller/mxGizmoControllerTranslate.h"
#include "controller/mxListenerNotification.h"
#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxEngineInterface.h"
#include "scenegraph/mxGenericRenderingContext.h"
#include "scenegraph/mxNode.h"
#include "wm4/Wm4Matrix3.h"

#include <algorithm>
#include <cstdint>
#include <functional>

namespace mx {

mxGizmoController::mxGizmoController()
    : activeGizmo(nullptr), rotateController(nullptr), translateController(nullptr),
      scaleController(nullptr), orientationReference(Local), rootNode(nullptr),
      pickTolerance(10.0f), customTranslate(false), dragging(false), pressedOnGizmo(false),
      enabled(true) {
    // Built in this order, each sharing the listener list; a failure gives back what was built.
    // Coverage leaves out the branches gcc adds here to free the memory of a constructor that
    // throws.
    try {
        // GCOVR_EXCL_BR_START
        rotateController = new mxGizmoControllerRotate(listeners);
        translateController = new mxGizmoControllerTranslate(listeners);
        scaleController = new mxGizmoControllerScale(listeners);
        // GCOVR_EXCL_BR_STOP
    } catch (...) {
        delete translateController;
        delete rotateController;
        throw;
    }
}

mxGizmoController::~mxGizmoController() {
    delete translateController;
    delete rotateController;
    delete scaleController;
}

bool mxGizmoController::install3DManipulatorMotionListener(
    mx3DManipulatorMotionListener* listener) {
    if (std::find(listeners.begin(), listeners.end(), listener) != listeners.end()) {
        return false;
    }
    listeners.push_back(listener);
    return true;
}

bool mxGizmoController::uninstall3DManipulatorMotionListener(
    mx3DManipulatorMotionListener* listener) {
    const auto found = std::find(listeners.begin(), listeners.end(), listener);
    if (found == listeners.end()) {
        return false;
    }
    listeners.erase(found);
    return true;
}

bool mxGizmoController::setMousePressed(const mxCamera* camera, int x, int y, int width,
                                        int height) {
    pendingEvents.push_back(MouseEvent{x, y, MOUSE_PRESSED});
    // Answered at once, so that the application knows whether the gesture is a gizmo's.
    pressedOnGizmo = hasGizmo(camera, getMousePos(x, y, width, height), width, height);
    return pressedOnGizmo;
}

bool mxGizmoController::setMousePos(int x, int y) {
    pendingEvents.push_back(MouseEvent{x, y, MOUSE_MOVED});
    return pressedOnGizmo;
}

bool mxGizmoController::setMouseReleased(int x, int y) {
    pendingEvents.push_back(MouseEvent{x, y, MOUSE_RELEASED});
    const bool wasOnGizmo = pressedOnGizmo;
    pressedOnGizmo = false;
    return wasOnGizmo;
}

void mxGizmoController::setOrientationReference(OrientationReference reference) {
    if (orientationReference != reference) {
        orientationReference = reference;
    }
}

void mxGizmoController::setCustomTransformation(
    const mxGenericTransformation<float>& transformation) {
    customTransformation = transformation;
}

void mxGizmoController::clearControllerEvents() {
    pendingEvents.clear();
    dragging = false;
}

void mxGizmoController::clearController() {
    pendingEvents.clear();
    dragging = false;
    gizmos.clear();
    activeGizmo = nullptr;
    // The drag controllers forget the node of the last drag as well: once the controllers are
    // reset the application may delete its gizmos, and none may be read afterwards (the picked
    // world axis reads the dragged node's frame).
    translateController->gizmo = nullptr;
    scaleController->gizmo = nullptr;
    rotateController->gizmo = nullptr;
}

int mxGizmoController::getPickedAxeIndex(const mxGizmoNode* gizmo) const {
    if (!gizmo) {
        return -1;
    }
    switch (gizmo->getMode()) {
    case mxGizmoNode::GIZMO_TRANSLATE:
        return translateController->getPickedAxe();
    case mxGizmoNode::GIZMO_ROTATE:
        return rotateController->getPickedAxe();
    case mxGizmoNode::GIZMO_SCALE:
        return scaleController->getPickedAxe();
    default:
        return -1;
    }
}

Wm4::ColorRGB mxGizmoController::getPickedAxeColor(const mxGizmoNode* gizmo) const {
    const int axis = getPickedAxeIndex(gizmo);
    if (axis < 0 || axis > 2) {
        return Wm4::ColorRGB::BLACK;
    }
    return mxGizmoNode::csColors[axis];
}

Wm4::ColorRGB mxGizmoController::getPickedAxeHighlightColor(const mxGizmoNode* gizmo) const {
    const int axis = getPickedAxeIndex(gizmo);
    if (axis < 0 || axis > 2) {
        return Wm4::ColorRGB::BLACK;
    }
    return mxGizmoNode::csColorsHighlight[axis];
}

Wm4::Vector3<float> mxGizmoController::getPickedWorldAxe(const mxGizmoNode* gizmo) const {
    if (!gizmo) {
        return Wm4::Vector3<float>::ZERO;
    }
    switch (gizmo->getMode()) {
    case mxGizmoNode::GIZMO_TRANSLATE:
        return translateController->getPickedWorldAxe();
    case mxGizmoNode::GIZMO_ROTATE:
        return rotateController->getPickedWorldAxe();
    case mxGizmoNode::GIZMO_SCALE:
        return scaleController->getPickedWorldAxe();
    default:
        return Wm4::Vector3<float>::ZERO;
    }
}

Wm4::Vector2<float> mxGizmoController::getMousePos(int x, int y, int width, int height) {
    // Pixel centres, with the origin moved to the lower left; height - y in integers, 64 bits
    // wide: a pixel far outside the view (up to the limits of int) is legitimate input, and
    // the difference of two ints needs 33 bits. Within 32 bits the result is the same.
    const std::int64_t fromBottom = static_cast<std::int64_t>(height) - y;
    return Wm4::Vector2<float>((static_cast<float>(x) + 0.5f) / static_cast<float>(width),
                               (static_cast<float>(fromBottom) - 0.5f) /
                                   static_cast<float>(height));
}

bool mxGizmoController::hasGizmo(const mxCamera* camera, const Wm4::Vector2<float>& position,
                                 int width, int height) const {
    for (const mxGizmoNode* gizmo : gizmos) {
        bool over = false;
        switch (gizmo->getMode()) {
        case mxGizmoNode::GIZMO_TRANSLATE:
            over =
                translateController->isOver(gizmo, camera, position, pickTolerance, width, height);
            break;
        case mxGizmoNode::GIZMO_ROTATE:
            over = rotateController->isOver(gizmo, camera, position, pickTolerance, width, height);
            break;
        case mxGizmoNode::GIZMO_SCALE:
            over = scaleController->isOver(gizmo, camera, position, pickTolerance, width, height);
            break;
        default:
            break;
        }
        if (over) {
            return true;
        }
    }
    return false;
}

mxGizmoNode* mxGizmoController::updateHover(const mxCamera* camera,
                                            const Wm4::Vector2<float>& position, int width,
                                            int height) {
    for (mxGizmoNode* gizmo : gizmos) {
        bool hovered = false;
        switch (gizmo->getMode()) {
        case mxGizmoNode::GIZMO_TRANSLATE:
            hovered = translateController->updateTranslateHover(
                gizmo, camera, position, gizmo->getEnabledAxis(mxGizmoNode::GIZMO_TRANSLATE),
                pickTolerance, width, height);
            break;
        case mxGizmoNode::GIZMO_ROTATE:
            hovered = rotateController->updateRotateHover(gizmo, camera, position, pickTolerance,
                                                          width, height);
            break;
        case mxGizmoNode::GIZMO_SCALE:
            hovered = scaleController->updateTranslateHover(
                gizmo, camera, position, gizmo->getEnabledAxis(mxGizmoNode::GIZMO_SCALE),
                pickTolerance, width, height);
            break;
        default:
            break;
        }
        // The first gizmo with a handle under the mouse wins; those after it are not asked.
        if (hovered) {
            return gizmo;
        }
    }
    return nullptr;
}

void mxGizmoController::setMousePressedImpl(const mxCamera* camera, int x, int y, int width,
                                            int height) {
    const Wm4::Vector2<float> position = getMousePos(x, y, width, height);
    activeGizmo = updateHover(camera, position, width, height);
    // Held aside: a listener called from the drag controller may reset this controller, which
    // forgets the active gizmo, yet this one took part in the press.
    if (mxGizmoNode* gizmo = activeGizmo) {
        switch (gizmo->getMode()) {
        case mxGizmoNode::GIZMO_TRANSLATE:
            translateController->setMousePressed(gizmo, camera, position);
            break;
        case mxGizmoNode::GIZMO_ROTATE:
            rotateController->setMousePressed(gizmo, camera, position, width, height);
            break;
        case mxGizmoNode::GIZMO_SCALE:
            scaleController->setMouseScalePressed(gizmo, camera, position);
            break;
        // GCOVR_EXCL_START: the hover answers only with a gizmo in one of the three modes.
        default:
            break;
            // GCOVR_EXCL_STOP
        }
        touch(gizmo);
    }
    // A press off the gizmos starts a gesture too: its moves then change nothing.
    dragging = true;
}

void mxGizmoController::setMousePosImpl(const mxCamera* camera, int x, int y, int width,
                                        int height) {
    const Wm4::Vector2<float> position = getMousePos(x, y, width, height);
    if (!dragging) {
        // No button down: only the highlight follows the mouse.
        updateHover(camera, position, width, height);
        return;
    }
    if (!activeGizmo) {
        return;
    }
    switch (activeGizmo->getMode()) {
    case mxGizmoNode::GIZMO_TRANSLATE: {
        // A custom frame follows a translate drag by the move of the objects' centre.
        const Wm4::Vector3<float> before = activeGizmo->getCenterReferences();
        translateController->setMousePos(activeGizmo, camera, position);
        const Wm4::Vector3<float> after = activeGizmo->getCenterReferences();
        customTransformation.SetTranslate(customTransformation.GetTranslate() + (after - before));
        break;
    }
    case mxGizmoNode::GIZMO_ROTATE:
        rotateController->setMousePos(activeGizmo, camera, position, width, height);
        break;
    case mxGizmoNode::GIZMO_SCALE:
        scaleController->setMouseScalePos(activeGizmo, camera, position);
        break;
    default:
        break;
    }
    touch(activeGizmo);
}

void mxGizmoController::setMouseReleasedImpl(const mxCamera* camera, int x, int y, int width,
                                             int height) {
    const Wm4::Vector2<float> position = getMousePos(x, y, width, height);
    // Held aside, as at the press: a listener hearing the End may reset this controller.
    if (mxGizmoNode* gizmo = activeGizmo) {
        // Each release makes a last move, drops the pick and tells the listeners the End.
        switch (gizmo->getMode()) {
        case mxGizmoNode::GIZMO_TRANSLATE:
            translateController->setMouseReleased(gizmo, camera, position);
            break;
        case mxGizmoNode::GIZMO_ROTATE:
            rotateController->setMouseReleased(gizmo, camera, position, width, height);
            break;
        case mxGizmoNode::GIZMO_SCALE:
            scaleController->setMouseScaleReleased(gizmo, camera, position);
            break;
        default:
            break;
        }
        touch(gizmo);
    }
    // The gesture is over; the gizmo under the mouse now is whatever the release hovers.
    dragging = false;
    activeGizmo = updateHover(camera, position, width, height);
}

void mxGizmoController::updateController(mxGenericRenderingContext* context) {
    mxEngineInterface* engine = context ? context->getEngine() : nullptr;
    if (!engine) {
        return;
    }
    // 1. The gizmos below the root, collected again only when its subtree changed.
    mxNode* root = rootNode ? rootNode : engine->getScene();
    if (root && (root->getUpdateFlags() & mxSpatial::UPDATE_SUBTREE_CHANGED) != 0) {
        collectGizmos(root);
    }
    // 2. The view.
    int width = 0;
    int height = 0;
    engine->getViewportSize(width, height);
    const mxCameraNode* cameraNode = engine->getCameraNode();
    const mxCamera* camera = cameraNode ? cameraNode->getCamera() : nullptr;
    // 3. The recorded events; a disabled controller keeps them for later.
    if (enabled) {
        replayEvents(camera, width, height);
    }
    // 4. Every gizmo with a mode, placed for the camera.
    for (mxGizmoNode* gizmo : gizmos) {
        if (gizmo->getMode() != mxGizmoNode::GIZMO_NONE) {
            placeGizmo(gizmo, camera, height);
        }
    }
    // 5. The gizmos that took part in the frame's events.
    announceTouchedGizmos();
}

void mxGizmoController::collectGizmos(mxNode* root) {
    gizmos.clear();
    // Depth first, children in index order; a stack rather than recursion, so that a deep
    // scene cannot exhaust the call stack. Children are pushed last to first. Empty child
    // slots are passed over: the list never holds null.
    std::vector<mxSpatial*> pending(1, root);
    while (!pending.empty()) {
        mxSpatial* spatial = pending.back();
        pending.pop_back();
        if (!spatial || (spatial->getStateFlags() & mxSpatial::STATE_EXCLUDED) != 0) {
            continue;
        }
        if (spatial->IsDerived(mxGizmoNode::TYPE)) {
            gizmos.push_back(static_cast<mxGizmoNode*>(spatial));
        }
        if (spatial->IsDerived(mxNode::TYPE)) {
            const mxNode* node = static_cast<const mxNode*>(spatial);
            for (int i = node->getChildCount() - 1; i >= 0; --i) {
                pending.push_back(node->getChild(i));
            }
        }
    }
}

void mxGizmoController::replayEvents(const mxCamera* camera, int width, int height) {
    // By index, with the event copied out: a listener called during the replay may record
    // more events, which are then replayed in this frame too.
    for (std::size_t i = 0; i < pendingEvents.size(); ++i) {
        const MouseEvent event = pendingEvents[i];
        switch (event.kind) {
        case MOUSE_PRESSED:
            setMousePressedImpl(camera, event.x, event.y, width, height);
            break;
        case MOUSE_RELEASED:
            setMouseReleasedImpl(camera, event.x, event.y, width, height);
            break;
        case MOUSE_MOVED:
            setMousePosImpl(camera, event.x, event.y, width, height);
            break;
        }
    }
    pendingEvents.clear();
}

void mxGizmoController::placeGizmo(mxGizmoNode* gizmo, const mxCamera* camera, int viewportHeight) {
    // Position: the objects' centre, or the custom one.
    currentTransformation.SetTranslate(customTranslate ? customTransformation.GetTranslate()
                                                       : gizmo->getCenterReferences());
    // Orientation.
    switch (orientationReference) {
    case Local: {
        // The parent's rotation of a single reference object.
        const std::vector<mxSpatial*>& objects = gizmo->getReferenceObjects();
        const mxNode* parent =
            objects.size() == 1 && objects[0] ? objects[0]->getParent() : nullptr;
        if (parent) {
            Wm4::Matrix3<float> rotation;
            mxGizmoNode::ExtractRotation(parent->getWorldTransform(), rotation);
            currentTransformation.SetRotate(rotation);
        } else {
            currentTransformation.SetRotate(Wm4::Matrix3<float>::IDENTITY);
        }
        break;
    }
    case World:
        currentTransformation.SetRotate(Wm4::Matrix3<float>::IDENTITY);
        break;
    case View:
        if (camera) {
            // Columns right, direction, up: the first axis points right, the second into the
            // view, the third up.
            currentTransformation.SetRotate(Wm4::Matrix3<float>(
                camera->getRVector(), camera->getDVector(), camera->getUVector(), true));
        }
        break;
    case Custom:
    case CustomAlt:
        currentTransformation = customTransformation;
        break;
    default:
        // Unknown references keep the rotation the last gizmo was given.
        break;
    }
    // Size and arrowheads. The node's world data is brought up to date between the two, so
    // that the arrowheads face the eye from where the gizmo is now, not from last frame.
    if (gizmo->calculateFrameFromObjectWorldTranform(
            currentTransformation, camera, gizmo->getExpectedPixelSize(), viewportHeight)) {
        gizmo->UpdateGS_Flags();
    }
    gizmo->updateCameraFacing(camera);
}

void mxGizmoController::touch(mxGizmoNode* gizmo) {
    const auto place = std::lower_bound(touchedGizmos.begin(), touchedGizmos.end(), gizmo,
                                        std::less<mxGizmoNode*>());
    if (place == touchedGizmos.end() || *place != gizmo) {
        touchedGizmos.insert(place, gizmo);
    }
}

void mxGizmoController::announceTouchedGizmos() {
    if (touchedGizmos.empty()) {
        return;
    }
    // Taken out first, so that a listener calling for a frame meanwhile does not announce
    // these again. Such a nested frame announces and empties whatever it touches itself, so
    // the list is empty again here and takes its storage back.
    std::vector<mxGizmoNode*> touched;
    touched.swap(touchedGizmos);
    for (mxGizmoNode* gizmo : touched) {
        impl::notifyListeners(listeners, &mx3DManipulatorMotionListener::onGizmoManipulated, gizmo);
    }
    touched.clear();
    touchedGizmos.swap(touched);
}

} // namespace mx
