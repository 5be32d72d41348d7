#include "mxSoakScene.h"

#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxScene.h"
#include "wm4/Wm4Matrix3.h"

#include <algorithm>
#include <cmath>

namespace mx::soak {

namespace {

using Vector = Wm4::Vector3<float>;

constexpr double csPi = 3.14159265358979323846;
constexpr float csDegrees = static_cast<float>(csPi / 180.0);
constexpr float csAspect = static_cast<float>(mxSoakScene::csWidth) / mxSoakScene::csHeight;
constexpr float csFovDegrees = 60.0f;
constexpr float csNear = 0.5f;
constexpr float csFar = 500.0f;

Wm4::Matrix3<float> turn(const Vector& axis, float degrees) {
    Vector unit = axis;
    unit.Normalize();
    return Wm4::Matrix3<float>(unit, degrees * csDegrees);
}

// A small triangle about its origin: its bound has a radius, so the gizmo centres on the
// bound's centre.
mxMesh* makeTriangle() {
    mxMesh* mesh = new mxMesh(3u, 1u);
    mesh->setVertexPosition(0, Vector(-0.4f, -0.3f, 0.0f));
    mesh->setVertexPosition(1, Vector(0.5f, -0.2f, 0.1f));
    mesh->setVertexPosition(2, Vector(0.0f, 0.45f, -0.1f));
    mesh->setTriangle(0, 0, 1, 2);
    return mesh;
}

// A mesh whose vertices all sit at its origin: a bound without radius, so the gizmo centres
// on its world translation.
mxMesh* makePoint() {
    return new mxMesh(3u, 1u);
}

mxNode* makeParent(const Wm4::Matrix3<float>& rotation, const Vector& scale,
                   const Vector& translation) {
    mxNode* node = new mxNode();
    mxGenericTransformation<float>& local = node->editLocalTransform(true);
    local.SetRotate(rotation);
    if (scale.X() == scale.Y() && scale.Y() == scale.Z()) {
        local.SetUniformScale(scale.X());
    } else {
        local.SetScale(scale);
    }
    local.SetTranslate(translation);
    return node;
}

} // namespace

mxSoakScene::mxSoakScene()
    : camera(new mxCamera(true)), azimuth(30.0), elevation(20.0), distance(18.0),
      marker(new mxNode()), listener(objects) {
    engine.setViewportSize(csWidth, csHeight);
    engine.setCameraNode(new mxCameraNode(camera.get()));
    setPerspective(true);

    mxNode* scene = engine.getScene();
    // A turned parent scaled differently on each axis: its children's world transformations
    // are general matrices, and undoing it at a drag needs a general inverse.
    parentA = makeParent(turn(Vector(1.0f, 2.0f, 3.0f), 35.0f), Vector(2.0f, 0.5f, 1.0f),
                         Vector(3.0f, -1.0f, -2.0f));
    // A turned parent with a uniform scale.
    parentB = makeParent(turn(Vector(-1.0f, 1.0f, 0.5f), 50.0f), Vector(1.5f, 1.5f, 1.5f),
                         Vector(-2.0f, 2.0f, 1.0f));
    // Nested below parentA: turned and moved, so its world is a general matrix too.
    parentC = makeParent(turn(Vector(0.0f, 1.0f, 1.0f), 70.0f), Vector(1.0f, 1.0f, 1.0f),
                         Vector(-1.0f, 0.5f, 1.5f));
    scene->attachChild(parentA.get());
    scene->attachChild(parentB.get());
    parentA->attachChild(parentC.get());

    mxMesh* triangle = makeTriangle();
    triangle->editLocalTransform(true).SetTranslate(Vector(-3.0f, 0.5f, 0.0f));
    addObject(triangle, scene, "a triangle directly below the scene", false);

    mxMesh* point = makePoint();
    point->editLocalTransform(true).SetTranslate(Vector(2.5f, -1.0f, 1.0f));
    addObject(point, scene, "a point directly below the scene", false);

    triangle = makeTriangle();
    triangle->editLocalTransform(true).SetTranslate(Vector(0.5f, 1.5f, 0.3f));
    addObject(triangle, parentA.get(), "a triangle below the non-uniformly scaled parent", false);

    point = makePoint();
    point->editLocalTransform(true).SetTranslate(Vector(-0.8f, 0.5f, 1.0f));
    addObject(point, parentA.get(), "an excluded point below the non-uniformly scaled parent",
              true);

    triangle = makeTriangle();
    triangle->editLocalTransform(true).SetRotate(turn(Vector(0.0f, 0.0f, 1.0f), 20.0f));
    triangle->editLocalTransform(true).SetTranslate(Vector(1.0f, -0.5f, 0.5f));
    addObject(triangle, parentB.get(), "a turned triangle below the uniformly scaled parent",
              false);

    point = makePoint();
    point->editLocalTransform(true).SetTranslate(Vector(0.5f, 0.5f, -0.5f));
    addObject(point, parentC.get(), "a point below the nested parent", false);

    triangle = makeTriangle();
    triangle->editLocalTransform(true).SetTranslate(Vector(0.0f, -3.0f, -1.0f));
    addObject(triangle, scene, "an excluded triangle directly below the scene", true);

    mxNode* group = new mxNode();
    group->editLocalTransform(true).SetTranslate(Vector(-1.0f, 0.5f, -0.5f));
    mxMesh* child = makeTriangle();
    child->editLocalTransform(true).SetTranslate(Vector(0.4f, 0.0f, 0.0f));
    follower = child;
    group->attachChild(child);
    addObject(group, parentB.get(), "a node with a child, below the uniformly scaled parent",
              false);

    // The gizmos: a translate gizmo over objects below the scene and below parentA; a rotate
    // gizmo over an overlapping set with a null entry; a scale gizmo over the one object below
    // the nested parent, so that its Local frame comes from a general matrix.
    const std::vector<std::vector<int>> references = {{0, 1, 2, 3}, {2, 4, -1, 6, 7}, {5}};
    const mxGizmoNode::GizmoMode modes[csGizmoCount] = {
        mxGizmoNode::GIZMO_TRANSLATE, mxGizmoNode::GIZMO_ROTATE, mxGizmoNode::GIZMO_SCALE};
    const float pixelSizes[csGizmoCount] = {60.0f, 75.0f, 50.0f};
    for (int g = 0; g < csGizmoCount; ++g) {
        mxPointer<mxGizmoNode> gizmo = new mxGizmoNode();
        std::vector<mxSpatial*> entries;
        std::uint32_t moves = 0;
        std::uint32_t refers = 0;
        for (int object : references[static_cast<std::size_t>(g)]) {
            if (object < 0) {
                entries.push_back(nullptr);
                continue;
            }
            entries.push_back(objects[static_cast<std::size_t>(object)]);
            refers |= 1u << object;
            if (!excluded[static_cast<std::size_t>(object)]) {
                moves |= 1u << object;
            }
        }
        gizmo->setReferenceObjects(entries);
        gizmo->setMode(modes[g]);
        gizmo->setExpectedPixelSize(pixelSizes[g]);
        gizmo->setCullingMode(mxSpatial::CULL_DYNAMIC);
        scene->attachChild(gizmo.get());
        gizmos.push_back(gizmo);
        movable.push_back(moves);
        referenced.push_back(refers);
        attached.push_back(true);
    }

    scene->UpdateGS();
    for (mxSpatial* object : objects) {
        initialWorlds.push_back(object->getWorldTransform());
        initialLocals.push_back(object->getLocalTransform());
    }

    controller.setOrientationReference(mxGizmoController::World);
    engine.attachController(&controller);
    controller.install3DManipulatorMotionListener(&listener);
    listener.watchPickedAxes(&controller, {gizmos[0].get(), gizmos[1].get(), gizmos[2].get()});
    // The first frame collects and places the gizmos; the second turns the arrowheads to the
    // eye from where the gizmos now stand.
    engine.updateFrame();
    engine.updateFrame();
}

mxSoakScene::~mxSoakScene() {
    engine.detachController(&controller);
}

void mxSoakScene::addObject(mxSpatial* object, mxNode* parent, const char* description,
                            bool exclude) {
    objectHolders.emplace_back(object);
    parent->attachChild(object);
    if (exclude) {
        object->setStateFlags(object->getStateFlags() | mxSpatial::STATE_EXCLUDED);
    }
    objects.push_back(object);
    descriptions.push_back(description);
    excluded.push_back(exclude);
}

bool mxSoakScene::isExcluded(std::size_t object) const {
    return excluded[object];
}

const char* mxSoakScene::describeObject(std::size_t object) const {
    return descriptions[object];
}

void mxSoakScene::resetObject(std::size_t object) {
    mxSpatial* spatial = objects[object];
    spatial->editLocalTransform(true) = initialLocals[object];
    spatial->UpdateGS();
}

int mxSoakScene::indexOf(const mxGizmoNode* gizmo) const {
    for (std::size_t g = 0; g < gizmos.size(); ++g) {
        if (gizmos[g].get() == gizmo) {
            return static_cast<int>(g);
        }
    }
    return -1;
}

void mxSoakScene::setAttached(int gizmo, bool attach) {
    const std::size_t g = static_cast<std::size_t>(gizmo);
    if (attached[g] == attach) {
        return;
    }
    if (attach) {
        engine.getScene()->attachChild(gizmos[g].get());
    } else {
        // The scene lets go of it; gizmos keeps it alive.
        engine.getScene()->detachChild(gizmos[g].get());
    }
    attached[g] = attach;
}

void mxSoakScene::resetControllers() {
    engine.resetControllers();
    mxNode* scene = engine.getScene();
    scene->attachChild(marker.get());
    scene->detachChild(marker.get());
}

void mxSoakScene::orbit(double azimuthDegrees, double elevationDegrees, double distanceFactor) {
    azimuth = std::fmod(azimuth + azimuthDegrees, 360.0);
    elevation = std::clamp(elevation + elevationDegrees, -75.0, 75.0);
    distance = std::clamp(distance * distanceFactor, 8.0, 30.0);
    aimCamera();
}

void mxSoakScene::setPerspective(bool perspective) {
    camera->setPerspective(perspective);
    aimCamera();
}

void mxSoakScene::aimCamera() {
    const double a = azimuth * csPi / 180.0;
    const double e = elevation * csPi / 180.0;
    const Vector eye(static_cast<float>(distance * std::cos(e) * std::sin(a)),
                     static_cast<float>(distance * std::sin(e)),
                     static_cast<float>(distance * std::cos(e) * std::cos(a)));
    camera->lookAt(eye, Vector(0.0f, 0.0f, 0.0f), Vector(0.0f, 1.0f, 0.0f));
    if (camera->isPerspective()) {
        camera->setFrustum(csFovDegrees, csAspect, csNear, csFar);
    } else {
        const float up = static_cast<float>(distance * std::tan(0.5 * csFovDegrees * csPi / 180.0));
        camera->setFrustum(-csAspect * up, csAspect * up, -up, up, csNear, csFar);
    }
}

bool mxSoakScene::screenPointOf(const Wm4::Vector3<float>& world, double& px, double& py) const {
    // Column-major view-projection (mxCamera.h), worked out in double.
    const float* m = camera->getViewProjectionMatrix();
    const double wx = world.X(), wy = world.Y(), wz = world.Z();
    const double cx = m[0] * wx + m[4] * wy + m[8] * wz + m[12];
    const double cy = m[1] * wx + m[5] * wy + m[9] * wz + m[13];
    const double cw = m[3] * wx + m[7] * wy + m[11] * wz + m[15];
    if (!(cw > 1e-6)) {
        return false;
    }
    px = (cx / cw + 1.0) * 0.5 * csWidth;
    py = (cy / cw + 1.0) * 0.5 * csHeight;
    return std::fabs(px) < 1e8 && std::fabs(py) < 1e8;
}

bool mxSoakScene::windowPixelOf(const Wm4::Vector3<float>& world, int& x, int& y) const {
    double px = 0.0;
    double py = 0.0;
    if (!screenPointOf(world, px, py)) {
        return false;
    }
    // The window pixel whose square holds the point; rows counted from the top.
    x = static_cast<int>(std::floor(px));
    y = csHeight - 1 - static_cast<int>(std::floor(py));
    return true;
}

} // namespace mx::soak
