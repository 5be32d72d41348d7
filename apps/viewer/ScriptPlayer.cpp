#include "ScriptPlayer.h"

#include "MainWindow.h"
#include "ViewerReport.h"
#include "ViewerSession.h"
#include "ViewportWidget.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QMouseEvent>

#include <cmath>

namespace viewer {

namespace {

constexpr double csPi = 3.14159265358979323846;

const char* const csModeNames[3] = {"translate", "rotate", "scale"};

QJsonArray pair(double x, double y) {
    return QJsonArray{x, y};
}

QJsonArray triple(const Wm4::Vector3<double>& v) {
    return QJsonArray{v.X(), v.Y(), v.Z()};
}

Wm4::Vector3<double> vector(const std::array<double, 3>& v) {
    return Wm4::Vector3<double>(v[0], v[1], v[2]);
}

Wm4::Vector3<double> toDouble(const Wm4::Vector3<float>& v) {
    return Wm4::Vector3<double>(v.X(), v.Y(), v.Z());
}

// The point of circle axis of the rotate gizmo at angle a (radians), in gizmo units: circle 0
// runs through (0, cos a, sin a), circle 1 through (sin a, 0, cos a), circle 2 through
// (cos a, sin a, 0).
Wm4::Vector3<float> circlePoint(int axis, double a) {
    const float c = static_cast<float>(std::cos(a));
    const float s = static_cast<float>(std::sin(a));
    switch (axis) {
    case 0:
        return Wm4::Vector3<float>(0.0f, c, s);
    case 1:
        return Wm4::Vector3<float>(s, 0.0f, c);
    default:
        return Wm4::Vector3<float>(c, s, 0.0f);
    }
}

// The angle of circle axis whose point lies nearest a point p given in gizmo units.
double nearestAngle(int axis, const Wm4::Vector3<float>& p) {
    switch (axis) {
    case 0:
        return std::atan2(p.Z(), p.Y());
    case 1:
        return std::atan2(p.X(), p.Z());
    default:
        return std::atan2(p.Y(), p.X());
    }
}

} // namespace

ScriptPlayer::ScriptPlayer(ViewerSession& session, MainWindow& window)
    : session(session), window(window),
      mousePosition(session.getViewportWidth() / 2.0, session.getViewportHeight() / 2.0),
      buttonsHeld(0), lastPressed(Qt::LeftButton) {}

bool ScriptPlayer::play(const ViewerScript& script, QString& error) {
    stepRecords = QJsonArray();
    screenshots.clear();
    for (const ScriptStep& step : script.steps) {
        QJsonObject record;
        record.insert(QStringLiteral("step"), step.number);
        record.insert(QStringLiteral("action"), ViewerScript::kindName(step.kind));
        if (!playStep(step, record, error)) {
            return false;
        }
        record.insert(QStringLiteral("frame"), static_cast<qint64>(session.getFrameCount()));
        stepRecords.append(record);
    }
    return true;
}

bool ScriptPlayer::playStep(const ScriptStep& step, QJsonObject& record, QString& error) {
    switch (step.kind) {
    case ScriptStep::KEY: {
        const QKeySequence keys(
            QKeyCombination(Qt::KeyboardModifiers(step.modifiers), Qt::Key(step.key)));
        record.insert(QStringLiteral("key"), keys.toString(QKeySequence::PortableText));
        record.insert(QStringLiteral("bound"), window.triggerShortcut(keys));
        return true;
    }
    case ScriptStep::SELECT: {
        std::vector<const SceneObject*> objects;
        for (const QString& name : step.objects) {
            const SceneObject* object = session.getScene().find(name);
            if (!object) {
                error =
                    ViewerScript::stepError(step, QStringLiteral("select"),
                                            QStringLiteral("no object is called \"%1\"").arg(name));
                return false;
            }
            objects.push_back(object);
        }
        session.select(objects);
        return true;
    }
    case ScriptStep::PRESS:
    case ScriptStep::MOVE:
    case ScriptStep::RELEASE:
    case ScriptStep::CLICK: {
        QPointF pixel;
        if (!resolve(step, pixel, record, error)) {
            return false;
        }
        record.insert(QStringLiteral("pixel"), pair(pixel.x(), pixel.y()));
        // Where the gizmo was when the step was played, for whoever checks the drag.
        record.insert(QStringLiteral("gizmo"),
                      ViewerReport::transformation(session.getGizmo().getWorldTransform()));
        int button = step.button;
        if (step.kind == ScriptStep::RELEASE && button == 0) {
            button = lastPressed;
        }
        if (step.kind == ScriptStep::PRESS || step.kind == ScriptStep::CLICK) {
            sendMouse(QEvent::MouseButtonPress, pixel, button, step.modifiers);
        }
        if (step.kind == ScriptStep::MOVE) {
            sendMouse(QEvent::MouseMove, pixel, Qt::NoButton, step.modifiers);
        }
        if (step.kind == ScriptStep::RELEASE || step.kind == ScriptStep::CLICK) {
            sendMouse(QEvent::MouseButtonRelease, pixel, button, step.modifiers);
        }
        return true;
    }
    case ScriptStep::CAMERA:
        playCamera(step.camera);
        record.insert(QStringLiteral("eye"), triple(session.getOrbit().getEye()));
        record.insert(QStringLiteral("target"), triple(session.getOrbit().getTarget()));
        return true;
    case ScriptStep::FRAMES:
        for (int i = 0; i < step.frames; ++i) {
            session.runFrame();
        }
        return true;
    case ScriptStep::SCREENSHOT: {
        QImage image = window.getViewport().grabFramebuffer();
        if (image.isNull()) {
            error = ViewerScript::stepError(step, QStringLiteral("screenshot"),
                                            QStringLiteral("the view could not be captured"));
            return false;
        }
        const QString file = step.name + QStringLiteral(".png");
        record.insert(QStringLiteral("file"), file);
        screenshots.emplace_back(file, image);
        return true;
    }
    }
    return true;
}

bool ScriptPlayer::resolve(const ScriptStep& step, QPointF& pixel, QJsonObject& record,
                           QString& error) const {
    const ScriptTarget& target = step.target;
    Wm4::Vector3<double> world;
    switch (target.kind) {
    case ScriptTarget::CURRENT:
        pixel = mousePosition;
        return true;
    case ScriptTarget::PIXEL:
        pixel = target.pixel + target.offset;
        pixel = QPointF(std::round(pixel.x()), std::round(pixel.y()));
        return true;
    case ScriptTarget::HANDLE:
        if (!resolveHandle(step, world, record, error)) {
            return false;
        }
        break;
    case ScriptTarget::OBJECT: {
        const SceneObject* object = session.getScene().find(target.object);
        if (!object) {
            error = ViewerScript::stepError(
                step, ViewerScript::kindName(step.kind) + QStringLiteral(".object"),
                QStringLiteral("no object is called \"%1\"").arg(target.object));
            return false;
        }
        world = toDouble(object->mesh->getWorldBound().getCenter());
        break;
    }
    case ScriptTarget::WORLD:
        world = vector(target.world);
        break;
    }
    record.insert(QStringLiteral("world"), triple(world));
    if (!session.project(world, pixel)) {
        error = ViewerScript::stepError(step, ViewerScript::kindName(step.kind),
                                        QStringLiteral("the target is behind the camera"));
        return false;
    }
    pixel += target.offset;
    pixel = QPointF(std::round(pixel.x()), std::round(pixel.y()));
    return true;
}

bool ScriptPlayer::resolveHandle(const ScriptStep& step, Wm4::Vector3<double>& world,
                                 QJsonObject& record, QString& error) const {
    const ScriptTarget& target = step.target;
    const mx::mxGizmoNode& gizmo = session.getGizmo();
    const QString field = ViewerScript::kindName(step.kind) + QStringLiteral(".handle");
    if (gizmo.getMode() != target.handleMode) {
        error = ViewerScript::stepError(
            step, field,
            gizmo.getMode() == mx::mxGizmoNode::GIZMO_NONE
                ? QStringLiteral("no gizmo is shown (nothing selected, or no gizmo chosen)")
                : QStringLiteral("the gizmo shown is the %1 gizmo")
                      .arg(QLatin1String(csModeNames[gizmo.getMode()])));
        return false;
    }
    // The gizmo's geometry is in gizmo units, placed by the node's world transformation.
    const mx::mxGenericTransformation<float>& placement = gizmo.getWorldTransform();
    Wm4::Vector3<float> local = Wm4::Vector3<float>::ZERO;
    if (target.handleMode == mx::mxGizmoNode::GIZMO_ROTATE) {
        double angle = target.angle * csPi / 180.0;
        if (!target.hasAngle) {
            // The point of the circle nearest the eye, on the half that faces it.
            mx::mxGenericTransformation<float> inverse;
            placement.Inverse(inverse);
            angle = nearestAngle(target.handleAxis,
                                 inverse.ApplyForward(session.getCamera().getLocation(), true));
        }
        angle += target.turn * csPi / 180.0;
        record.insert(QStringLiteral("angle"), angle * 180.0 / csPi);
        local = circlePoint(target.handleAxis, angle);
    } else {
        // The middle of a translate arrow's shaft, or the end square of a scale axis.
        const double base = target.handleMode == mx::mxGizmoNode::GIZMO_TRANSLATE ? 0.6 : 1.0;
        local[target.handleAxis] = static_cast<float>(base + target.along);
    }
    world = toDouble(placement.ApplyForward(local, true));
    return true;
}

void ScriptPlayer::sendMouse(int type, const QPointF& pixel, int button, int modifiers) {
    ViewportWidget& viewport = window.getViewport();
    if (type == QEvent::MouseButtonPress) {
        buttonsHeld |= button;
        lastPressed = button;
    } else if (type == QEvent::MouseButtonRelease) {
        buttonsHeld &= ~button;
    }
    QMouseEvent event(static_cast<QEvent::Type>(type), pixel, viewport.mapToGlobal(pixel),
                      Qt::MouseButton(button), Qt::MouseButtons(buttonsHeld),
                      Qt::KeyboardModifiers(modifiers));
    QCoreApplication::sendEvent(&viewport, &event);
    mousePosition = pixel;
}

void ScriptPlayer::playCamera(const ScriptCamera& camera) {
    switch (camera.kind) {
    case ScriptCamera::HOME:
        session.resetCamera();
        break;
    case ScriptCamera::ORBIT:
        session.orbitCamera(camera.first, camera.second);
        break;
    case ScriptCamera::PAN:
        session.panCamera(camera.first, camera.second);
        break;
    case ScriptCamera::ZOOM:
        session.zoomCamera(camera.first);
        break;
    case ScriptCamera::PERSPECTIVE:
        session.setPerspective(camera.perspective);
        break;
    case ScriptCamera::FRAME:
        session.frameSelection();
        break;
    case ScriptCamera::LOOK_AT:
        session.lookAt(vector(camera.eye), vector(camera.target));
        break;
    }
}

} // namespace viewer
