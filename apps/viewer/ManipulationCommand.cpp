#include "ManipulationCommand.h"

#include <utility>

namespace viewer {

ManipulationCommand::ManipulationCommand(Kind kind, const mx::mxGenericTransformation<float>& delta,
                                         std::vector<Entry> movedEntries)
    : kind(kind), delta(delta), entries(std::move(movedEntries)), done(true) {
    const QString verb = kindName(kind);
    const QString what = entries.size() == 1 ? entries.front().name
                                             : QStringLiteral("%1 objects").arg(entries.size());
    setText(QStringLiteral("%1%2 %3").arg(verb.left(1).toUpper(), verb.mid(1), what));
}

void ManipulationCommand::undo() {
    restore(false);
    done = false;
}

void ManipulationCommand::redo() {
    if (done) {
        return;
    }
    restore(true);
    done = true;
}

QString ManipulationCommand::kindName(Kind kind) {
    switch (kind) {
    case TRANSLATE:
        return QStringLiteral("translate");
    case ROTATE:
        return QStringLiteral("rotate");
    case SCALE:
        return QStringLiteral("scale");
    }
    return QString();
}

void ManipulationCommand::restore(bool after) {
    // Every object keeps the world transformation written here (recomputing it from the local
    // one could round differently from the one recorded) while the updates bring what lies
    // below it up to date; all are written before any is updated, so that an object below
    // another moved object is not recomputed from its parent.
    for (const Entry& entry : entries) {
        entry.object->editLocalTransform(false) = after ? entry.localAfter : entry.localBefore;
        entry.object->editWorldTransform(false) = after ? entry.worldAfter : entry.worldBefore;
        entry.object->forceIgnore(true, false, false);
    }
    for (const Entry& entry : entries) {
        entry.object->UpdateGS();
    }
    for (const Entry& entry : entries) {
        entry.object->forceIgnore(false, false, false);
    }
}

} // namespace viewer
