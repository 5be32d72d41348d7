// ManipulationCommand: one drag of the gizmo on the undo stack. It holds, for every object the
// drag moved, the local and world transformations from before the drag and from after it, and
// the transformation the drag reported at its end. Undo and redo write those transformations
// back exactly, so undoing restores every object bit for bit.
#pragma once

#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxPointer.h"
#include "scenegraph/mxSpatial.h"

#include <QString>
#include <QUndoCommand>

#include <vector>

namespace viewer {

class ManipulationCommand : public QUndoCommand {
public:
    enum Kind { TRANSLATE, ROTATE, SCALE };

    // An object's transformations around the drag.
    struct Entry {
        mx::mxPointer<mx::mxSpatial> object;
        QString name;
        mx::mxGenericTransformation<float> localBefore;
        mx::mxGenericTransformation<float> worldBefore;
        mx::mxGenericTransformation<float> localAfter;
        mx::mxGenericTransformation<float> worldAfter;
    };

    // The drag has already happened when the command is made: the first redo (the one
    // QUndoStack::push runs) leaves the objects as they are.
    ManipulationCommand(Kind kind, const mx::mxGenericTransformation<float>& delta,
                        std::vector<Entry> entries);

    void undo() override;
    void redo() override;

    Kind getKind() const { return kind; }
    const mx::mxGenericTransformation<float>& getDelta() const { return delta; }
    const std::vector<Entry>& getEntries() const { return entries; }

    // "translate", "rotate" or "scale".
    static QString kindName(Kind kind);

private:
    // Writes the transformations from after the drag (after true) or from before it back.
    void restore(bool after);

    Kind kind;
    mx::mxGenericTransformation<float> delta;
    std::vector<Entry> entries;
    bool done;
};

} // namespace viewer
