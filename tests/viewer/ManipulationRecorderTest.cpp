// The viewer's motion listener, driven through its callbacks as the gizmo controller calls
// them: a Start records the gizmo's objects, the End pushes one undo step holding the delta and
// the objects' states around the drag, every callback is kept with its frame, and the status
// bar's readout tells what the drag in progress did.
//
// The objects are meshes whose vertices sit at their origin, placed away from the origin and
// from each other (a at (1, 0, 0), b at (0, 2, 0), c at (0, 0, 3)); drags move them the way the
// drag controllers do, through the gizmo's recorded start transformations.
#include "ManipulationRecorder.h"
#include "ManipulationCommand.h"

#include "controller/mxControllerTestSupport.h"
#include "node/mxGizmoNode.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxPointer.h"
#include "support/mxTestGeometry.h"
#include "support/mxTransformCompare.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector3.h"

#include <QString>
#include <QUndoStack>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace {

using viewer::ManipulationCommand;
using viewer::ManipulationRecorder;
using Vec3 = Wm4::Vector3<float>;
using Xform = mx::mxGenericTransformation<float>;
using mx::test::BitwiseEqual;
using mx::test::MakeObject;
using mx::test::Rotation;

constexpr float csPi = 3.14159265358979323846f;

Xform Translation(float x, float y, float z) {
    Xform t;
    t.SetTranslate(Vec3(x, y, z));
    return t;
}

// A gizmo over some of the objects a, b and c (refer), a recorder on it, the undo stack it fills,
// and a frame number the test sets. Names are the objects' letters.
struct Rig {
    mx::mxPointer<mx::mxGizmoNode> gizmo = new mx::mxGizmoNode;
    mx::mxPointer<mx::mxMesh> a = MakeObject(Vec3(1.0f, 0.0f, 0.0f));
    mx::mxPointer<mx::mxMesh> b = MakeObject(Vec3(0.0f, 2.0f, 0.0f));
    mx::mxPointer<mx::mxMesh> c = MakeObject(Vec3(0.0f, 0.0f, 3.0f));
    QUndoStack stack;
    std::uint64_t frame = 0;
    ManipulationRecorder recorder{*gizmo, stack,
                                  [this](const mx::mxSpatial* object) { return nameOf(object); },
                                  [this] { return frame; }};

    void refer(const std::vector<mx::mxSpatial*>& references) {
        gizmo->setReferenceObjects(references);
    }

    QString nameOf(const mx::mxSpatial* object) const {
        if (object == a.get()) {
            return QStringLiteral("a");
        }
        if (object == b.get()) {
            return QStringLiteral("b");
        }
        return object == c.get() ? QStringLiteral("c") : QStringLiteral("?");
    }

    // Moves the gizmo's objects to delta times their world transformations from now on.
    void startMoving() { gizmo->storeOriginalTransform(); }
    void moveBy(const Xform& delta) { gizmo->applyWorldTransformForReferencedObjects(delta); }

    const ManipulationCommand* command(int index) const {
        return static_cast<const ManipulationCommand*>(stack.command(index));
    }

    std::vector<QString> eventNames() const {
        std::vector<QString> names;
        for (const ManipulationRecorder::Event& event : recorder.getEvents()) {
            names.push_back(event.name);
        }
        return names;
    }
};

std::vector<QString> Names(std::initializer_list<const char*> names) {
    std::vector<QString> out;
    for (const char* name : names) {
        out.push_back(QString::fromUtf8(name));
    }
    return out;
}

TEST(ManipulationRecorderTest, StartThenEndPushesOneCommandWithTheDeltaAndBothStates) {
    Rig rig;
    rig.refer({rig.a.get(), rig.b.get()});
    const Xform aLocal = rig.a->getLocalTransform();
    const Xform aWorld = rig.a->getWorldTransform();
    const Xform bWorld = rig.b->getWorldTransform();
    const Xform delta = Translation(1.0f, 0.0f, 0.0f);

    rig.recorder.onTranslateManipulatorStart();
    rig.startMoving();
    rig.moveBy(delta);
    rig.recorder.onTranslateManipulatorEnd(delta);

    ASSERT_EQ(rig.stack.count(), 1);
    const ManipulationCommand* command = rig.command(0);
    EXPECT_EQ(command->getKind(), ManipulationCommand::TRANSLATE);
    EXPECT_TRUE(BitwiseEqual(command->getDelta(), delta));
    EXPECT_EQ(command->text(), QStringLiteral("Translate 2 objects"));
    ASSERT_EQ(command->getEntries().size(), 2u);
    const ManipulationCommand::Entry& first = command->getEntries()[0];
    EXPECT_EQ(first.object.get(), rig.a.get());
    EXPECT_EQ(first.name, QStringLiteral("a"));
    EXPECT_TRUE(BitwiseEqual(first.localBefore, aLocal));
    EXPECT_TRUE(BitwiseEqual(first.worldBefore, aWorld));
    EXPECT_TRUE(BitwiseEqual(first.localAfter, rig.a->getLocalTransform()));
    EXPECT_TRUE(BitwiseEqual(first.worldAfter, rig.a->getWorldTransform()));
    const ManipulationCommand::Entry& second = command->getEntries()[1];
    EXPECT_EQ(second.object.get(), rig.b.get());
    EXPECT_EQ(second.name, QStringLiteral("b"));
    EXPECT_TRUE(BitwiseEqual(second.worldBefore, bWorld));
    EXPECT_TRUE(BitwiseEqual(second.worldAfter, rig.b->getWorldTransform()));
    // The push leaves the objects where the drag put them.
    EXPECT_TRUE(BitwiseEqual(rig.a->getWorldTransform(), Translation(2.0f, 0.0f, 0.0f)));
}

TEST(ManipulationRecorderTest, UndoOfTheRecordedDragPutsTheObjectBack) {
    Rig rig;
    rig.refer({rig.a.get()});
    const Xform aWorld = rig.a->getWorldTransform();

    rig.recorder.onTranslateManipulatorStart();
    rig.startMoving();
    rig.moveBy(Translation(0.0f, 0.5f, 0.0f));
    rig.recorder.onTranslateManipulatorEnd(Translation(0.0f, 0.5f, 0.0f));
    rig.stack.undo();

    EXPECT_TRUE(BitwiseEqual(rig.a->getWorldTransform(), aWorld));
}

TEST(ManipulationRecorderTest, IsDraggingOnlyBetweenStartAndEnd) {
    Rig rig;
    rig.refer({rig.a.get()});
    EXPECT_FALSE(rig.recorder.isDragging());
    rig.recorder.onRotateManipulatorStart();
    EXPECT_TRUE(rig.recorder.isDragging());
    rig.recorder.onRotateManipulatorEnd(Xform());
    EXPECT_FALSE(rig.recorder.isDragging());
}

TEST(ManipulationRecorderTest, ScalePressHeardAsTranslateStartThenScaleStartGivesAScaleCommand) {
    Rig rig;
    rig.refer({rig.a.get()});
    Xform delta;
    mx::mxGizmoNode::ComputeHomotheticTransform(
        Vec3(2.0f, 2.0f, 2.0f), Wm4::Matrix3<float>::IDENTITY, Vec3(1.0f, 0.0f, 0.0f), delta);

    rig.recorder.onTranslateManipulatorStart();
    rig.recorder.onScaleManipulatorStart();
    rig.startMoving();
    rig.moveBy(delta);
    rig.recorder.onScaleManipulatorEnd(delta);

    ASSERT_EQ(rig.stack.count(), 1);
    EXPECT_EQ(rig.command(0)->getKind(), ManipulationCommand::SCALE);
    EXPECT_EQ(rig.command(0)->text(), QStringLiteral("Scale a"));
    // The objects are recorded again, not twice.
    EXPECT_EQ(rig.command(0)->getEntries().size(), 1u);
    EXPECT_EQ(rig.eventNames(), Names({"translate start", "scale start", "scale end"}));
}

TEST(ManipulationRecorderTest, EndWithoutStartIsRecordedButPushesNothing) {
    Rig rig;
    rig.refer({rig.a.get()});
    const Xform delta = Translation(1.0f, 0.0f, 0.0f);
    rig.startMoving();
    rig.moveBy(delta);

    rig.recorder.onTranslateManipulatorEnd(delta);

    EXPECT_EQ(rig.stack.count(), 0);
    ASSERT_EQ(rig.recorder.getEvents().size(), 1u);
    EXPECT_EQ(rig.recorder.getEvents()[0].name, QStringLiteral("translate end"));
    EXPECT_TRUE(rig.recorder.getEvents()[0].hasTransformation);
    EXPECT_TRUE(BitwiseEqual(rig.recorder.getEvents()[0].transformation, delta));
}

TEST(ManipulationRecorderTest, DragThatMovedNothingPushesNothing) {
    Rig rig;
    rig.refer({rig.a.get(), rig.b.get()});

    rig.recorder.onTranslateManipulatorStart();
    rig.startMoving();
    rig.moveBy(Xform());
    rig.recorder.onTranslateManipulatorEnd(Xform());

    EXPECT_EQ(rig.stack.count(), 0);
    EXPECT_FALSE(rig.recorder.isDragging());
    EXPECT_EQ(rig.eventNames(), Names({"translate start", "translate end"}));
}

TEST(ManipulationRecorderTest, ExcludedObjectsAndNullEntriesAreLeftOut) {
    Rig rig;
    rig.refer({rig.a.get(), nullptr, rig.b.get(), rig.c.get()});
    rig.b->setStateFlags(mx::mxSpatial::STATE_EXCLUDED);
    const Xform delta = Translation(0.0f, 0.0f, -1.0f);

    rig.recorder.onTranslateManipulatorStart();
    rig.startMoving();
    rig.moveBy(delta);
    rig.recorder.onTranslateManipulatorEnd(delta);

    ASSERT_EQ(rig.stack.count(), 1);
    const std::vector<ManipulationCommand::Entry>& entries = rig.command(0)->getEntries();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].object.get(), rig.a.get());
    EXPECT_EQ(entries[1].object.get(), rig.c.get());
}

TEST(ManipulationRecorderTest, TheObjectsOfTheStartAreTheOnesRecorded) {
    Rig rig;
    rig.refer({rig.a.get()});
    const Xform delta = Translation(1.0f, 0.0f, 0.0f);

    rig.recorder.onTranslateManipulatorStart();
    rig.startMoving();
    rig.moveBy(delta);
    rig.gizmo->setReferenceObjects({rig.b.get()});
    rig.recorder.onTranslateManipulatorEnd(delta);

    ASSERT_EQ(rig.stack.count(), 1);
    ASSERT_EQ(rig.command(0)->getEntries().size(), 1u);
    EXPECT_EQ(rig.command(0)->getEntries()[0].object.get(), rig.a.get());
}

TEST(ManipulationRecorderTest, EventsKeepTheirNamesFramesAndTheEndTransformation) {
    Rig rig;
    rig.refer({rig.a.get()});
    Xform delta;
    mx::mxGizmoNode::ComputeRotation(Vec3(0.0f, 0.0f, 1.0f), csPi / 2.0f, Vec3(1.0f, 0.0f, 0.0f),
                                     delta);

    rig.frame = 3;
    rig.recorder.onRotateManipulatorStart();
    rig.frame = 4;
    rig.recorder.onGizmoManipulated(rig.gizmo.get());
    rig.frame = 6;
    rig.recorder.onRotateManipulatorEnd(delta);

    const std::vector<ManipulationRecorder::Event>& events = rig.recorder.getEvents();
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(events[0].name, QStringLiteral("rotate start"));
    EXPECT_EQ(events[0].frame, 3u);
    EXPECT_FALSE(events[0].hasTransformation);
    EXPECT_EQ(events[1].name, QStringLiteral("manipulated"));
    EXPECT_EQ(events[1].frame, 4u);
    EXPECT_FALSE(events[1].hasTransformation);
    EXPECT_EQ(events[2].name, QStringLiteral("rotate end"));
    EXPECT_EQ(events[2].frame, 6u);
    EXPECT_TRUE(events[2].hasTransformation);
    EXPECT_TRUE(BitwiseEqual(events[2].transformation, delta));
}

TEST(ManipulationRecorderTest, ReadoutIsEmptyWhenNoDragIsInProgress) {
    Rig rig;
    rig.refer({rig.a.get()});
    EXPECT_TRUE(rig.recorder.readout().isEmpty());

    rig.recorder.onTranslateManipulatorStart();
    rig.startMoving();
    rig.moveBy(Translation(1.0f, 0.0f, 0.0f));
    rig.recorder.onTranslateManipulatorEnd(Translation(1.0f, 0.0f, 0.0f));

    EXPECT_TRUE(rig.recorder.readout().isEmpty());
}

TEST(ManipulationRecorderTest, ReadoutOfAMoveByOneInXShowsItWithThreeDecimals) {
    Rig rig;
    rig.refer({rig.a.get()});
    rig.recorder.onTranslateManipulatorStart();
    EXPECT_EQ(rig.recorder.readout(), QStringLiteral("move (0.000, 0.000, 0.000)"));

    rig.startMoving();
    rig.moveBy(Translation(1.0f, 0.0f, 0.0f));

    EXPECT_EQ(rig.recorder.readout(), QStringLiteral("move (1.000, 0.000, 0.000)"));
}

TEST(ManipulationRecorderTest, ReadoutOfAQuarterTurnIsNinetyDegreesAboutAnyAxis) {
    const Vec3 axes[] = {Vec3(1.0f, 0.0f, 0.0f), Vec3(0.0f, 1.0f, 0.0f), Vec3(0.0f, 0.0f, 1.0f),
                         Vec3(1.0f, 1.0f, 1.0f) / std::sqrt(3.0f)};
    for (const Vec3& axis : axes) {
        Rig rig;
        rig.refer({rig.a.get()});
        // Turned to begin with, so that the readout measures the turn, not the orientation.
        rig.a->editLocalTransform(true).SetRotate(Rotation(1, 0, 0, csPi / 6.0f));
        rig.a->UpdateGS();
        Xform delta;
        mx::mxGizmoNode::ComputeRotation(axis, csPi / 2.0f, Vec3(1.0f, 0.0f, 0.0f), delta);

        rig.recorder.onRotateManipulatorStart();
        rig.startMoving();
        rig.moveBy(delta);

        EXPECT_EQ(rig.recorder.readout(), QString::fromUtf8("turn 90.0\u00b0"))
            << "axis (" << axis.X() << ", " << axis.Y() << ", " << axis.Z() << ")";
    }
}

TEST(ManipulationRecorderTest, ReadoutOfAScaleGivesTheFactorAlongEachOfTheObjectsOwnAxes) {
    Rig rig;
    rig.refer({rig.a.get()});
    // Turned 30 degrees about y: its own axes are not the world's.
    const Wm4::Matrix3<float> own = Rotation(0, 1, 0, csPi / 6.0f);
    rig.a->editLocalTransform(true).SetRotate(own);
    rig.a->UpdateGS();
    Xform delta;
    mx::mxGizmoNode::ComputeHomotheticTransform(Vec3(2.0f, 1.0f, 0.5f), own, Vec3(1.0f, 0.0f, 0.0f),
                                                delta);

    rig.recorder.onScaleManipulatorStart();
    rig.startMoving();
    rig.moveBy(delta);

    EXPECT_EQ(rig.recorder.readout(), QString::fromUtf8("scale 2.000 \u00d7 1.000 \u00d7 0.500"));
}

} // namespace
