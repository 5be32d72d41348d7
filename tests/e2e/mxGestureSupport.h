// Helpers for the tests that drive whole mouse gestures through an mxGizmoController run by an
// mxEngine (directly, or through Qt mouse events): a scene of reference objects with a gizmo
// and the controller attached to the engine, and the circle of its gizmo. The conversions to
// window pixels and the drags done again in double come from mxControllerTestSupport.h; the
// expectations are computed from the very normalised position the controller makes of a window
// pixel, so that rounding a world point to a whole pixel costs nothing in precision.
// Header-only; everything lives in namespace mx::test.
#pragma once

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "node/mxGizmoNodeTestSupport.h"

#include <vector>

namespace mx::test {

// ---------------------------------------------------------------------------------------------
// The scene

// An engine showing a 200 x 200 view through camera, with reference objects below its scene
// (some of them below a parent node that is turned and moved), a gizmo node below the scene
// around them, and an mxGizmoController attached to the engine with a RecordingListener
// installed. Build the objects, then call start(), which adds the gizmo, attaches the
// controller and runs the first frame, so that the gizmo is collected and placed.
struct GestureScene {
    mxEngine engine;
    mxPointer<mxCamera> camera;
    mxPointer<mxNode> parent;
    std::vector<mxPointer<mxMesh>> objects;
    mxPointer<mxGizmoNode> gizmo;
    mxGizmoController controller;
    RecordingListener listener;

    // The parent node is placed by parentRotation and parentTranslation below the scene.
    GestureScene(const mxPointer<mxCamera>& viewCamera, const Wm4::Matrix3<float>& parentRotation,
                 const Wm4::Vector3<float>& parentTranslation)
        : camera(viewCamera), parent(new mxNode) {
        engine.setViewportSize(csViewWidth, csViewHeight);
        engine.setCameraNode(new mxCameraNode(camera.get()));
        parent->editLocalTransform(true).SetRotate(parentRotation);
        parent->editLocalTransform(true).SetTranslate(parentTranslation);
        engine.getScene()->attachChild(parent.get());
        engine.getScene()->UpdateGS();
    }

    ~GestureScene() { engine.detachController(&controller); }

    GestureScene(const GestureScene&) = delete;
    GestureScene& operator=(const GestureScene&) = delete;

    // A reference object at the world position world, directly below the scene or below the
    // parent node.
    mxMesh* addObject(const Wm4::Vector3<float>& world, bool belowParent) {
        if (!belowParent) {
            objects.push_back(MakeObject(world, engine.getScene()));
            return objects.back().get();
        }
        objects.push_back(MakeObject(LocalPositionBelow(*parent, world), parent.get()));
        return objects.back().get();
    }

    // The gizmo in mode around every object added so far, shown, and the controller at work:
    // one frame has run.
    void start(mxGizmoNode::GizmoMode mode) {
        gizmo = new mxGizmoNode;
        engine.getScene()->attachChild(gizmo.get());
        gizmo->setMode(mode);
        std::vector<mxSpatial*> references;
        for (const auto& object : objects) {
            references.push_back(object.get());
        }
        gizmo->setReferenceObjects(references);
        gizmo->setCullingMode(csShown);
        engine.attachController(&controller);
        controller.install3DManipulatorMotionListener(&listener);
        engine.updateFrame();
    }

    // The engine's camera, as the application passes it with a press.
    const mxCamera* viewCamera() const { return engine.getCameraNode()->getCamera(); }

    // The objects' centre, from their world positions (their bounds have no radius).
    Wm4::Vector3<double> centre() const { return MeanPosition(WorldsOf(objects)); }

    // The gizmo's frame: its world rotation, without its screen-constant scale.
    Wm4::Matrix3<double> frame() const { return ToDouble(gizmo->getWorldTransform().GetRotate()); }

    // A point of the gizmo in world space, given in the gizmo's own frame (the tip of axis i is
    // UnitAxis(i)).
    Wm4::Vector3<double> gizmoPoint(const Wm4::Vector3<float>& local) const {
        return ToDouble(gizmo->getWorldTransform().ApplyForward(local, true));
    }

    // The window pixel over the point along arrow lengths from the gizmo's centre on axis,
    // moved by aside pixels (x right, y up).
    WindowPixel onArrow(int axis, double along,
                        const Wm4::Vector2<float>& aside = Wm4::Vector2<float>(0.0f, 0.0f)) const {
        const Wm4::Vector3<double> centre = gizmoPoint(Wm4::Vector3<float>::ZERO);
        const Wm4::Vector3<double> tip = gizmoPoint(UnitAxis(static_cast<unsigned int>(axis)));
        return WindowPixelAt(PixelOf(*camera, ToFloat(centre + (tip - centre) * along)) + aside);
    }

    // One frame with a hover move recorded before it.
    void hoverFrame(const WindowPixel& pixel) {
        controller.setMousePos(pixel.x, pixel.y);
        engine.updateFrame();
    }
};

// The standard view over a gizmo in mode around two objects 2 units either side of the
// origin, directly below the scene (the parent node stays empty), placed by a first frame. At
// depth 10 the gizmo's 60-pixel axes and circles are 6 units long, 10 pixels to the unit.
struct TwoObjectScene : GestureScene {
    explicit TwoObjectScene(mxGizmoNode::GizmoMode mode)
        : GestureScene(MakeStandardCamera(), Wm4::Matrix3<float>::IDENTITY,
                       Wm4::Vector3<float>::ZERO),
          left(addObject(Wm4::Vector3<float>(-2.0f, 0.0f, 0.0f), false)),
          right(addObject(Wm4::Vector3<float>(2.0f, 0.0f, 0.0f), false)) {
        start(mode);
        leftAtStart = left->getWorldTransform();
        rightAtStart = right->getWorldTransform();
    }

    mxMesh* left;
    mxMesh* right;
    // Their world transformations after the first frame.
    mxGenericTransformation<float> leftAtStart;
    mxGenericTransformation<float> rightAtStart;
};

// The circle about axis of the scene's gizmo as it stands.
inline Circle CircleOf(const GestureScene& scene, int axis) {
    const Wm4::Vector3<double> centre = ToDouble(scene.gizmo->getGizmoPosition());
    return CircleAbout(
        centre, scene.frame(), axis,
        (scene.gizmoPoint(UnitAxis(static_cast<unsigned int>(axis))) - centre).Length());
}

} // namespace mx::test
