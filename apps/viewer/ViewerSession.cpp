#include "ViewerSession.h"

#include "mx3DManipulation.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxScene.h"
#include "wm4/Wm4Math.h"
#include "wm4/Wm4Matrix3.h"

#include <algorithm>
#include <cmath>

namespace viewer {

namespace {

// Selected objects are shown lighter: their colour a third of the way to white.
Wm4::ColorRGB selectedShade(const Wm4::ColorRGB& color) {
    return Wm4::ColorRGB(color.R() + (1.0f - color.R()) / 3.0f,
                         color.G() + (1.0f - color.G()) / 3.0f,
                         color.B() + (1.0f - color.B()) / 3.0f);
}

Wm4::Vector3<double> toDouble(const Wm4::Vector3<float>& v) {
    return Wm4::Vector3<double>(v.X(), v.Y(), v.Z());
}

} // namespace

ViewerSession::ViewerSession()
    : camera(new mx::mxCamera(true)), mode(mx::mxGizmoNode::GIZMO_TRANSLATE), viewportWidth(960),
      viewportHeight(600) {
    mx::initialize3DManipulationLibrary();
    engine.setCameraNode(new mx::mxCameraNode(camera.get()));
    scene = std::make_unique<DemoScene>(*engine.getScene());

    gizmo = new mx::mxGizmoNode();
    gizmo->SetName("gizmo");
    // A new gizmo node is hidden until the application shows it; from then on its mode
    // decides what it draws. Its handles stay visible through the objects they move.
    gizmo->setCullingMode(mx::mxSpatial::CULL_DYNAMIC);
    gizmo->setOverlay(true);
    engine.getScene()->attachChild(gizmo.get());

    // The custom orientation: turned 45 degrees about the vertical.
    mx::mxGenericTransformation<float> custom;
    Wm4::Matrix3<float> turn;
    turn.MakeRotation(Wm4::Vector3<float>::UNIT_Y, 45.0f * Wm4::Math<float>::DEG_TO_RAD);
    custom.SetRotate(turn);
    controller.setCustomTransformation(custom);

    recorder = std::make_unique<ManipulationRecorder>(
        *gizmo, undoStack, [this](const mx::mxSpatial* object) { return nameOf(object); },
        [this] { return engine.getFrameCount(); });
    controller.install3DManipulatorMotionListener(recorder.get());
    engine.attachController(&controller);
    connect(&undoStack, &QUndoStack::indexChanged, this, &ViewerSession::changed);

    applyCamera();
    engine.updateFrame();
}

ViewerSession::~ViewerSession() {
    engine.detachController(&controller);
    controller.uninstall3DManipulatorMotionListener(recorder.get());
    // Commands hold objects of the scene: let them go while the library is still up.
    undoStack.clear();
    mx::terminate3DManipulationLibrary();
}

void ViewerSession::setViewportSize(int width, int height) {
    if (width <= 0 || height <= 0) {
        return;
    }
    viewportWidth = width;
    viewportHeight = height;
    applyCamera();
}

void ViewerSession::runFrame() {
    engine.updateFrame();
    emit changed();
}

void ViewerSession::select(const std::vector<const SceneObject*>& objects) {
    selection.clear();
    for (const SceneObject* object : objects) {
        if (object && std::find(selection.begin(), selection.end(), object) == selection.end()) {
            selection.push_back(object);
        }
    }
    std::vector<mx::mxSpatial*> references;
    for (const SceneObject* object : selection) {
        references.push_back(object->mesh.get());
    }
    gizmo->setReferenceObjects(references);
    highlightSelection();
    showGizmo();
    emit changed();
}

const SceneObject* ViewerSession::objectAt(const QPointF& pixel) const {
    // The pick ray of the pixel's centre, measured from the lower left as the camera wants.
    const float x = static_cast<float>((pixel.x() + 0.5) / viewportWidth);
    const float y = static_cast<float>((viewportHeight - pixel.y() - 0.5) / viewportHeight);
    Wm4::Vector3<float> origin;
    Wm4::Vector3<float> direction;
    if (!camera->getPickRay(x, y, origin, direction)) {
        return nullptr;
    }
    const SceneObject* nearest = nullptr;
    float nearestT = 0.0f;
    for (const SceneObject& object : scene->getObjects()) {
        float t = 0.0f;
        if (object.mesh->intersectRay(origin, direction, t) && (!nearest || t < nearestT)) {
            nearest = &object;
            nearestT = t;
        }
    }
    return nearest;
}

void ViewerSession::clickAt(const QPointF& pixel, bool toggle) {
    const SceneObject* hit = objectAt(pixel);
    if (!toggle) {
        select(hit ? std::vector<const SceneObject*>{hit} : std::vector<const SceneObject*>{});
        return;
    }
    if (!hit) {
        return;
    }
    std::vector<const SceneObject*> objects = selection;
    const auto found = std::find(objects.begin(), objects.end(), hit);
    if (found != objects.end()) {
        objects.erase(found);
    } else {
        objects.push_back(hit);
    }
    select(objects);
}

void ViewerSession::setMode(mx::mxGizmoNode::GizmoMode newMode) {
    mode = newMode;
    showGizmo();
    emit changed();
}

void ViewerSession::setOrientation(mx::mxGizmoController::OrientationReference reference) {
    controller.setOrientationReference(reference);
    emit changed();
}

void ViewerSession::toggleSnapToAxis() {
    gizmo->setSnapRotationToAxis(!gizmo->shouldSnapRotationToAxis());
    emit changed();
}

void ViewerSession::toggleUniformScale() {
    gizmo->setUseUniformScale(!gizmo->shouldUseUniformScale());
    emit changed();
}

void ViewerSession::toggleNearFarRestriction() {
    gizmo->restrictPositionBetweenNearFar(!gizmo->shouldRestrictPositionBetweenNearFar());
    emit changed();
}

void ViewerSession::toggleAxis(int axis) {
    if (axis < 0 || axis > 2 || mode == mx::mxGizmoNode::GIZMO_NONE) {
        return;
    }
    const unsigned char mask = gizmo->getEnabledAxis(mode);
    gizmo->setEnabledAxis(mode, static_cast<unsigned char>(mask ^ (1u << axis)));
    // Setting a mask shows that mode's lines: with nothing selected they must stay hidden.
    showGizmo();
    emit changed();
}

void ViewerSession::changeExpectedPixelSize(float delta) {
    gizmo->setExpectedPixelSize(std::clamp(gizmo->getExpectedPixelSize() + delta, 20.0f, 300.0f));
    emit changed();
}

void ViewerSession::orbitCamera(double yawDegrees, double pitchDegrees) {
    orbit.orbit(yawDegrees, pitchDegrees);
    applyCamera();
}

void ViewerSession::panCamera(double dx, double dy) {
    orbit.pan(dx, dy, viewportHeight);
    applyCamera();
}

void ViewerSession::zoomCamera(double notches) {
    orbit.zoom(notches);
    applyCamera();
}

bool ViewerSession::lookAt(const Wm4::Vector3<double>& eye, const Wm4::Vector3<double>& target) {
    const bool done = orbit.lookAt(eye, target);
    applyCamera();
    return done;
}

void ViewerSession::setPerspective(bool perspective) {
    orbit.setPerspective(perspective);
    applyCamera();
}

void ViewerSession::frameSelection() {
    if (selection.empty()) {
        return;
    }
    // The sphere around the selected objects' bounds.
    Wm4::Vector3<double> low = toDouble(selection.front()->mesh->getWorldBound().getCenter());
    Wm4::Vector3<double> high = low;
    for (const SceneObject* object : selection) {
        const mx::mxBoundingVolume& bound = object->mesh->getWorldBound();
        const Wm4::Vector3<double> centre = toDouble(bound.getCenter());
        for (int i = 0; i < 3; ++i) {
            low[i] = std::min(low[i], centre[i] - bound.getRadius());
            high[i] = std::max(high[i], centre[i] + bound.getRadius());
        }
    }
    orbit.frame((low + high) * 0.5, (high - low).Length() * 0.5);
    applyCamera();
}

void ViewerSession::resetCamera() {
    orbit.reset();
    applyCamera();
}

bool ViewerSession::project(const Wm4::Vector3<double>& world, QPointF& pixel) const {
    // Clip coordinates from the column-major view-projection matrix.
    const float* m = camera->getViewProjectionMatrix();
    double clip[4];
    for (int row = 0; row < 4; ++row) {
        clip[row] =
            m[row] * world.X() + m[4 + row] * world.Y() + m[8 + row] * world.Z() + m[12 + row];
    }
    if (!(clip[3] > 0.0)) {
        return false;
    }
    // Normalised view coordinates from the lower left, then the pixel the library reads
    // there: it takes pixel x to (x + 0.5) / width and row y to (height - y - 0.5) / height.
    const double nx = (clip[0] / clip[3] + 1.0) / 2.0;
    const double ny = (clip[1] / clip[3] + 1.0) / 2.0;
    pixel = QPointF(nx * viewportWidth - 0.5, viewportHeight - 0.5 - ny * viewportHeight);
    return std::isfinite(pixel.x()) && std::isfinite(pixel.y());
}

QString ViewerSession::nameOf(const mx::mxSpatial* object) const {
    for (const SceneObject& candidate : scene->getObjects()) {
        if (candidate.mesh.get() == object) {
            return candidate.name;
        }
    }
    return QString();
}

QString ViewerSession::modeText() const {
    switch (mode) {
    case mx::mxGizmoNode::GIZMO_TRANSLATE:
        return tr("Translate");
    case mx::mxGizmoNode::GIZMO_ROTATE:
        return tr("Rotate");
    case mx::mxGizmoNode::GIZMO_SCALE:
        return tr("Scale");
    default:
        return tr("No gizmo");
    }
}

QString ViewerSession::orientationText() const {
    switch (controller.getOrientationReference()) {
    case mx::mxGizmoController::Local:
        return tr("Local");
    case mx::mxGizmoController::World:
        return tr("World");
    case mx::mxGizmoController::View:
        return tr("View");
    case mx::mxGizmoController::Custom:
        return tr("Custom");
    default:
        return tr("Custom (alt)");
    }
}

void ViewerSession::applyCamera() {
    orbit.apply(*camera, viewportWidth, viewportHeight);
    engine.setViewportSize(viewportWidth, viewportHeight);
    emit changed();
}

void ViewerSession::showGizmo() {
    gizmo->setMode(selection.empty() ? mx::mxGizmoNode::GIZMO_NONE : mode);
}

void ViewerSession::highlightSelection() {
    for (const SceneObject& object : scene->getObjects()) {
        const bool selected =
            std::find(selection.begin(), selection.end(), &object) != selection.end();
        object.mesh->setColor(selected ? selectedShade(object.color) : object.color);
    }
}

} // namespace viewer
