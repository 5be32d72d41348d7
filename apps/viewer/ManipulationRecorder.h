// ManipulationRecorder: the viewer's motion listener. It turns every drag of the gizmo into a
// ManipulationCommand on the undo stack (the objects' transformations are recorded at the
// Start callback and at the End callback), keeps the callbacks it heard in order for the
// report, and gives the status bar a live readout of the drag in progress.
#pragma once

#include "ManipulationCommand.h"

#include "controller/mx3DManipulatorMotionListener.h"
#include "node/mxGizmoNode.h"

#include <QString>
#include <QUndoStack>

#include <cstdint>
#include <functional>
#include <vector>

namespace viewer {

class ManipulationRecorder : public mx::mx3DManipulatorMotionListener {
public:
    // A callback as heard: its name ("translate start", "translate end", ..., "manipulated"),
    // the frame it came in (the number of frames finished before it), and for an End
    // callback the transformation it passed.
    struct Event {
        QString name;
        std::uint64_t frame = 0;
        bool hasTransformation = false;
        mx::mxGenericTransformation<float> transformation;
    };

    // nameOf gives an object's name for the undo history; frameOf the current frame number.
    ManipulationRecorder(mx::mxGizmoNode& gizmo, QUndoStack& undoStack,
                         std::function<QString(const mx::mxSpatial*)> nameOf,
                         std::function<std::uint64_t()> frameOf);

    void onGizmoManipulated(mx::mxGizmoNode* gizmo) override;
    void onTranslateManipulatorStart() override;
    void
    onTranslateManipulatorEnd(const mx::mxGenericTransformation<float>& transformation) override;
    void onRotateManipulatorStart() override;
    void onRotateManipulatorEnd(const mx::mxGenericTransformation<float>& transformation) override;
    void onScaleManipulatorStart() override;
    void onScaleManipulatorEnd(const mx::mxGenericTransformation<float>& transformation) override;

    const std::vector<Event>& getEvents() const { return events; }
    // Whether a drag is between its Start and End callbacks.
    bool isDragging() const { return dragging; }
    // What the drag in progress did so far to the first object it moves: "move (x, y, z)",
    // "turn a°" or "scale x × y × z"; empty when no drag is in progress.
    QString readout() const;

private:
    void start(ManipulationCommand::Kind kind);
    void end(ManipulationCommand::Kind kind, const mx::mxGenericTransformation<float>& delta);
    void record(const QString& name, const mx::mxGenericTransformation<float>* transformation);

    mx::mxGizmoNode& gizmo;
    QUndoStack& undoStack;
    std::function<QString(const mx::mxSpatial*)> nameOf;
    std::function<std::uint64_t()> frameOf;
    std::vector<Event> events;
    bool dragging;
    ManipulationCommand::Kind dragKind;
    std::vector<ManipulationCommand::Entry> entries;
};

} // namespace viewer
