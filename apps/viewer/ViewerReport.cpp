#include "ViewerReport.h"

#include "ViewerSession.h"

#include "frame/mx3DManipulationVersion.h"

namespace viewer {

namespace {

const char* const csModeNames[4] = {"translate", "rotate", "scale", "none"};

QJsonArray numbers(const Wm4::Vector3<float>& v) {
    return QJsonArray{static_cast<double>(v.X()), static_cast<double>(v.Y()),
                      static_cast<double>(v.Z())};
}

QJsonArray names(const std::vector<const SceneObject*>& objects) {
    QJsonArray list;
    for (const SceneObject* object : objects) {
        list.append(object->name);
    }
    return list;
}

QJsonObject camera(const ViewerSession& session) {
    const OrbitCamera& orbit = session.getOrbit();
    const Wm4::Vector3<double> eye = orbit.getEye();
    const Wm4::Vector3<double>& target = orbit.getTarget();
    QJsonObject object;
    object.insert(QStringLiteral("eye"), QJsonArray{eye.X(), eye.Y(), eye.Z()});
    object.insert(QStringLiteral("target"), QJsonArray{target.X(), target.Y(), target.Z()});
    object.insert(QStringLiteral("up"), QJsonArray{0.0, 1.0, 0.0});
    object.insert(QStringLiteral("perspective"), orbit.isPerspective());
    object.insert(QStringLiteral("fieldOfViewDegrees"), orbit.getFieldOfViewDegrees());
    object.insert(QStringLiteral("near"), orbit.getNear());
    object.insert(QStringLiteral("far"), orbit.getFar());
    // The camera as the library sees it, in single precision.
    const mx::mxCamera& used = session.getCamera();
    object.insert(QStringLiteral("location"), numbers(used.getLocation()));
    object.insert(QStringLiteral("direction"), numbers(used.getDVector()));
    object.insert(QStringLiteral("upVector"), numbers(used.getUVector()));
    object.insert(QStringLiteral("right"), numbers(used.getRVector()));
    object.insert(QStringLiteral("frustum"),
                  QJsonArray{used.getRMin(), used.getRMax(), used.getUMin(), used.getUMax(),
                             used.getDMin(), used.getDMax()});
    return object;
}

QJsonArray events(const ManipulationRecorder& recorder) {
    QJsonArray list;
    for (const ManipulationRecorder::Event& event : recorder.getEvents()) {
        QJsonObject entry;
        entry.insert(QStringLiteral("event"), event.name);
        entry.insert(QStringLiteral("frame"), static_cast<qint64>(event.frame));
        if (event.hasTransformation) {
            entry.insert(QStringLiteral("transformation"),
                         ViewerReport::transformation(event.transformation));
        }
        list.append(entry);
    }
    return list;
}

QJsonObject undo(const QUndoStack& stack) {
    QJsonArray commands;
    for (int i = 0; i < stack.count(); ++i) {
        const auto* command = static_cast<const ManipulationCommand*>(stack.command(i));
        QJsonArray objects;
        for (const ManipulationCommand::Entry& entry : command->getEntries()) {
            QJsonObject object;
            object.insert(QStringLiteral("name"), entry.name);
            object.insert(QStringLiteral("localBefore"),
                          ViewerReport::transformation(entry.localBefore));
            object.insert(QStringLiteral("worldBefore"),
                          ViewerReport::transformation(entry.worldBefore));
            object.insert(QStringLiteral("localAfter"),
                          ViewerReport::transformation(entry.localAfter));
            object.insert(QStringLiteral("worldAfter"),
                          ViewerReport::transformation(entry.worldAfter));
            objects.append(object);
        }
        QJsonObject entry;
        entry.insert(QStringLiteral("text"), command->text());
        entry.insert(QStringLiteral("kind"), ManipulationCommand::kindName(command->getKind()));
        entry.insert(QStringLiteral("delta"), ViewerReport::transformation(command->getDelta()));
        entry.insert(QStringLiteral("objects"), objects);
        commands.append(entry);
    }
    QJsonObject object;
    // Commands below the index are done; the others were undone.
    object.insert(QStringLiteral("index"), stack.index());
    object.insert(QStringLiteral("count"), stack.count());
    object.insert(QStringLiteral("commands"), commands);
    return object;
}

} // namespace

QJsonObject ViewerReport::build(const ViewerSession& session, const QString& scriptName,
                                const QJsonArray& steps, const QStringList& screenshots,
                                const QStringList& logLines) {
    QJsonObject report;
    report.insert(QStringLiteral("program"), QStringLiteral("mx3dviewer"));
    report.insert(
        QStringLiteral("library"),
        QString::fromLatin1(
            mx::mx3DManipulation::Version::GetDescStringMajorMinorReleaseRevision(false, true)));
    report.insert(QStringLiteral("script"), scriptName);
    report.insert(QStringLiteral("viewport"),
                  QJsonObject{{QStringLiteral("width"), session.getViewportWidth()},
                              {QStringLiteral("height"), session.getViewportHeight()}});
    report.insert(QStringLiteral("frames"), static_cast<qint64>(session.getFrameCount()));
    report.insert(QStringLiteral("camera"), camera(session));

    QJsonArray objects;
    for (const SceneObject& object : session.getScene().getObjects()) {
        QJsonObject entry;
        entry.insert(QStringLiteral("name"), object.name);
        entry.insert(QStringLiteral("local"), transformation(object.mesh->getLocalTransform()));
        entry.insert(QStringLiteral("world"), transformation(object.mesh->getWorldTransform()));
        entry.insert(QStringLiteral("boundCenter"),
                     numbers(object.mesh->getWorldBound().getCenter()));
        objects.append(entry);
    }
    report.insert(QStringLiteral("objects"), objects);
    report.insert(QStringLiteral("selection"), names(session.getSelection()));

    const mx::mxGizmoNode& gizmo = session.getGizmo();
    const int mode = gizmo.getMode();
    QJsonObject gizmoEntry;
    gizmoEntry.insert(QStringLiteral("mode"),
                      QLatin1String(csModeNames[mode >= 0 && mode <= 3 ? mode : 3]));
    gizmoEntry.insert(QStringLiteral("orientation"), session.orientationText());
    gizmoEntry.insert(QStringLiteral("expectedPixelSize"),
                      static_cast<double>(gizmo.getExpectedPixelSize()));
    gizmoEntry.insert(QStringLiteral("world"), transformation(gizmo.getWorldTransform()));
    QJsonArray masks;
    for (int m = 0; m < 3; ++m) {
        masks.append(gizmo.getEnabledAxis(static_cast<mx::mxGizmoNode::GizmoMode>(m)));
    }
    gizmoEntry.insert(QStringLiteral("axisMasks"), masks);
    report.insert(QStringLiteral("gizmo"), gizmoEntry);

    report.insert(QStringLiteral("events"), events(session.getRecorder()));
    report.insert(QStringLiteral("undo"), undo(session.getUndoStack()));
    report.insert(QStringLiteral("steps"), steps);
    report.insert(QStringLiteral("screenshots"), QJsonArray::fromStringList(screenshots));
    report.insert(QStringLiteral("log"), QJsonArray::fromStringList(logLines));
    return report;
}

QJsonObject ViewerReport::transformation(const mx::mxGenericTransformation<float>& t) {
    QJsonArray matrix;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            matrix.append(static_cast<double>(t.GetMatrix()(row, column)));
        }
    }
    QJsonObject object;
    object.insert(QStringLiteral("rs"), t.IsRSMatrix());
    object.insert(QStringLiteral("uniform"), t.IsUniformScale());
    object.insert(QStringLiteral("matrix"), matrix);
    object.insert(QStringLiteral("scale"), numbers(t.GetScale()));
    object.insert(QStringLiteral("translate"), numbers(t.GetTranslate()));
    return object;
}

} // namespace viewer
