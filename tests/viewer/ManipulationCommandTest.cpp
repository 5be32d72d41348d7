// The viewer's undo step for one drag: pushing it changes nothing (the drag has happened), undo
// and redo write the recorded local and world transformations back bit for bit, the objects
// below follow, and a parent and its child in one step each get their own recorded state back.
//
// The recorded world transformations are nudged by hand in their last bits, so that they differ
// from what an update would compute from the parent and the local transformation: only a world
// that is written, not recomputed, comes back equal.
#include "ManipulationCommand.h"

#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxPointer.h"
#include "support/mxTestGeometry.h"
#include "support/mxTransformCompare.h"
#include "wm4/Wm4Vector3.h"

#include <QString>
#include <QUndoStack>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace {

using viewer::ManipulationCommand;
using Entry = ManipulationCommand::Entry;
using Vec3 = Wm4::Vector3<float>;
using Xform = mx::mxGenericTransformation<float>;
using mx::test::BitwiseEqual;
using mx::test::Rotation;

constexpr float csPi = 3.14159265358979323846f;

Xform Placement(const Vec3& translate, const Wm4::Matrix3<float>& rotate) {
    Xform t;
    t.SetRotate(rotate);
    t.SetTranslate(translate);
    return t;
}

// t with the x of its translation moved up by one unit in the last place.
Xform Nudged(const Xform& t) {
    Xform out = t;
    Vec3 translate = t.GetTranslate();
    translate.X() = std::nextafter(translate.X(), std::numeric_limits<float>::infinity());
    out.SetTranslate(translate);
    return out;
}

// What an update gives a child with local transformation local below parentWorld.
Xform Below(const Xform& parentWorld, const Xform& local) {
    Xform world;
    world.Product(parentWorld, local);
    return world;
}

// An entry with the object's current transformations as its before-states.
Entry Before(mx::mxSpatial* object, const char* name) {
    Entry entry;
    entry.object = object;
    entry.name = QString::fromUtf8(name);
    entry.localBefore = object->getLocalTransform();
    entry.worldBefore = Nudged(object->getWorldTransform());
    return entry;
}

// Completes entry with the object's current transformations as its after-states.
void After(Entry& entry) {
    entry.localAfter = entry.object->getLocalTransform();
    entry.worldAfter = Nudged(entry.object->getWorldTransform());
}

// A root turned 30 degrees about z and moved to (1, 2, 3), so that products round; below it
// the dragged node at (0.5, 0.25, 0) turned 20 degrees about x, and below that a mesh one unit
// along its x axis, which follows its parent. The drag moves the node by +2 in x and turns it
// a quarter about y.
struct DraggedNode {
    mx::mxPointer<mx::mxNode> root = new mx::mxNode;
    mx::mxPointer<mx::mxNode> node = new mx::mxNode;
    mx::mxPointer<mx::mxMesh> below = new mx::mxMesh(3u, 1u);
    Entry entry;

    DraggedNode() {
        root->editLocalTransform(true) =
            Placement(Vec3(1.0f, 2.0f, 3.0f), Rotation(0, 0, 1, csPi / 6.0f));
        node->editLocalTransform(true) =
            Placement(Vec3(0.5f, 0.25f, 0.0f), Rotation(1, 0, 0, csPi / 9.0f));
        below->editLocalTransform(true).SetTranslate(Vec3(1.0f, 0.0f, 0.0f));
        root->attachChild(node.get());
        node->attachChild(below.get());
        root->UpdateGS();
        entry = Before(node.get(), "cube");
        node->editLocalTransform(true) =
            Placement(Vec3(2.5f, 0.25f, 0.0f), Rotation(0, 1, 0, csPi / 2.0f));
        root->UpdateGS();
        After(entry);
    }

    std::vector<Entry> entries() const { return {entry}; }
};

TEST(ManipulationCommandTest, PushRunsTheFirstRedoWithoutWritingAnything) {
    DraggedNode scene;
    const Xform local = scene.node->getLocalTransform();
    const Xform world = scene.node->getWorldTransform();
    const Xform belowWorld = scene.below->getWorldTransform();
    ASSERT_FALSE(BitwiseEqual(world, scene.entry.worldAfter)) << "the nudge must show";

    QUndoStack stack;
    stack.push(new ManipulationCommand(ManipulationCommand::TRANSLATE, Xform(), scene.entries()));

    EXPECT_EQ(stack.count(), 1);
    EXPECT_TRUE(BitwiseEqual(scene.node->getLocalTransform(), local));
    EXPECT_TRUE(BitwiseEqual(scene.node->getWorldTransform(), world));
    EXPECT_TRUE(BitwiseEqual(scene.below->getWorldTransform(), belowWorld));
}

TEST(ManipulationCommandTest, UndoWritesTheLocalAndWorldFromBeforeBackBitForBit) {
    DraggedNode scene;
    ASSERT_FALSE(BitwiseEqual(scene.entry.worldBefore,
                              Below(scene.root->getWorldTransform(), scene.entry.localBefore)))
        << "the recorded world must differ from the recomputed one";
    QUndoStack stack;
    stack.push(new ManipulationCommand(ManipulationCommand::TRANSLATE, Xform(), scene.entries()));

    stack.undo();

    EXPECT_TRUE(BitwiseEqual(scene.node->getLocalTransform(), scene.entry.localBefore));
    EXPECT_TRUE(BitwiseEqual(scene.node->getWorldTransform(), scene.entry.worldBefore));
}

TEST(ManipulationCommandTest, UndoBringsTheObjectsBelowToTheRestoredWorld) {
    DraggedNode scene;
    const Xform movedBelow = scene.below->getWorldTransform();
    QUndoStack stack;
    stack.push(new ManipulationCommand(ManipulationCommand::TRANSLATE, Xform(), scene.entries()));

    stack.undo();

    const Xform expected = Below(scene.entry.worldBefore, scene.below->getLocalTransform());
    EXPECT_TRUE(BitwiseEqual(scene.below->getWorldTransform(), expected));
    EXPECT_FALSE(BitwiseEqual(scene.below->getWorldTransform(), movedBelow));
}

TEST(ManipulationCommandTest, UndoLeavesNoObjectKeepingItsWorld) {
    // A kept world would make every later drag of the object invisible.
    DraggedNode scene;
    QUndoStack stack;
    stack.push(new ManipulationCommand(ManipulationCommand::TRANSLATE, Xform(), scene.entries()));

    stack.undo();
    EXPECT_FALSE(scene.node->isIgnored());
    stack.redo();
    EXPECT_FALSE(scene.node->isIgnored());
}

TEST(ManipulationCommandTest, RedoAfterUndoWritesTheAfterStatesBitForBit) {
    DraggedNode scene;
    QUndoStack stack;
    stack.push(new ManipulationCommand(ManipulationCommand::TRANSLATE, Xform(), scene.entries()));
    stack.undo();

    stack.redo();

    EXPECT_TRUE(BitwiseEqual(scene.node->getLocalTransform(), scene.entry.localAfter));
    EXPECT_TRUE(BitwiseEqual(scene.node->getWorldTransform(), scene.entry.worldAfter));
    const Xform expected = Below(scene.entry.worldAfter, scene.below->getLocalTransform());
    EXPECT_TRUE(BitwiseEqual(scene.below->getWorldTransform(), expected));
}

TEST(ManipulationCommandTest, UndoAndRedoCanBeRepeated) {
    DraggedNode scene;
    QUndoStack stack;
    stack.push(new ManipulationCommand(ManipulationCommand::TRANSLATE, Xform(), scene.entries()));

    for (int round = 0; round < 3; ++round) {
        stack.undo();
        EXPECT_TRUE(BitwiseEqual(scene.node->getWorldTransform(), scene.entry.worldBefore))
            << "round " << round;
        stack.redo();
        EXPECT_TRUE(BitwiseEqual(scene.node->getWorldTransform(), scene.entry.worldAfter))
            << "round " << round;
    }
}

// A root at (1, 2, 3) turned 45 degrees about y; below it a parent at (0, 1, 0) and below that a
// child at (1, 0, 0), both dragged in one step: the parent moves by +1 in z, the child turns a
// quarter about z. Every recorded world is nudged, so the child's recorded world differs from the
// one its restored parent would give it.
struct DraggedPair {
    mx::mxPointer<mx::mxNode> root = new mx::mxNode;
    mx::mxPointer<mx::mxNode> parent = new mx::mxNode;
    mx::mxPointer<mx::mxMesh> child = new mx::mxMesh(3u, 1u);
    Entry parentEntry;
    Entry childEntry;

    DraggedPair() {
        root->editLocalTransform(true) =
            Placement(Vec3(1.0f, 2.0f, 3.0f), Rotation(0, 1, 0, csPi / 4.0f));
        parent->editLocalTransform(true).SetTranslate(Vec3(0.0f, 1.0f, 0.0f));
        child->editLocalTransform(true).SetTranslate(Vec3(1.0f, 0.0f, 0.0f));
        root->attachChild(parent.get());
        parent->attachChild(child.get());
        root->UpdateGS();
        parentEntry = Before(parent.get(), "parent");
        childEntry = Before(child.get(), "child");
        parent->editLocalTransform(true).SetTranslate(Vec3(0.0f, 1.0f, 1.0f));
        child->editLocalTransform(true) =
            Placement(Vec3(1.0f, 0.0f, 0.0f), Rotation(0, 0, 1, csPi / 2.0f));
        root->UpdateGS();
        After(parentEntry);
        After(childEntry);
    }

    void expectBefore() const {
        EXPECT_TRUE(BitwiseEqual(parent->getLocalTransform(), parentEntry.localBefore));
        EXPECT_TRUE(BitwiseEqual(parent->getWorldTransform(), parentEntry.worldBefore));
        EXPECT_TRUE(BitwiseEqual(child->getLocalTransform(), childEntry.localBefore));
        EXPECT_TRUE(BitwiseEqual(child->getWorldTransform(), childEntry.worldBefore));
    }

    void expectAfter() const {
        EXPECT_TRUE(BitwiseEqual(parent->getLocalTransform(), parentEntry.localAfter));
        EXPECT_TRUE(BitwiseEqual(parent->getWorldTransform(), parentEntry.worldAfter));
        EXPECT_TRUE(BitwiseEqual(child->getLocalTransform(), childEntry.localAfter));
        EXPECT_TRUE(BitwiseEqual(child->getWorldTransform(), childEntry.worldAfter));
    }

    // Pushes one step holding the entries in the order listed, then undoes and redoes it,
    // expecting both objects at their recorded states each time.
    void expectUndoAndRedoOf(const std::vector<Entry>& listed) {
        ASSERT_FALSE(BitwiseEqual(childEntry.worldBefore,
                                  Below(parentEntry.worldBefore, childEntry.localBefore)));
        QUndoStack stack;
        stack.push(new ManipulationCommand(ManipulationCommand::TRANSLATE, Xform(), listed));

        stack.undo();
        expectBefore();
        stack.redo();
        expectAfter();
    }
};

TEST(ManipulationCommandTest, ParentListedBeforeItsChildBothGetTheirOwnRecordedStatesBack) {
    DraggedPair scene;
    scene.expectUndoAndRedoOf({scene.parentEntry, scene.childEntry});
}

TEST(ManipulationCommandTest, ChildListedBeforeItsParentBothGetTheirOwnRecordedStatesBack) {
    DraggedPair scene;
    scene.expectUndoAndRedoOf({scene.childEntry, scene.parentEntry});
}

TEST(ManipulationCommandTest, OneObjectIsNamedInTheText) {
    DraggedNode scene;
    const ManipulationCommand command(ManipulationCommand::TRANSLATE, Xform(), scene.entries());
    EXPECT_EQ(command.text(), QStringLiteral("Translate cube"));
}

TEST(ManipulationCommandTest, TwoObjectsAreCountedInTheText) {
    DraggedPair scene;
    const ManipulationCommand command(ManipulationCommand::ROTATE, Xform(),
                                      {scene.parentEntry, scene.childEntry});
    EXPECT_EQ(command.text(), QStringLiteral("Rotate 2 objects"));
}

TEST(ManipulationCommandTest, ScaleOfOneObjectReadsScaleAndItsName) {
    DraggedNode scene;
    const ManipulationCommand command(ManipulationCommand::SCALE, Xform(), scene.entries());
    EXPECT_EQ(command.text(), QStringLiteral("Scale cube"));
}

TEST(ManipulationCommandTest, KindNamesAreLowerCaseVerbs) {
    EXPECT_EQ(ManipulationCommand::kindName(ManipulationCommand::TRANSLATE),
              QStringLiteral("translate"));
    EXPECT_EQ(ManipulationCommand::kindName(ManipulationCommand::ROTATE), QStringLiteral("rotate"));
    EXPECT_EQ(ManipulationCommand::kindName(ManipulationCommand::SCALE), QStringLiteral("scale"));
}

TEST(ManipulationCommandTest, KeepsItsKindDeltaAndEntries) {
    DraggedPair scene;
    const Xform delta = Placement(Vec3(0.0f, 0.0f, 1.0f), Rotation(0, 0, 1, 0.25f));
    const ManipulationCommand command(ManipulationCommand::ROTATE, delta,
                                      {scene.childEntry, scene.parentEntry});

    EXPECT_EQ(command.getKind(), ManipulationCommand::ROTATE);
    EXPECT_TRUE(BitwiseEqual(command.getDelta(), delta));
    ASSERT_EQ(command.getEntries().size(), 2u);
    EXPECT_EQ(command.getEntries()[0].object.get(), scene.child.get());
    EXPECT_EQ(command.getEntries()[1].object.get(), scene.parent.get());
    EXPECT_EQ(command.getEntries()[0].name, QStringLiteral("child"));
}

} // namespace
