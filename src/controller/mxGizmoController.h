// mxGizmoController: drives every gizmo of a scene with the mouse. Register it with the engine
// as a controller (mxEngine::attachController) and install listeners on it.
//
// The mouse calls only record the event (a press is also hit-tested at once, so that the
// application learns straight away whether the gesture belongs to a gizmo); the recorded
// events are replayed when the engine runs the controller, once per frame, in updateController:
//   1. when the root reports a change of its subtree (mxSpatial::UPDATE_SUBTREE_CHANGED), the
//      gizmos below it are collected again, depth first; subtrees flagged
//      mxSpatial::STATE_EXCLUDED are skipped. Otherwise last frame's list is kept, so gizmos
//      attached before a frame that has cleared the flag are found only at the next change;
//   2. the camera and the viewport size come from the engine;
//   3. while enabled, the recorded events are replayed in order: a press picks the gizmo under
//      the mouse and starts a drag with the drag controller of its mode, moves drive the drag
//      (or only the hover highlight when no button is down), the release ends it and the
//      listeners hear the End callback. While disabled the events wait, untouched;
//   4. every gizmo with a mode is placed: at its reference objects' centre, turned by the
//      orientation reference, scaled to keep its size on screen, its arrowheads facing the eye;
//   5. the listeners hear onGizmoManipulated once for each gizmo that took part in a press, a
//      move or a release during the frame, in ascending pointer order.
//
// Mouse positions are window pixels: origin at the top left, y downwards.
//
// The controller owns its three drag controllers and its event queue, but neither the gizmos
// nor the listeners. It remembers the gizmo under the mouse between frames: before deleting a
// gizmo, reset the engine's controllers (mxEngine::resetControllers calls clearController).
#pragma once

#include "scenegraph/mxGenericControllerInterface.h"
#include "scenegraph/mxGenericTransformation.h"
#include "wm4/Wm4ColorRGB.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include <cstdint>
#include <vector>

namespace mx {

class mx3DManipulatorMotionListener;
class mxCamera;
class mxGizmoControllerRotate;
class mxGizmoControllerScale;
class mxGizmoControllerTranslate;
class mxGizmoNode;
class mxNode;

class mxGizmoController : public mxGenericControllerInterface {
public:
    // How the gizmos' frame is turned.
    enum OrientationReference : std::int32_t {
        // By the world rotation of the parent of the gizmo's one reference object; not turned
        // when the gizmo has no or several reference objects, or the object has no parent.
        Local = 0,
        // Not turned: the axes are the world's.
        World = 1,
        // By the camera: the first axis points right, the second into the view, the third up.
        View = 2,
        // The custom transformation replaces the whole frame, position included.
        Custom = 3,
        CustomAlt = 4
        // Any other value keeps the rotation the previous gizmo or frame left.
    };

    mxGizmoController();
    // Deletes the drag controllers; the gizmos and the listeners are left alone.
    ~mxGizmoController() override;
    mxGizmoController(const mxGizmoController&) = delete;
    mxGizmoController& operator=(const mxGizmoController&) = delete;

    // One frame (see above). The engine comes with the context; without one nothing happens.
    void updateController(mxGenericRenderingContext* context) override;

    // Appends listener, or returns false when it is installed already. A null listener is not
    // refused; it is passed over when the listeners are called.
    bool install3DManipulatorMotionListener(mx3DManipulatorMotionListener* listener);
    // Removes the first occurrence of listener, keeping the order of the others; false when
    // it is not installed.
    bool uninstall3DManipulatorMotionListener(mx3DManipulatorMotionListener* listener);

    // Records a press at pixel (x, y) of a width x height view and hit-tests it at once
    // against the gizmos of the last frame with camera. Returns whether the press lies on a
    // gizmo; the answer is kept as the gesture's flag.
    bool setMousePressed(const mxCamera* camera, int x, int y, int width, int height);
    // Records a move; returns the gesture's flag (whether the last press was on a gizmo).
    bool setMousePos(int x, int y);
    // Records a release; returns the gesture's flag and then clears it.
    bool setMouseReleased(int x, int y);

    // The gizmos found below the root at the last collection.
    const std::vector<mxGizmoNode*>& get3DManipulators() const { return gizmos; }

    // Takes effect at the next frame.
    void setOrientationReference(OrientationReference reference);
    OrientationReference getOrientationReference() const { return orientationReference; }
    // The frame of the Custom references, and the position of every gizmo under
    // useCustomTranslate. A translate drag moves it along with the objects.
    void setCustomTransformation(const mxGenericTransformation<float>& transformation);
    const mxGenericTransformation<float>& getCustomTransformation() const {
        return customTransformation;
    }
    // The frame computed for the last gizmo placed.
    const mxGenericTransformation<float>& getCurrentTransformation() const {
        return currentTransformation;
    }
    // true: place the gizmos at the custom transformation's translation instead of their
    // reference objects' centre.
    void useCustomTranslate(bool use) { customTranslate = use; }

    // A disabled controller keeps the recorded events for the first enabled frame; gizmos are
    // still placed.
    void setEnabled(bool enable) { enabled = enable; }
    bool isEnabled() const { return enabled; }

    // The node below which gizmos are collected; null (the default) for the engine's scene.
    // Not owned.
    void setRootNode(mxNode* root) { rootNode = root; }

    // Forgets the recorded events and any drag in progress.
    void clearControllerEvents();

    // The axis picked by the drag controller of gizmo's mode: 0, 1, 2, or -1 for none and for
    // a gizmo without a mode (or null).
    int getPickedAxeIndex(const mxGizmoNode* gizmo) const;
    // The picked axis's colour (mxGizmoNode::csColors) or its hovered shade
    // (mxGizmoNode::csColorsHighlight); black when no axis is picked.
    Wm4::ColorRGB getPickedAxeColor(const mxGizmoNode* gizmo) const;
    Wm4::ColorRGB getPickedAxeHighlightColor(const mxGizmoNode* gizmo) const;
    // The picked axis in world space, of unit length; (0, 0, 0) when none is picked.
    Wm4::Vector3<float> getPickedWorldAxe(const mxGizmoNode* gizmo) const;

protected:
    // Forgets the recorded events, any drag, the gizmo under the mouse and the collected
    // gizmos (found again at the next change below the root). The engine calls it when it
    // resets its controllers.
    void clearController() override;

private:
    enum MouseEventKind : std::int32_t { MOUSE_PRESSED = 0, MOUSE_RELEASED = 1, MOUSE_MOVED = 2 };
    struct MouseEvent {
        std::int32_t x;
        std::int32_t y;
        std::int32_t kind;
    };

    // Pixel (x, y) of a width x height view as a position in [0, 1] from the lower left, at
    // the pixel's centre.
    static Wm4::Vector2<float> getMousePos(int x, int y, int width, int height);
    // Whether position lies on a gizmo, the first one in the list that answers.
    bool hasGizmo(const mxCamera* camera, const Wm4::Vector2<float>& position, int width,
                  int height) const;
    // Highlights the handle under position on the first gizmo that has one, and returns that
    // gizmo; null when none has.
    mxGizmoNode* updateHover(const mxCamera* camera, const Wm4::Vector2<float>& position, int width,
                             int height);
    void setMousePressedImpl(const mxCamera* camera, int x, int y, int width, int height);
    void setMousePosImpl(const mxCamera* camera, int x, int y, int width, int height);
    void setMouseReleasedImpl(const mxCamera* camera, int x, int y, int width, int height);

    // The per-frame steps.
    void collectGizmos(mxNode* root);
    void replayEvents(const mxCamera* camera, int width, int height);
    void placeGizmo(mxGizmoNode* gizmo, const mxCamera* camera, int viewportHeight);
    // Adds gizmo to the gizmos to announce, unless it is there already.
    void touch(mxGizmoNode* gizmo);
    void announceTouchedGizmos();

    // The gizmo under the mouse, or being dragged.
    mxGizmoNode* activeGizmo;
    mxGizmoControllerRotate* rotateController;
    mxGizmoControllerTranslate* translateController;
    mxGizmoControllerScale* scaleController;
    OrientationReference orientationReference;
    mxNode* rootNode;
    mxGenericTransformation<float> customTransformation;
    mxGenericTransformation<float> currentTransformation;
    // The drag controllers hold a reference to this list.
    std::vector<mx3DManipulatorMotionListener*> listeners;
    std::vector<mxGizmoNode*> gizmos;
    std::vector<MouseEvent> pendingEvents;
    // The gizmos to announce at the end of the frame, in ascending pointer order without
    // repeats. The vector keeps its storage from frame to frame, so that a drag allocates
    // nothing once it has started.
    std::vector<mxGizmoNode*> touchedGizmos;
    // How near the mouse must come to a handle, in pixels.
    float pickTolerance;
    bool customTranslate;
    // A press was replayed and its release not yet.
    bool dragging;
    // The answer of the last setMousePressed.
    bool pressedOnGizmo;
    bool enabled;
};

} // namespace mx
