// Helpers for the end-to-end gesture tests, which drive whole mouse gestures through an
// mxGizmoController run by an mxEngine (directly, or through Qt mouse events): a scene of
// reference objects with a gizmo and the controller attached to the engine, the conversion of
// world points to the window pixels a mouse gives, and what a translate, scale or rotate drag
// should do, worked out again in double from the camera alone. Header-only; everything lives
// in namespace mx::test.
//
// Window pixels have their origin at the top left with y downwards, as mouse events give them.
// The controller turns pixel (x, y) of a width x height view into the normalised position
// ((x + 0.5) / width, ((height - y) - 0.5) / height) from the lower left; the expectations
// below are computed from that very position, so that rounding a world point to a whole pixel
// costs nothing in precision.
#pragma once

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "node/mxGizmoNodeRotate.h"
#include "node/mxGizmoNodeScale.h"
#include "node/mxGizmoNodeTranslate.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxLine.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "scenegraph/mxSpatial.h"
#include "wm4/Wm4ColorRGBA.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "node/mxGizmoNodeTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

namespace mx::test {

// ---------------------------------------------------------------------------------------------
// Window pixels

// A mouse position in window pixels: origin at the top left, y downwards.
struct WindowPixel {
    int x = 0;
    int y = 0;
};

// The window pixel whose centre lies within half a pixel of pixel, a position measured from the
// lower left of a view height pixels high (as PixelOf gives it).
inline WindowPixel WindowPixelAt(const Wm4::Vector2<float>& pixel, int height = csViewHeight) {
    WindowPixel window;
    window.x = static_cast<int>(std::lround(static_cast<double>(pixel.X()) - 0.5));
    window.y = height - static_cast<int>(std::lround(static_cast<double>(pixel.Y()) + 0.5));
    return window;
}

// The window pixel over a world point.
inline WindowPixel WindowPixelOf(const mxCamera& camera, const Wm4::Vector3<float>& world,
                                 int width = csViewWidth, int height = csViewHeight) {
    return WindowPixelAt(PixelOf(camera, world, width, height), height);
}

// The normalised position, from the lower left, that the controller makes of a window pixel:
// the same float operations, so the very same bits.
inline Wm4::Vector2<float> MouseOfWindowPixel(const WindowPixel& pixel, int width = csViewWidth,
                                              int height = csViewHeight) {
    const int fromBottom = height - pixel.y;
    return Wm4::Vector2<float>((static_cast<float>(pixel.x) + 0.5f) / static_cast<float>(width),
                               (static_cast<float>(fromBottom) - 0.5f) /
                                   static_cast<float>(height));
}

// ---------------------------------------------------------------------------------------------
// Matrices in double

inline Wm4::Matrix3<double> MatrixToDouble(const Wm4::Matrix3<float>& m) {
    return Wm4::Matrix3<double>(m(0, 0), m(0, 1), m(0, 2), m(1, 0), m(1, 1), m(1, 2), m(2, 0),
                                m(2, 1), m(2, 2));
}

// Column c of m: the image of unit axis c.
inline Wm4::Vector3<double> ColumnOf(const Wm4::Matrix3<double>& m, int c) {
    return Wm4::Vector3<double>(m(0, c), m(1, c), m(2, c));
}

// ---------------------------------------------------------------------------------------------
// Colours

// Success when the lines of the node's current mode show axis in its hovered shade and the
// other axes in their normal colours (all three normal for axis -1): the shaft and arrowhead
// of a translate axis, the circle of a rotate axis, the shaft and end square of a scale axis.
inline ::testing::AssertionResult ShowsHover(const mxGizmoNode& node, int axis) {
    for (unsigned int a = 0; a < 3u; ++a) {
        const Wm4::ColorRGBA expected =
            static_cast<int>(a) == axis ? HoveredColor(a) : NormalColor(a);
        std::vector<const mxLine*> lines;
        switch (node.getMode()) {
        case mxGizmoNode::GIZMO_TRANSLATE:
            lines = {node.getTranslateGizmo().getAxis(a), node.getTranslateGizmo().getArrowHead(a)};
            break;
        case mxGizmoNode::GIZMO_ROTATE:
            lines = {node.getRotateGizmo().getCircle(a)};
            break;
        case mxGizmoNode::GIZMO_SCALE:
            lines = {node.getScaleGizmo().getAxis(a), node.getScaleGizmo().getEndSquare(a)};
            break;
        default:
            return ::testing::AssertionFailure() << "the node has no mode with lines";
        }
        for (const mxLine* line : lines) {
            if (!line) {
                return ::testing::AssertionFailure() << "axis " << a << " has no line";
            }
            ::testing::AssertionResult same = ColorIs(line->getColor(), expected);
            if (!same) {
                return same << " on axis " << a << " (hovered axis " << axis << ")";
            }
        }
    }
    return ::testing::AssertionSuccess();
}

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
        // The local position that puts the object at world below the parent.
        const mxGenericTransformation<float>& parentWorld = parent->getWorldTransform();
        const Wm4::Matrix3<double> rotation = MatrixToDouble(parentWorld.GetRotate());
        const Wm4::Vector3<double> local =
            rotation.Transpose() * (ToDouble(world) - ToDouble(parentWorld.GetTranslate()));
        objects.push_back(MakeObject(ToFloat(local), parent.get()));
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
    Wm4::Vector3<double> centre() const {
        Wm4::Vector3<double> sum(0.0, 0.0, 0.0);
        for (const auto& object : objects) {
            sum += ToDouble(object->getWorldTransform().GetTranslate());
        }
        return sum / static_cast<double>(objects.size());
    }

    // The gizmo's frame: its world rotation, without its screen-constant scale.
    Wm4::Matrix3<double> frame() const {
        return MatrixToDouble(gizmo->getWorldTransform().GetRotate());
    }

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

// ---------------------------------------------------------------------------------------------
// Drags done again in double

// An axis drag. At the press, of the two planes through the axis (normals axis + 1 and
// axis + 2 of the gizmo's frame, through the centre) the drag runs in the one the pick ray
// meets most face-on, the first on a tie, a hit behind the eye not counting. The mouse then
// selects the point of the axis where its ray meets that plane.
struct AxisDrag {
    Wm4::Vector3<double> centre;
    Wm4::Vector3<double> axis;
    Wm4::Vector3<double> normal;
    Wm4::Vector3<double> pressPoint;
    bool found = false;

    Wm4::Vector3<double> pointUnder(const mxCamera& camera,
                                    const Wm4::Vector2<float>& mouse) const {
        const PickRay ray = PickRayOf(camera, mouse);
        double lineT = 0.0;
        if (!MeetPlane(ray, normal, centre, lineT)) {
            ADD_FAILURE() << "the ray runs along the drag plane";
            return pressPoint;
        }
        const Wm4::Vector3<double> hit = ray.origin + ray.direction * lineT;
        return centre + axis * (hit - centre).Dot(axis);
    }
};

inline AxisDrag PressAxisDrag(const mxCamera& camera, const Wm4::Vector2<float>& mouse,
                              const Wm4::Vector3<double>& centre, const Wm4::Matrix3<double>& frame,
                              int axisIndex) {
    AxisDrag drag;
    drag.centre = centre;
    drag.axis = ColumnOf(frame, axisIndex);
    const PickRay ray = PickRayOf(camera, mouse);
    double bestCos = -1.0;
    for (int k = 1; k <= 2; ++k) {
        const Wm4::Vector3<double> normal = ColumnOf(frame, (axisIndex + k) % 3);
        double lineT = 0.0;
        if (!MeetPlane(ray, normal, centre, lineT) || lineT < 0.0) {
            continue;
        }
        const double facing = std::fabs(normal.Dot(ray.direction));
        if (facing > bestCos) {
            bestCos = facing;
            drag.normal = normal;
            drag.found = true;
        }
    }
    if (drag.found) {
        drag.pressPoint = drag.pointUnder(camera, mouse);
    }
    return drag;
}

// The factor of a scale drag of s lengths of the axis: 1 + s outwards, 1 / (1 - s) inwards.
inline double ScaleFactor(double s) {
    return s >= 0.0 ? 1.0 + s : 1.0 / (1.0 - s);
}

// The circle about axis of a gizmo: its centre, its axis, and e1 = axis + 1, e2 = axis + 2 of
// the gizmo's frame spanning its plane (e1 x e2 = axis, so a growing angle turns
// right-handedly about the axis), and its radius.
struct Circle {
    Wm4::Vector3<double> centre;
    Wm4::Vector3<double> axis;
    Wm4::Vector3<double> e1;
    Wm4::Vector3<double> e2;
    double radius = 0.0;

    Wm4::Vector3<double> pointAt(double degrees) const {
        const double a = Radians(degrees);
        return centre + (e1 * std::cos(a) + e2 * std::sin(a)) * radius;
    }

    // The angle of the circle's point nearest the eye, in degrees: on the half facing it.
    double frontDegrees(const mxCamera& camera) const {
        const Wm4::Vector3<double> toEye = ToDouble(camera.getLocation()) - centre;
        return std::atan2(toEye.Dot(e2), toEye.Dot(e1)) * 180.0 / csPi;
    }

    // Where the mouse's pick ray meets the circle's plane.
    Wm4::Vector3<double> onPlane(const mxCamera& camera, const Wm4::Vector2<float>& mouse) const {
        const PickRay ray = PickRayOf(camera, mouse);
        double lineT = 0.0;
        EXPECT_TRUE(MeetPlane(ray, axis, centre, lineT)) << "the ray runs along the circle";
        return ray.origin + ray.direction * lineT;
    }

    // The angle about the axis from the press direction to the mouse's, rounded to 5 degrees,
    // in radians.
    double sweptAngle(const mxCamera& camera, const Wm4::Vector3<double>& pressPoint,
                      const Wm4::Vector2<float>& mouse) const {
        Wm4::Vector3<double> v = pressPoint - centre;
        Wm4::Vector3<double> u = onPlane(camera, mouse) - centre;
        v.Normalize();
        u.Normalize();
        const double angle = std::atan2(axis.Cross(v).Dot(u), v.Dot(u));
        const double step = csPi / 36.0;
        return std::round(angle / step) * step;
    }
};

// The circle about axis of the scene's gizmo as it stands.
inline Circle CircleOf(const GestureScene& scene, int axis) {
    const Wm4::Matrix3<double> frame = scene.frame();
    Circle circle;
    circle.centre = ToDouble(scene.gizmo->getGizmoPosition());
    circle.axis = ColumnOf(frame, axis);
    circle.e1 = ColumnOf(frame, (axis + 1) % 3);
    circle.e2 = ColumnOf(frame, (axis + 2) % 3);
    circle.radius =
        (scene.gizmoPoint(UnitAxis(static_cast<unsigned int>(axis))) - circle.centre).Length();
    return circle;
}

} // namespace mx::test
