// Helpers shared by the controller tests and the end-to-end gesture tests: a listener that
// records what it hears, the standard view, a gizmo placed in it, the conversions between world
// points, pixels, window pixels and the normalised mouse positions the controllers take, and
// what a translate, scale or rotate drag should do, worked out again in double from the camera
// alone. Header-only; everything lives in namespace mx::test.
//
// The standard view: the eye at (0, 0, 10) looking down -Z with +Y up (so right is +X), a
// 90-degree vertical field of view, aspect 1, near 1, far 100, over a 200 x 200 viewport. The
// centre ray is exactly -Z, the origin projects to pixel (100, 100), and at depth 10 one world
// unit covers 10 pixels.
#pragma once

#include "controller/mx3DManipulatorMotionListener.h"
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

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace mx::test {

// Records every callback as one word, in order, and the transformations of the End callbacks.
// A named listener also appends "<name> <word>" to a journal it shares with other listeners,
// which shows the order of the calls across listeners.
class RecordingListener : public mx3DManipulatorMotionListener {
public:
    RecordingListener() = default;
    RecordingListener(std::string name, std::vector<std::string>& journal)
        : name(std::move(name)), journal(&journal) {}

    void onGizmoManipulated(mxGizmoNode* gizmo) override {
        record("manipulated");
        manipulated.push_back(gizmo);
    }
    void onTranslateManipulatorStart() override { record("translateStart"); }
    void onTranslateManipulatorEnd(const mxGenericTransformation<float>& t) override {
        record("translateEnd");
        ends.push_back(t);
    }
    void onRotateManipulatorStart() override { record("rotateStart"); }
    void onRotateManipulatorEnd(const mxGenericTransformation<float>& t) override {
        record("rotateEnd");
        ends.push_back(t);
    }
    void onScaleManipulatorStart() override { record("scaleStart"); }
    void onScaleManipulatorEnd(const mxGenericTransformation<float>& t) override {
        record("scaleEnd");
        ends.push_back(t);
    }

    std::vector<std::string> events;
    std::vector<mxGenericTransformation<float>> ends;
    std::vector<mxGizmoNode*> manipulated;

private:
    void record(const char* word) {
        events.push_back(word);
        if (journal) {
            journal->push_back(name + " " + word);
        }
    }

    std::string name;
    std::vector<std::string>* journal = nullptr;
};

inline constexpr double csPi = 3.14159265358979323846;

inline double Radians(double degrees) {
    return degrees * csPi / 180.0;
}

inline constexpr int csViewWidth = 200;
inline constexpr int csViewHeight = 200;
// The tolerance the application gives the controllers, in pixels.
inline constexpr float csPickTolerance = 10.0f;

// The standard view's camera (see above).
inline mxPointer<mxCamera> MakeStandardCamera(bool perspective = true) {
    mxPointer<mxCamera> camera = new mxCamera(perspective);
    camera->setFrame(Wm4::Vector3<float>(0.0f, 0.0f, 10.0f), Wm4::Vector3<float>(0.0f, 0.0f, -1.0f),
                     Wm4::Vector3<float>(0.0f, 1.0f, 0.0f), Wm4::Vector3<float>(1.0f, 0.0f, 0.0f));
    camera->setFrustum(90.0f, 1.0f, 1.0f, 100.0f);
    return camera;
}

// An eye at eye looking at target with +Y up, a 90-degree vertical field of view over the
// square standard viewport.
inline mxPointer<mxCamera> MakeLookAtCamera(const Wm4::Vector3<float>& eye,
                                            const Wm4::Vector3<float>& target) {
    mxPointer<mxCamera> camera = new mxCamera(true);
    camera->lookAt(eye, target, Wm4::Vector3<float>(0.0f, 1.0f, 0.0f));
    camera->setFrustum(90.0f, 1.0f, 1.0f, 100.0f);
    return camera;
}

// The pixel position of a world point in a width x height view, from the lower left, as the
// controllers' picking measures it.
inline Wm4::Vector2<float> PixelOf(const mxCamera& camera, const Wm4::Vector3<float>& world,
                                   int width = csViewWidth, int height = csViewHeight) {
    const float* m = camera.getViewProjectionMatrix();
    const double x = world.X(), y = world.Y(), z = world.Z();
    const double cx = m[0] * x + m[4] * y + m[8] * z + m[12];
    const double cy = m[1] * x + m[5] * y + m[9] * z + m[13];
    const double cw = m[3] * x + m[7] * y + m[11] * z + m[15];
    return Wm4::Vector2<float>(static_cast<float>((cx / cw + 1.0) * 0.5 * width),
                               static_cast<float>((cy / cw + 1.0) * 0.5 * height));
}

// The normalised mouse position of a pixel position from the lower left.
inline Wm4::Vector2<float> MouseAtPixel(const Wm4::Vector2<float>& pixel, int width = csViewWidth,
                                        int height = csViewHeight) {
    return Wm4::Vector2<float>(pixel.X() / static_cast<float>(width),
                               pixel.Y() / static_cast<float>(height));
}

// The normalised mouse position over a world point.
inline Wm4::Vector2<float> MouseAt(const mxCamera& camera, const Wm4::Vector3<float>& world,
                                   int width = csViewWidth, int height = csViewHeight) {
    return MouseAtPixel(PixelOf(camera, world, width, height), width, height);
}

// ---------------------------------------------------------------------------------------------
// Window pixels
//
// An application's mouse calls give window pixels: whole numbers with the origin at the top
// left and y downwards. The controllers read window pixel (x, y) of a width x height view at its
// centre, (x + 0.5, height - y - 0.5) from the lower left, divided by the view's size.

// A mouse position in window pixels.
struct WindowPixel {
    int x = 0;
    int y = 0;
};

// The window pixel whose centre lies nearest to pixel, a position from the lower left of a view
// height pixels high (as PixelOf gives it): at most half a pixel off on each axis, a tie going
// to the pixel on the right and the one above. Worked out in double, where adding the half
// pixel is exact.
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
// Pick rays worked out in double from the camera's frame and frustum alone, to compute what a
// drag should give independently of the code under test.

inline Wm4::Vector3<double> ToDouble(const Wm4::Vector3<float>& v) {
    return Wm4::Vector3<double>(v.X(), v.Y(), v.Z());
}

inline Wm4::Vector3<float> ToFloat(const Wm4::Vector3<double>& v) {
    return Wm4::Vector3<float>(static_cast<float>(v.X()), static_cast<float>(v.Y()),
                               static_cast<float>(v.Z()));
}

inline Wm4::Matrix3<double> ToDouble(const Wm4::Matrix3<float>& m) {
    return Wm4::Matrix3<double>(m(0, 0), m(0, 1), m(0, 2), m(1, 0), m(1, 1), m(1, 2), m(2, 0),
                                m(2, 1), m(2, 2));
}

inline Wm4::Matrix3<float> ToFloat(const Wm4::Matrix3<double>& m) {
    Wm4::Matrix3<float> out;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            out(r, c) = static_cast<float>(m(r, c));
        }
    }
    return out;
}

// Column c of m: the image of unit axis c.
template <class Real> Wm4::Vector3<Real> ColumnOf(const Wm4::Matrix3<Real>& m, int c) {
    return Wm4::Vector3<Real>(m(0, c), m(1, c), m(2, c));
}

struct PickRay {
    Wm4::Vector3<double> origin;
    Wm4::Vector3<double> direction; // unit length
};

// The pick ray through a normalised mouse position from the lower left, by mxCamera's
// conventions: perspective from the eye through the near-plane point (r, u); orthographic from
// that point of the view box, along D.
inline PickRay PickRayOf(const mxCamera& camera, const Wm4::Vector2<float>& mouse) {
    const double r =
        camera.getRMin() + mouse.X() * (static_cast<double>(camera.getRMax()) - camera.getRMin());
    const double u =
        camera.getUMin() + mouse.Y() * (static_cast<double>(camera.getUMax()) - camera.getUMin());
    const Wm4::Vector3<double> eye = ToDouble(camera.getLocation());
    const Wm4::Vector3<double> d = ToDouble(camera.getDVector());
    const Wm4::Vector3<double> offset =
        ToDouble(camera.getRVector()) * r + ToDouble(camera.getUVector()) * u;
    if (camera.isPerspective()) {
        const Wm4::Vector3<double> direction = d * static_cast<double>(camera.getDMin()) + offset;
        return PickRay{eye, direction / direction.Length()};
    }
    return PickRay{eye + offset, d / d.Length()};
}

// lineT = where the ray's line meets the plane through point with normal, negative behind the
// ray's origin; false when they are parallel.
inline bool MeetPlane(const PickRay& ray, const Wm4::Vector3<double>& normal,
                      const Wm4::Vector3<double>& point, double& lineT) {
    const double along = normal.Dot(ray.direction);
    if (std::fabs(along) < 1e-12) {
        return false;
    }
    lineT = normal.Dot(point - ray.origin) / along;
    return true;
}

// Where the line of the pick ray through mouse meets the plane through planePoint with the
// given normal, in front of the eye or behind it. The plane must not be parallel to the ray.
inline Wm4::Vector3<float> RayHit(const mxCamera& camera, const Wm4::Vector2<float>& mouse,
                                  const Wm4::Vector3<float>& planePoint,
                                  const Wm4::Vector3<float>& normal) {
    const PickRay ray = PickRayOf(camera, mouse);
    double lineT = 0.0;
    EXPECT_TRUE(MeetPlane(ray, ToDouble(normal), ToDouble(planePoint), lineT))
        << "the ray runs parallel to the plane";
    return ToFloat(ray.origin + ray.direction * lineT);
}

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

    // How far the point under the mouse lies from the press point along arrow, in lengths of
    // arrow: what a scale drag counts.
    double lengthsDragged(const mxCamera& camera, const Wm4::Vector2<float>& mouse,
                          const Wm4::Vector3<double>& arrow) const {
        return (pointUnder(camera, mouse) - pressPoint).Dot(arrow) / arrow.Dot(arrow);
    }
};

// The drag of the axis of frame numbered axisIndex, through centre, pressed at mouse.
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

// The scale triple of a scale drag by factor on axis: factor on that axis and 1 on the others,
// or factor on all three for a uniform scale.
inline Wm4::Vector3<double> ScaleTriple(int axis, double factor, bool uniform) {
    Wm4::Vector3<double> scale = uniform ? Wm4::Vector3<double>(factor, factor, factor)
                                         : Wm4::Vector3<double>(1.0, 1.0, 1.0);
    scale[axis] = factor;
    return scale;
}

// The matrix of the scaling by scale along the columns of frame, F diag(scale) F^T. About a
// centre c the scaling maps x to m x + (c - m c).
inline Wm4::Matrix3<double> ScalingAlong(const Wm4::Matrix3<double>& frame,
                                         const Wm4::Vector3<double>& scale) {
    return frame * Wm4::Matrix3<double>(scale.X(), scale.Y(), scale.Z()) * frame.Transpose();
}

// The transformation x -> m x + t, as a general one.
inline mxGenericTransformation<float> Affine(const Wm4::Matrix3<double>& m,
                                             const Wm4::Vector3<double>& t) {
    mxGenericTransformation<float> out;
    out.SetMatrix(ToFloat(m));
    out.SetTranslate(ToFloat(t));
    return out;
}

// The circle about an axis of a gizmo: its centre, its axis, and e1 = axis + 1, e2 = axis + 2
// of the gizmo's frame spanning its plane (e1 x e2 = axis, so a growing angle turns
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

// The circle of radius about the axis of frame numbered axis, through centre.
inline Circle CircleAbout(const Wm4::Vector3<double>& centre, const Wm4::Matrix3<double>& frame,
                          int axis, double radius) {
    Circle circle;
    circle.centre = centre;
    circle.axis = ColumnOf(frame, axis);
    circle.e1 = ColumnOf(frame, (axis + 1) % 3);
    circle.e2 = ColumnOf(frame, (axis + 2) % 3);
    circle.radius = radius;
    return circle;
}

// ---------------------------------------------------------------------------------------------
// Gizmos and objects

// A gizmo below a scene root, in mode, framed around its reference objects with frame's
// rotation, sized for camera with its default 60 pixels in a csViewHeight-pixel view, and its
// world data updated: as the gizmo controller leaves it at the end of a frame.
struct PlacedGizmo {
    mxPointer<mxNode> root;
    mxGizmoNode* node = nullptr;

    PlacedGizmo(mxGizmoNode::GizmoMode mode, const std::vector<mxSpatial*>& objects)
        : root(new mxNode) {
        node = new mxGizmoNode;
        root->attachChild(node);
        node->setMode(mode);
        node->setReferenceObjects(objects);
    }

    // Frames the node around its objects' centre with rotation, for camera.
    void place(const mxCamera& camera,
               const Wm4::Matrix3<float>& rotation = Wm4::Matrix3<float>::IDENTITY) {
        mxGenericTransformation<float> frame;
        frame.SetRotate(rotation);
        frame.SetTranslate(node->getCenterReferences());
        node->calculateFrameFromObjectWorldTranform(frame, &camera, node->getExpectedPixelSize(),
                                                    csViewHeight);
        root->UpdateGS();
        node->updateCameraFacing(&camera);
        root->UpdateGS();
    }
};

// A reference object at position below parent (or alone when parent is null), its world data
// updated: a mesh whose vertices all sit at its origin, so that its centre is its position.
inline mxPointer<mxMesh> MakeObject(const Wm4::Vector3<float>& position, mxNode* parent = nullptr) {
    mxPointer<mxMesh> object = new mxMesh(3u, 1u);
    object->editLocalTransform(true).SetTranslate(position);
    if (parent) {
        parent->attachChild(object.get());
        parent->UpdateGS();
    } else {
        object->UpdateGS();
    }
    return object;
}

// The local position that puts a child of parent at world; parent is turned and moved, not
// scaled.
inline Wm4::Vector3<float> LocalPositionBelow(const mxNode& parent,
                                              const Wm4::Vector3<float>& world) {
    const mxGenericTransformation<float>& parentWorld = parent.getWorldTransform();
    return ToFloat(ToDouble(parentWorld.GetRotate()).Transpose() *
                   (ToDouble(world) - ToDouble(parentWorld.GetTranslate())));
}

// The world transformations of objects, in order.
inline std::vector<mxGenericTransformation<float>>
WorldsOf(const std::vector<mxPointer<mxMesh>>& objects) {
    std::vector<mxGenericTransformation<float>> worlds;
    for (const auto& object : objects) {
        worlds.push_back(object->getWorldTransform());
    }
    return worlds;
}

// The mean of the positions of worlds: the centre of objects whose bounds have no radius.
inline Wm4::Vector3<double>
MeanPosition(const std::vector<mxGenericTransformation<float>>& worlds) {
    Wm4::Vector3<double> sum(0.0, 0.0, 0.0);
    for (const auto& world : worlds) {
        sum += ToDouble(world.GetTranslate());
    }
    return sum / static_cast<double>(worlds.size());
}

// The standard view in an engine: the eye at (0, 0, 10) looking down -Z, a 90-degree field of
// view over 200 x 200 pixels. A gizmo at the origin stands at pixel (100, 100), and one world
// unit at its depth covers 10 pixels, so its 60-pixel axes are 6 units long and a drag of 20
// pixels along a handle moves the objects by 2 units. The controller is attached and the
// recording listener installed. Fixtures of whole-controller tests derive from it.
class ControllerInEngineTest : public ::testing::Test {
protected:
    ControllerInEngineTest() : camera(MakeStandardCamera()) {
        engine.setCameraNode(new mxCameraNode(camera.get()));
        engine.setViewportSize(csViewWidth, csViewHeight);
        engine.attachController(&controller);
        controller.install3DManipulatorMotionListener(&listener);
    }
    ~ControllerInEngineTest() override { engine.detachController(&controller); }

    // A new gizmo below parent (the scene when null), in mode, around references.
    mxGizmoNode* AddGizmo(mxGizmoNode::GizmoMode mode, const std::vector<mxSpatial*>& references,
                          mxNode* parent = nullptr) {
        mxGizmoNode* added = new mxGizmoNode;
        (parent ? parent : engine.getScene())->attachChild(added);
        added->setMode(mode);
        added->setReferenceObjects(references);
        added->setCullingMode(mxSpatial::CULL_DYNAMIC);
        return added;
    }

    // A new object at position (below parent when given), kept alive by the fixture.
    mxSpatial* AddObject(const Wm4::Vector3<float>& position, mxNode* parent = nullptr) {
        objects.push_back(MakeObject(position, parent));
        return objects.back().get();
    }

    // The window pixel over a point of a gizmo's own frame, as last placed.
    WindowPixel PixelOver(const mxGizmoNode& over, const Wm4::Vector3<float>& local) const {
        return WindowPixelOf(*camera, over.getWorldTransform().ApplyForward(local, true));
    }

    // The controller's public mouse calls at a window pixel of the standard view.
    bool Press(const WindowPixel& pixel) {
        return controller.setMousePressed(camera.get(), pixel.x, pixel.y, csViewWidth,
                                          csViewHeight);
    }
    bool Move(const WindowPixel& pixel) { return controller.setMousePos(pixel.x, pixel.y); }
    bool Release(const WindowPixel& pixel) { return controller.setMouseReleased(pixel.x, pixel.y); }

    std::vector<mxPointer<mxMesh>> objects;
    mxPointer<mxCamera> camera;
    mxEngine engine;
    mxGizmoController controller;
    RecordingListener listener;
};

} // namespace mx::test
