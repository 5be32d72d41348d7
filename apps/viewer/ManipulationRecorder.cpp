#include "ManipulationRecorder.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace viewer {

ManipulationRecorder::ManipulationRecorder(mx::mxGizmoNode& gizmo, QUndoStack& undoStack,
                                           std::function<QString(const mx::mxSpatial*)> nameOf,
                                           std::function<std::uint64_t()> frameOf)
    : mx::mx3DManipulatorMotionListener(), gizmo(gizmo), undoStack(undoStack),
      nameOf(std::move(nameOf)), frameOf(std::move(frameOf)), dragging(false),
      dragKind(ManipulationCommand::TRANSLATE) {}

void ManipulationRecorder::onGizmoManipulated(mx::mxGizmoNode*) {
    record(QStringLiteral("manipulated"), nullptr);
}

void ManipulationRecorder::onTranslateManipulatorStart() {
    start(ManipulationCommand::TRANSLATE);
}

void ManipulationRecorder::onTranslateManipulatorEnd(
    const mx::mxGenericTransformation<float>& transformation) {
    end(ManipulationCommand::TRANSLATE, transformation);
}

void ManipulationRecorder::onRotateManipulatorStart() {
    start(ManipulationCommand::ROTATE);
}

void ManipulationRecorder::onRotateManipulatorEnd(
    const mx::mxGenericTransformation<float>& transformation) {
    end(ManipulationCommand::ROTATE, transformation);
}

void ManipulationRecorder::onScaleManipulatorStart() {
    start(ManipulationCommand::SCALE);
}

void ManipulationRecorder::onScaleManipulatorEnd(
    const mx::mxGenericTransformation<float>& transformation) {
    end(ManipulationCommand::SCALE, transformation);
}

void ManipulationRecorder::start(ManipulationCommand::Kind kind) {
    // A scale press is announced as a translate start followed by a scale start: the later
    // start decides the kind, and the objects are recorded again, unchanged.
    record(ManipulationCommand::kindName(kind) + QStringLiteral(" start"), nullptr);
    dragging = true;
    dragKind = kind;
    entries.clear();
    for (mx::mxSpatial* object : gizmo.getReferenceObjects()) {
        if (!object || (object->getStateFlags() & mx::mxSpatial::STATE_EXCLUDED) != 0) {
            continue;
        }
        ManipulationCommand::Entry entry;
        entry.object = object;
        entry.name = nameOf(object);
        entry.localBefore = object->getLocalTransform();
        entry.worldBefore = object->getWorldTransform();
        entries.push_back(std::move(entry));
    }
}

void ManipulationRecorder::end(ManipulationCommand::Kind kind,
                               const mx::mxGenericTransformation<float>& delta) {
    record(ManipulationCommand::kindName(kind) + QStringLiteral(" end"), &delta);
    if (!dragging) {
        return;
    }
    dragging = false;
    for (ManipulationCommand::Entry& entry : entries) {
        entry.localAfter = entry.object->getLocalTransform();
        entry.worldAfter = entry.object->getWorldTransform();
    }
    // A drag that moved nothing leaves no step in the history.
    const bool moved = std::any_of(entries.begin(), entries.end(), [](const auto& entry) {
        return entry.localAfter != entry.localBefore || entry.worldAfter != entry.worldBefore;
    });
    if (moved) {
        undoStack.push(new ManipulationCommand(dragKind, delta, std::move(entries)));
    }
    entries.clear();
}

void ManipulationRecorder::record(const QString& name,
                                  const mx::mxGenericTransformation<float>* transformation) {
    Event event;
    event.name = name;
    event.frame = frameOf();
    if (transformation) {
        event.hasTransformation = true;
        event.transformation = *transformation;
    }
    events.push_back(std::move(event));
}

QString ManipulationRecorder::readout() const {
    if (!dragging || entries.empty()) {
        return QString();
    }
    const ManipulationCommand::Entry& entry = entries.front();
    const mx::mxGenericTransformation<float>& now = entry.object->getWorldTransform();
    switch (dragKind) {
    case ManipulationCommand::TRANSLATE: {
        const Wm4::Vector3<float> moved = now.GetTranslate() - entry.worldBefore.GetTranslate();
        return QStringLiteral("move (%1, %2, %3)")
            .arg(moved.X(), 0, 'f', 3)
            .arg(moved.Y(), 0, 'f', 3)
            .arg(moved.Z(), 0, 'f', 3);
    }
    case ManipulationCommand::ROTATE: {
        // The turn between the two orientations: the angle of M M0^-1 from its trace.
        const Wm4::Matrix3<float> turn =
            now.GetFullMatrix() * entry.worldBefore.GetFullMatrix().Inverse();
        const float cosine =
            std::clamp((turn(0, 0) + turn(1, 1) + turn(2, 2) - 1.0f) / 2.0f, -1.0f, 1.0f);
        return QStringLiteral("turn %1°").arg(std::acos(cosine) * 180.0f / 3.14159265f, 0, 'f', 1);
    }
    case ManipulationCommand::SCALE: {
        // How much longer each of the object's own axes became.
        const Wm4::Matrix3<float> before = entry.worldBefore.GetFullMatrix();
        const Wm4::Matrix3<float> after = now.GetFullMatrix();
        QStringList factors;
        for (int column = 0; column < 3; ++column) {
            const Wm4::Vector3<float> a(after(0, column), after(1, column), after(2, column));
            const Wm4::Vector3<float> b(before(0, column), before(1, column), before(2, column));
            const float length = b.Length();
            factors << QString::number(length > 0.0f ? a.Length() / length : 0.0f, 'f', 3);
        }
        return QStringLiteral("scale ") + factors.join(QStringLiteral(" × "));
    }
    }
    return QString();
}

} // namespace viewer
