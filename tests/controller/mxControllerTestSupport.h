// Helpers shared by the drag controller tests: a listener that records what it hears, the
// standard view, a gizmo placed in it, and the conversions between world points, pixels and
// the normalised mouse positions the controllers take. Header-only; everything lives in
// namespace mx::test.
//
// The standard view: the eye at (0, 0, 10) looking down -Z with +Y up (so right is +X), a
// 90-degree vertical field of view, aspect 1, near 1, far 100, over a 200 x 200 viewport. The
// centre ray is exactly -Z, the origin projects to pixel (100, 100), and at depth 10 one world
// unit covers 10 pixels.
#pragma once

#include "controller/mx3DManipulatorMotionListener.h"
#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
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
// Pick rays worked out in double from the camera's frame and frustum alone, to compute what a
// drag should give independently of the code under test.

inline Wm4::Vector3<double> ToDouble(const Wm4::Vector3<float>& v) {
    return Wm4::Vector3<double>(v.X(), v.Y(), v.Z());
}

inline Wm4::Vector3<float> ToFloat(const Wm4::Vector3<double>& v) {
    return Wm4::Vector3<float>(static_cast<float>(v.X()), static_cast<float>(v.Y()),
                               static_cast<float>(v.Z()));
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

} // namespace mx::test
