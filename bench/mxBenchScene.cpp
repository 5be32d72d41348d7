#include "mxBenchScene.h"

#include "wm4/Wm4Matrix3.h"

#include <cmath>

namespace mx::bench {

namespace {

using Vector = Wm4::Vector3<float>;

constexpr int csWidth = 1280;
constexpr int csHeight = 720;
// Apart enough that neighbouring gizmos (60 pixels) never overlap on screen.
constexpr float csSpacing = 4.0f;
// How far off the handle the near miss lies, in pixels: beyond the pick tolerance of 10.
constexpr float csMissPixels = 14.0f;
constexpr float csDegrees = 3.14159265358979f / 180.0f;

// A small triangle, the kind of object a user drags around.
mxMesh* makeTriangle(const Vector& position) {
    mxMesh* mesh = new mxMesh(3, 1);
    mesh->setVertexPosition(0, Vector(-0.5f, -0.5f, 0.0f));
    mesh->setVertexPosition(1, Vector(0.5f, -0.5f, 0.0f));
    mesh->setVertexPosition(2, Vector(0.0f, 0.5f, 0.0f));
    mesh->setTriangle(0, 0, 1, 2);
    mesh->editLocalTransform(true).SetTranslate(position);
    return mesh;
}

// The point at degrees on the circle about axis, radius 1, as the rotate gizmo draws it.
Vector onCircle(int axis, float degrees) {
    const float c = std::cos(degrees * csDegrees);
    const float s = std::sin(degrees * csDegrees);
    switch (axis) {
    case 0:
        return Vector(0.0f, c, s);
    case 1:
        return Vector(c, 0.0f, s);
    default:
        return Vector(c, s, 0.0f);
    }
}

Wm4::Vector2<float> unit(const Wm4::Vector2<float>& v) {
    return v / v.Length();
}

} // namespace

mxBenchScene::mxBenchScene(mxGizmoNode::GizmoMode mode,
                           mxGizmoController::OrientationReference reference, int gizmoCount,
                           int objectsPerGizmo)
    : mode(mode), context(&engine), camera(new mxCamera(true)),
      cameraNode(new mxCameraNode(camera.get())),
      parent(new mxNode()), nearMiss{0, 0}, handle{0, 0}, moves{{0, 0}, {0, 0}}, nextMove(0),
      circleAxis(2), width(csWidth), height(csHeight) {
    engine.setViewportSize(width, height);
    camera->setFrustum(45.0f, static_cast<float>(width) / height, 0.5f, 5000.0f);
    engine.setCameraNode(cameraNode.get());

    // The parent: turned about an oblique axis, so that a Local gizmo is turned on all three
    // axes.
    Vector axis(0.3f, 1.0f, 0.2f);
    axis.Normalize();
    const Wm4::Matrix3<float> turn(axis, 30.0f * csDegrees);
    parent->editLocalTransform(true).SetRotate(turn);
    parent->editLocalTransform(true).SetTranslate(Vector(0.0f, 0.0f, -5.0f));
    engine.getScene()->attachChild(parent.get());

    // The objects on a square grid in the parent's xy plane, the first at its centre.
    const int total = gizmoCount * objectsPerGizmo;
    const int side = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(total))));
    objects.reserve(static_cast<std::size_t>(total));
    for (int k = 0; k < total; ++k) {
        const int column = (k % side + side / 2) % side - side / 2;
        const int row = (k / side + side / 2) % side - side / 2;
        objects.push_back(makeTriangle(Vector(csSpacing * column, csSpacing * row, 0.0f)));
        parent->attachChild(objects.back().get());
    }

    // The gizmos, each around its share of the objects.
    for (int g = 0; g < gizmoCount; ++g) {
        mxPointer<mxGizmoNode> gizmo = new mxGizmoNode();
        engine.getScene()->attachChild(gizmo.get());
        gizmo->setMode(mode);
        std::vector<mxSpatial*> share;
        for (int k = 0; k < objectsPerGizmo; ++k) {
            share.push_back(objects[static_cast<std::size_t>(g * objectsPerGizmo + k)].get());
        }
        gizmo->setReferenceObjects(share);
        gizmo->setCullingMode(mxSpatial::CULL_DYNAMIC);
        gizmos.push_back(gizmo);
    }
    controller.setOrientationReference(reference);
    engine.attachController(&controller);

    aimCamera();
    // The first frame collects and places the gizmos; the second turns the arrowheads to the
    // eye from where the gizmos now stand.
    engine.updateFrame();
    engine.updateFrame();
    findPixels();
}

mxBenchScene::~mxBenchScene() {
    engine.detachController(&controller);
}

void mxBenchScene::aimCamera() {
    engine.getScene()->UpdateGS();
    const Vector target = gizmos.front()->getCenterReferences();
    camera->lookAt(target + Vector(0.0f, 3.5f, 16.0f), target, Vector(0.0f, 1.0f, 0.0f));
}

mxBenchScene::Pixel mxBenchScene::windowPixelOf(const Wm4::Vector2<float>& screen) const {
    // The controller takes pixel (x, y) at its centre, (x + 0.5, height - y - 0.5).
    return Pixel{static_cast<int>(std::lround(screen.X() - 0.5f)),
                 static_cast<int>(std::lround(static_cast<float>(height) - screen.Y() - 0.5f))};
}

Wm4::Vector2<float> mxBenchScene::screenOf(const Vector& local) const {
    const Vector world = gizmos.front()->getWorldTransform().ApplyForward(local, true);
    const float* m = camera->getViewProjectionMatrix();
    const float cx = m[0] * world.X() + m[4] * world.Y() + m[8] * world.Z() + m[12];
    const float cy = m[1] * world.X() + m[5] * world.Y() + m[9] * world.Z() + m[13];
    const float cw = m[3] * world.X() + m[7] * world.Y() + m[11] * world.Z() + m[15];
    return Wm4::Vector2<float>((cx / cw + 1.0f) * 0.5f * static_cast<float>(width),
                               (cy / cw + 1.0f) * 0.5f * static_cast<float>(height));
}

Wm4::Vector2<float> mxBenchScene::handleOnScreen(float along) const {
    if (mode == mxGizmoNode::GIZMO_ROTATE) {
        return screenOf(onCircle(circleAxis, along));
    }
    return screenOf(Vector(along, 0.0f, 0.0f));
}

void mxBenchScene::findPixels() {
    const Wm4::Vector2<float> centre = screenOf(Vector::ZERO);
    Wm4::Vector2<float> miss;
    if (mode == mxGizmoNode::GIZMO_ROTATE) {
        // The circle seen most nearly face-on: its normal runs closest to the line of sight.
        const mxGenericTransformation<float>& frame = gizmos.front()->getWorldTransform();
        const Vector sight = frame.GetTranslate() - camera->getLocation();
        float best = -1.0f;
        for (int axis = 0; axis < 3; ++axis) {
            Vector normal = frame.GetRotate().GetColumn(axis);
            const float facing = std::fabs(normal.Dot(sight)) / normal.Length();
            if (facing > best) {
                best = facing;
                circleAxis = axis;
            }
        }
        // Outside that circle, across it from its centre at 45 degrees.
        const Wm4::Vector2<float> onCircle = handleOnScreen(45.0f);
        miss = onCircle + csMissPixels * unit(onCircle - centre);
        handle = windowPixelOf(onCircle);
        moves[0] = windowPixelOf(handleOnScreen(75.0f));
        moves[1] = windowPixelOf(handleOnScreen(105.0f));
    } else {
        // Beside the middle of the X shaft, on the side away from the Y shaft.
        const Wm4::Vector2<float> alongX = unit(screenOf(Vector::UNIT_X) - centre);
        const Wm4::Vector2<float> alongY = unit(screenOf(Vector::UNIT_Y) - centre);
        Wm4::Vector2<float> across(-alongX.Y(), alongX.X());
        if (across.Dot(alongY) > 0.0f) {
            across = -across;
        }
        miss = handleOnScreen(0.5f) + csMissPixels * across;
        // Translate: along the shaft; scale: on the end square.
        const bool scale = mode == mxGizmoNode::GIZMO_SCALE;
        handle = windowPixelOf(handleOnScreen(scale ? 1.0f : 0.6f));
        moves[0] = windowPixelOf(handleOnScreen(scale ? 1.3f : 0.9f));
        moves[1] = windowPixelOf(handleOnScreen(scale ? 1.6f : 1.2f));
    }
    nearMiss = windowPixelOf(miss);
    if (pressNearMiss()) {
        problem = "the near miss hits a gizmo";
    }
}

void mxBenchScene::idleFrame() {
    controller.updateController(&context);
}

void mxBenchScene::hoverFrame() {
    controller.setMousePos(nearMiss.x, nearMiss.y);
    controller.updateController(&context);
}

bool mxBenchScene::pressNearMiss() {
    const bool hit =
        controller.setMousePressed(camera.get(), nearMiss.x, nearMiss.y, width, height);
    controller.clearControllerEvents();
    return hit;
}

void mxBenchScene::startDrag() {
    mxGizmoNode* gizmo = gizmos.front().get();
    if (!controller.setMousePressed(camera.get(), handle.x, handle.y, width, height)) {
        problem = "the press misses the handle";
        return;
    }
    engine.updateFrame();
    const int expected = mode == mxGizmoNode::GIZMO_ROTATE ? circleAxis : 0;
    if (controller.getPickedAxeIndex(gizmo) != expected) {
        problem = "the press picks another axis";
        return;
    }
    const mxGenericTransformation<float> before = objects.front()->getWorldTransform();
    dragMove();
    if (objects.front()->getWorldTransform() == before) {
        problem = "the first move leaves the objects where they were";
    }
}

void mxBenchScene::dragMove() {
    const Pixel& to = moves[nextMove];
    nextMove = 1 - nextMove;
    controller.setMousePos(to.x, to.y);
    engine.updateFrame();
}

} // namespace mx::bench
