// ViewerSession: everything the viewer shows and edits, without any widget: the engine and
// its scene, the camera, the gizmo and its controller, the selection, and the undo history
// built on the motion listener. The window and the script player both drive it.
//
// Pixels are those of the 3-D view, from its top-left corner, as mouse events give them.
#pragma once

#include "DemoScene.h"
#include "ManipulationRecorder.h"
#include "OrbitCamera.h"

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"

#include <QObject>
#include <QPointF>
#include <QString>
#include <QUndoStack>

#include <memory>
#include <vector>

namespace viewer {

class ViewerSession : public QObject {
    Q_OBJECT

public:
    // Starts the library, builds the demo scene, a translate gizmo (hidden until something
    // is selected) and its controller, and a 960 x 600 view.
    ViewerSession();
    ~ViewerSession() override;

    mx::mxEngine& getEngine() { return engine; }
    mx::mxGizmoController& getController() { return controller; }
    const mx::mxGizmoController& getController() const { return controller; }
    const mx::mxGizmoNode& getGizmo() const { return *gizmo; }
    const DemoScene& getScene() const { return *scene; }
    const mx::mxCamera& getCamera() const { return *camera; }
    const OrbitCamera& getOrbit() const { return orbit; }
    QUndoStack& getUndoStack() { return undoStack; }
    const QUndoStack& getUndoStack() const { return undoStack; }
    const ManipulationRecorder& getRecorder() const { return *recorder; }

    int getViewportWidth() const { return viewportWidth; }
    int getViewportHeight() const { return viewportHeight; }
    void setViewportSize(int width, int height);

    // One frame: the controller replays the mouse events recorded since the last frame and
    // places the gizmo, the scene updates.
    void runFrame();
    std::uint64_t getFrameCount() const { return engine.getFrameCount(); }

    // Selection. The gizmo sits on the selected objects and is hidden when there are none.
    const std::vector<const SceneObject*>& getSelection() const { return selection; }
    void select(const std::vector<const SceneObject*>& objects);
    // The nearest object whose triangles the pixel's ray meets, or null.
    const SceneObject* objectAt(const QPointF& pixel) const;
    // A click: selects the object under the pixel, or clears the selection on empty space;
    // toggle adds the object to the selection or takes it out.
    void clickAt(const QPointF& pixel, bool toggle);

    // Gizmo settings. The mode is the one chosen by the user (GIZMO_NONE hides the gizmo);
    // it shows while something is selected.
    mx::mxGizmoNode::GizmoMode getMode() const { return mode; }
    void setMode(mx::mxGizmoNode::GizmoMode newMode);
    void setOrientation(mx::mxGizmoController::OrientationReference reference);
    void toggleSnapToAxis();
    void toggleUniformScale();
    void toggleNearFarRestriction();
    // Flips the bit of axis (0 x, 1 y, 2 z) in the current mode's mask.
    void toggleAxis(int axis);
    // Changes the gizmo's size on screen by delta pixels, within 20 to 300.
    void changeExpectedPixelSize(float delta);

    // Camera.
    void orbitCamera(double yawDegrees, double pitchDegrees);
    void panCamera(double dx, double dy);
    void zoomCamera(double notches);
    bool lookAt(const Wm4::Vector3<double>& eye, const Wm4::Vector3<double>& target);
    void setPerspective(bool perspective);
    void frameSelection();
    void resetCamera();

    // Where a world point shows: the pixel (fractional) whose mouse position the library
    // reads as that point's projection. False when the point is behind the eye.
    bool project(const Wm4::Vector3<double>& world, QPointF& pixel) const;

    // The name of a scene object, or an empty string.
    QString nameOf(const mx::mxSpatial* object) const;
    // Short texts for the status bar.
    QString modeText() const;
    QString orientationText() const;

signals:
    // Something shown in the status bar or the view changed.
    void changed();

private:
    void applyCamera();
    void showGizmo();
    void highlightSelection();

    mx::mxEngine engine;
    mx::mxPointer<mx::mxCamera> camera;
    OrbitCamera orbit;
    std::unique_ptr<DemoScene> scene;
    mx::mxPointer<mx::mxGizmoNode> gizmo;
    mx::mxGizmoController controller;
    QUndoStack undoStack;
    std::unique_ptr<ManipulationRecorder> recorder;
    std::vector<const SceneObject*> selection;
    mx::mxGizmoNode::GizmoMode mode;
    int viewportWidth;
    int viewportHeight;
};

} // namespace viewer
