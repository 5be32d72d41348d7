// Tests for mx::mxGizmoNode's placement and drag-time operations: placing the node at a frame
// with its screen-constant scale (calculateFrameFromObjectWorldTranform), giving it a world
// transformation through its parent (applyWorldTransformation), and carrying a world-space
// delta over to the reference objects from their drag-start placement (storeOriginalTransform,
// applyWorldTransformForReferencedObjects).

#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxNode.h"
#include "scenegraph/mxSpatial.h"
#include "system/mxLog.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector3.h"

#include "support/mxLogCapture.h"
#include "support/mxTestGeometry.h"
#include "support/mxTransformCompare.h"

#include "mxGizmoNodeTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

using mx::mxCamera;
using mx::mxGizmoNode;
using mx::mxMesh;
using mx::mxNode;
using mx::mxPointer;
using mx::mxSpatial;
using mx::test::BitwiseEqual;
using mx::test::MapsNear;
using mx::test::MarkCounter;
using mx::test::MatrixNear;
using mx::test::Rotation;
using mx::test::VectorNear;
using Matrix = Wm4::Matrix3<float>;
using Transform = mx::mxGenericTransformation<float>;
using Vec3 = Wm4::Vector3<float>;

namespace {

constexpr float csPi = 3.14159265358979f;
constexpr float csDegree = csPi / 180.0f;

const char* const csRefusalMessage =
    "The gizmo must have an RS matrix (xGizmoNode::calculateFrameFromObjectWorldTranform)";

// ---------------------------------------------------------------------------------------------
// Building transformations

Transform RotationScaleTranslation(const Matrix& rotation, const Vec3& scale, const Vec3& shift) {
    Transform t;
    t.SetRotate(rotation);
    if (scale.X() == scale.Y() && scale.Y() == scale.Z()) {
        t.SetUniformScale(scale.X());
    } else {
        t.SetScale(scale);
    }
    t.SetTranslate(shift);
    return t;
}

Transform Translation(const Vec3& shift) {
    Transform t;
    t.SetTranslate(shift);
    return t;
}

Transform Inverse(const Transform& t) {
    Transform inverse;
    t.Inverse(inverse);
    return inverse;
}

Transform Product(const Transform& a, const Transform& b) {
    Transform product;
    product.Product(a, b);
    return product;
}

// ---------------------------------------------------------------------------------------------
// Cameras

// Orthographic with top - bottom = 2: over a view 256 pixels high, 128 pixels make exactly one
// world unit (2 / 256 * 128 = 1, every step exact in binary).
constexpr float csUnitPixelSize = 128.0f;
constexpr int csUnitViewportHeight = 256;

mxPointer<mxCamera> MakeUnitScaleCamera() {
    mxPointer<mxCamera> camera = new mxCamera(false);
    camera->setFrustum(-1.0f, 1.0f, -1.0f, 1.0f, 1.0f, 1000.0f);
    return camera;
}

// The default 90-degree perspective camera moved back to (0, 0, 10) and looking along -Z: a
// point on the plane z = 0 is 10 deep, so with 20 pixels of a 200-pixel view one gizmo unit
// is about 2 world units there, clearly not 1.
constexpr float csPixelSize = 20.0f;
constexpr int csViewportHeight = 200;

mxPointer<mxCamera> MakePerspectiveCamera() {
    mxPointer<mxCamera> camera = new mxCamera(true);
    camera->setLocation(Vec3(0.0f, 0.0f, 10.0f));
    return camera;
}

// ---------------------------------------------------------------------------------------------
// calculateFrameFromObjectWorldTranform

TEST(mxGizmoNodePlacementTest, IdentityFrameWithScaleOfExactlyOnePlacesAMovedNodeAtTheIdentity) {
    mxPointer<mxCamera> camera = MakeUnitScaleCamera();
    ASSERT_EQ(mxGizmoNode::ComputeGizmoScale(camera.get(), Vec3(0.0f, 0.0f, 0.0f), csUnitPixelSize,
                                             csUnitViewportHeight),
              1.0f);
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    node->editLocalTransform(true) = RotationScaleTranslation(
        Rotation(0, 0, 1, 0.5f), Vec3(3.0f, 3.0f, 3.0f), Vec3(1.0f, 2.0f, 3.0f));

    EXPECT_TRUE(node->calculateFrameFromObjectWorldTranform(Transform(), camera.get(),
                                                            csUnitPixelSize, csUnitViewportHeight));

    EXPECT_TRUE(node->getLocalTransform().IsIdentity());
    EXPECT_TRUE(BitwiseEqual(node->getLocalTransform(), Transform()));
}

TEST(mxGizmoNodePlacementTest, IdentityFrameGetsOnlyTheComputedUniformScale) {
    mxPointer<mxCamera> camera = MakePerspectiveCamera();
    const float scale = mxGizmoNode::ComputeGizmoScale(camera.get(), Vec3(0.0f, 0.0f, 0.0f),
                                                       csPixelSize, csViewportHeight);
    ASSERT_NE(scale, 1.0f);
    mxPointer<mxGizmoNode> node = new mxGizmoNode;

    EXPECT_TRUE(node->calculateFrameFromObjectWorldTranform(Transform(), camera.get(), csPixelSize,
                                                            csViewportHeight));

    Transform expected;
    expected.SetUniformScale(scale);
    EXPECT_TRUE(BitwiseEqual(node->getLocalTransform(), expected));
}

TEST(mxGizmoNodePlacementTest, GeneralFrameIsRefusedWithOneWarningAndLeavesTheNodeUntouched) {
    mxPointer<mxCamera> camera = MakePerspectiveCamera();
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    node->editLocalTransform(true) = RotationScaleTranslation(
        Rotation(1, 1, 0, 0.3f), Vec3(2.0f, 2.0f, 2.0f), Vec3(-1.0f, 0.5f, 4.0f));
    node->UpdateGS();
    const Transform before = node->getLocalTransform();
    const MarkCounter counter(*node);
    Transform frame;
    frame.SetMatrix(Matrix(2.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 1.0f));
    frame.SetTranslate(Vec3(1.0f, 1.0f, 1.0f));
    mx::test::mxLogCapture log;

    EXPECT_FALSE(node->calculateFrameFromObjectWorldTranform(frame, camera.get(), csPixelSize,
                                                             csViewportHeight));

    EXPECT_TRUE(BitwiseEqual(node->getLocalTransform(), before));
    EXPECT_EQ(counter.marks(), 0u);
    EXPECT_EQ(log.lines(), std::vector<std::string>{
                               mx::mxLog::formatLine(5, nullptr, nullptr, csRefusalMessage)});
}

TEST(mxGizmoNodePlacementTest, NullCameraReturnsFalseChangesNothingAndLogsNothing) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    node->editLocalTransform(true).SetTranslate(Vec3(1.0f, 2.0f, 3.0f));
    node->UpdateGS();
    const Transform before = node->getLocalTransform();
    const MarkCounter counter(*node);
    // A frame that a camera would place the node at: far from where the node is.
    const Transform frame =
        RotationScaleTranslation(Rotation(0, 1, 0, 1.0f), Vec3(1.0f, 1.0f, 1.0f), Vec3(5.0f, 0, 0));
    mx::test::mxLogCapture log;

    EXPECT_FALSE(
        node->calculateFrameFromObjectWorldTranform(frame, nullptr, csPixelSize, csViewportHeight));

    EXPECT_TRUE(BitwiseEqual(node->getLocalTransform(), before));
    EXPECT_EQ(counter.marks(), 0u);
    EXPECT_TRUE(log.lines().empty());
}

TEST(mxGizmoNodePlacementTest, FrameTranslationAndRotationAreCopiedExactly) {
    mxPointer<mxCamera> camera = MakeUnitScaleCamera();
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    // One non-zero component is enough for the translation to be taken.
    const Matrix rotation = Rotation(1, 2, 2, 40.0f * csDegree);
    const Vec3 shift(0.0f, 0.0f, 3.0f);
    Transform frame;
    frame.SetRotate(rotation);
    frame.SetTranslate(shift);

    EXPECT_TRUE(node->calculateFrameFromObjectWorldTranform(frame, camera.get(), csUnitPixelSize,
                                                            csUnitViewportHeight));

    Transform expected;
    expected.SetTranslate(shift);
    expected.SetRotate(rotation);
    EXPECT_TRUE(BitwiseEqual(node->getLocalTransform(), expected));
}

TEST(mxGizmoNodePlacementTest, FrameWithRotationButZeroTranslationGivesZeroTranslationNotIdentity) {
    mxPointer<mxCamera> camera = MakeUnitScaleCamera();
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    node->editLocalTransform(true).SetTranslate(Vec3(1.0f, 2.0f, 3.0f));
    const Matrix rotation = Rotation(0, 0, 1, 90.0f * csDegree);
    Transform frame;
    frame.SetRotate(rotation);

    EXPECT_TRUE(node->calculateFrameFromObjectWorldTranform(frame, camera.get(), csUnitPixelSize,
                                                            csUnitViewportHeight));

    const Transform& local = node->getLocalTransform();
    EXPECT_FALSE(local.IsIdentity());
    EXPECT_EQ(local.GetTranslate(), Vec3(0.0f, 0.0f, 0.0f));
    EXPECT_TRUE(MatrixNear(local.GetRotate(), rotation, 0.0));
}

TEST(mxGizmoNodePlacementTest, FrameScaleIsReplacedByTheComputedUniformScale) {
    mxPointer<mxCamera> camera = MakePerspectiveCamera();
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const Matrix rotation = Rotation(1, 0, 1, 30.0f * csDegree);
    const Vec3 shift(1.0f, 2.0f, 0.0f);
    const Transform frame = RotationScaleTranslation(rotation, Vec3(2.0f, 3.0f, 4.0f), shift);
    const float scale =
        mxGizmoNode::ComputeGizmoScale(camera.get(), shift, csPixelSize, csViewportHeight);
    ASSERT_NE(scale, 1.0f);

    EXPECT_TRUE(node->calculateFrameFromObjectWorldTranform(frame, camera.get(), csPixelSize,
                                                            csViewportHeight));

    const Transform& local = node->getLocalTransform();
    EXPECT_TRUE(local.IsUniformScale());
    EXPECT_EQ(local.GetScale(), Vec3(scale, scale, scale));
    Transform expected;
    expected.SetTranslate(shift);
    expected.SetRotate(rotation);
    expected.SetUniformScale(scale);
    EXPECT_TRUE(BitwiseEqual(local, expected));
}

TEST(mxGizmoNodePlacementTest, ComputedScaleOfExactlyOneLeavesTheScaleAtOne) {
    mxPointer<mxCamera> camera = MakeUnitScaleCamera();
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const Transform frame = RotationScaleTranslation(
        Rotation(1, 0, 0, 0.25f), Vec3(2.0f, 3.0f, 4.0f), Vec3(1.0f, -1.0f, 2.0f));

    EXPECT_TRUE(node->calculateFrameFromObjectWorldTranform(frame, camera.get(), csUnitPixelSize,
                                                            csUnitViewportHeight));

    EXPECT_TRUE(node->getLocalTransform().IsUniformScale());
    EXPECT_EQ(node->getLocalTransform().GetScale(), Vec3(1.0f, 1.0f, 1.0f));
}

// A parent turned 30 degrees about (1, 2, 2), scaled differently along its axes and moved: the
// node's local transformation has to take all of that out again.
mxPointer<mxNode> MakeTurnedParent() {
    mxPointer<mxNode> parent = new mxNode;
    parent->editLocalTransform(true) = RotationScaleTranslation(
        Rotation(1, 2, 2, 30.0f * csDegree), Vec3(2.0f, 1.0f, 0.5f), Vec3(1.0f, -2.0f, 3.0f));
    return parent;
}

TEST(mxGizmoNodePlacementTest, UnderATurnedScaledParentTheNodeReachesTheWantedWorld) {
    mxPointer<mxCamera> camera = MakePerspectiveCamera();
    mxPointer<mxNode> parent = MakeTurnedParent();
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    ASSERT_GE(parent->attachChild(node.get()), 0);
    parent->UpdateGS();
    const Matrix rotation = Rotation(0, 1, 1, 50.0f * csDegree);
    const Vec3 shift(1.0f, 1.0f, -2.0f);
    const Transform frame = RotationScaleTranslation(rotation, Vec3(1.0f, 1.0f, 1.0f), shift);
    const float scale =
        mxGizmoNode::ComputeGizmoScale(camera.get(), shift, csPixelSize, csViewportHeight);
    Transform wanted;
    wanted.SetTranslate(shift);
    wanted.SetRotate(rotation);
    wanted.SetUniformScale(scale);

    EXPECT_TRUE(node->calculateFrameFromObjectWorldTranform(frame, camera.get(), csPixelSize,
                                                            csViewportHeight));

    EXPECT_TRUE(BitwiseEqual(node->getLocalTransform(),
                             Product(Inverse(parent->getWorldTransform()), wanted)));
    parent->UpdateGS();
    // World entries stay below about 3: a few ulps of that.
    EXPECT_TRUE(MapsNear(node->getWorldTransform(), wanted, 1e-5));
}

TEST(mxGizmoNodePlacementTest, PlacingAgainWithTheSameInputReportsNoChange) {
    mxPointer<mxCamera> camera = MakePerspectiveCamera();
    mxPointer<mxNode> parent = MakeTurnedParent();
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    ASSERT_GE(parent->attachChild(node.get()), 0);
    parent->UpdateGS();
    const Transform frame = RotationScaleTranslation(
        Rotation(0, 1, 1, 50.0f * csDegree), Vec3(1.0f, 1.0f, 1.0f), Vec3(1.0f, 1.0f, -2.0f));

    EXPECT_TRUE(node->calculateFrameFromObjectWorldTranform(frame, camera.get(), csPixelSize,
                                                            csViewportHeight));
    const Transform placed = node->getLocalTransform();
    const MarkCounter counter(*node);
    EXPECT_FALSE(node->calculateFrameFromObjectWorldTranform(frame, camera.get(), csPixelSize,
                                                             csViewportHeight));

    EXPECT_TRUE(BitwiseEqual(node->getLocalTransform(), placed));
    EXPECT_EQ(counter.marks(), 0u);
}

// ---------------------------------------------------------------------------------------------
// applyWorldTransformation

TEST(mxGizmoNodePlacementTest, RepeatedApplyWorldTransformationReportsTrueOnceThenFalse) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    const Transform world = RotationScaleTranslation(
        Rotation(0, 0, 1, 0.5f), Vec3(2.0f, 2.0f, 2.0f), Vec3(1.0f, 2.0f, 3.0f));

    EXPECT_TRUE(node->applyWorldTransformation(world));
    EXPECT_FALSE(node->applyWorldTransformation(world));
    EXPECT_FALSE(node->applyWorldTransformation(world));

    EXPECT_TRUE(BitwiseEqual(node->getLocalTransform(), world));
}

TEST(mxGizmoNodePlacementTest, UnderAParentTheLocalIsTheInverseParentWorldTimesTheWorld) {
    mxPointer<mxNode> parent = MakeTurnedParent();
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    ASSERT_GE(parent->attachChild(node.get()), 0);
    parent->UpdateGS();
    ASSERT_EQ(node->getDirtyFlags() & mxSpatial::DIRTY_WORLD, 0u);
    const MarkCounter counter(*node);
    const Transform world = RotationScaleTranslation(
        Rotation(1, 1, 1, 1.0f), Vec3(1.5f, 1.5f, 1.5f), Vec3(-1.0f, 0.0f, 2.0f));

    EXPECT_TRUE(node->applyWorldTransformation(world));

    EXPECT_TRUE(BitwiseEqual(node->getLocalTransform(),
                             Product(Inverse(parent->getWorldTransform()), world)));
    // Written through editLocalTransform(true): the world data is marked for the next update.
    EXPECT_NE(node->getDirtyFlags() & mxSpatial::DIRTY_WORLD, 0u);
    EXPECT_GT(counter.marks(), 0u);
}

TEST(mxGizmoNodePlacementTest, AWorldGivingTheCurrentLocalWritesNothing) {
    mxPointer<mxNode> parent = MakeTurnedParent();
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    ASSERT_GE(parent->attachChild(node.get()), 0);
    const Transform world = RotationScaleTranslation(
        Rotation(1, 1, 1, 1.0f), Vec3(1.5f, 1.5f, 1.5f), Vec3(-1.0f, 0.0f, 2.0f));
    parent->UpdateGS();
    ASSERT_TRUE(node->applyWorldTransformation(world));
    parent->UpdateGS();
    const MarkCounter counter(*node);

    EXPECT_FALSE(node->applyWorldTransformation(world));

    EXPECT_EQ(counter.marks(), 0u);
    EXPECT_EQ(node->getDirtyFlags() & mxSpatial::DIRTY_WORLD, 0u);
}

TEST(mxGizmoNodePlacementTest, AWorldEqualToTheLocalUnderHostEqualityIsNotWritten) {
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    node->editLocalTransform(true).SetTranslate(Vec3(0.0f, 1.0f, 0.0f));
    node->UpdateGS();
    const Transform before = node->getLocalTransform();
    const MarkCounter counter(*node);
    // The host's equality takes -0 for 0: this world is the current local.
    Transform world;
    world.SetTranslate(Vec3(-0.0f, 1.0f, -0.0f));
    ASSERT_TRUE(world == before);

    EXPECT_FALSE(node->applyWorldTransformation(world));

    EXPECT_TRUE(BitwiseEqual(node->getLocalTransform(), before));
    EXPECT_EQ(counter.marks(), 0u);
}

// ---------------------------------------------------------------------------------------------
// storeOriginalTransform and applyWorldTransformForReferencedObjects

// Records how the host's flagged update finds the object when it reaches it.
class UpdateSpy : public mxNode {
public:
    struct Visit {
        bool ignored;
        unsigned int dirtyFlags;
        unsigned int dirtyFlagsDown;
        unsigned int parentDirtyFlags;
        Transform world;
    };

    void UpdateWorldData_Flags() override {
        visits.push_back(Visit{isIgnored(), getDirtyFlags(), getDirtyFlagsDown(),
                               getParent() ? getParent()->getDirtyFlags() : 0u,
                               getWorldTransform()});
        mxNode::UpdateWorldData_Flags();
    }

    std::vector<Visit> visits;
};

mxPointer<mxNode> MakeNode(const Transform& local) {
    mxPointer<mxNode> node = new mxNode;
    node->editLocalTransform(true) = local;
    return node;
}

// A drag scene in round numbers, updated, with the world and local transformation of every
// object recorded before any drag:
//   root
//   +-- parent: turned 30 degrees about (1, 2, 2), scaled (2, 1, 0.5), moved to (1, -2, 3)
//       +-- a (reference) with child a1
//       +-- excluded (reference, STATE_EXCLUDED) with child excluded1
//       +-- b (reference, a spy of the host's flagged update) with child b1
//   loose (reference, no parent) with a mesh child loose1
// The gizmo node's reference list is a, excluded, b, loose.
struct DragScene {
    DragScene() {
        root = new mxNode;
        parent = MakeTurnedParent();
        root->attachChild(parent.get());

        a = MakeNode(RotationScaleTranslation(Rotation(0, 0, 1, 45.0f * csDegree),
                                              Vec3(1.0f, 1.0f, 1.0f), Vec3(1.0f, 0.0f, 0.0f)));
        a1 = MakeNode(Translation(Vec3(0.0f, 1.0f, 0.0f)));
        a->attachChild(a1.get());
        parent->attachChild(a.get());

        excluded = MakeNode(RotationScaleTranslation(
            Rotation(1, 0, 0, 20.0f * csDegree), Vec3(1.0f, 1.0f, 1.0f), Vec3(-1.0f, 0.0f, 0.0f)));
        excluded1 = MakeNode(Translation(Vec3(0.0f, 0.0f, 1.0f)));
        excluded->attachChild(excluded1.get());
        excluded->setStateFlags(mxSpatial::STATE_EXCLUDED);
        parent->attachChild(excluded.get());

        b = new UpdateSpy;
        b->editLocalTransform(true) = RotationScaleTranslation(
            Rotation(0, 1, 0, 60.0f * csDegree), Vec3(1.5f, 1.5f, 1.5f), Vec3(0.0f, 1.0f, 1.0f));
        b1 = MakeNode(RotationScaleTranslation(Rotation(1, 0, 0, 90.0f * csDegree),
                                               Vec3(1.0f, 1.0f, 1.0f), Vec3(0.0f, 0.0f, 1.0f)));
        b->attachChild(b1.get());
        parent->attachChild(b.get());

        loose = MakeNode(RotationScaleTranslation(Rotation(1, 1, 0, 10.0f * csDegree),
                                                  Vec3(2.0f, 2.0f, 2.0f), Vec3(2.0f, 0.0f, 0.0f)));
        loose1 = new mxMesh(3u, 1u);
        loose1->editLocalTransform(true).SetTranslate(Vec3(1.0f, 1.0f, 0.0f));
        loose->attachChild(loose1.get());

        root->UpdateGS();
        loose->UpdateGS();

        node = new mxGizmoNode;
        node->setReferenceObjects({a.get(), excluded.get(), b.get(), loose.get()});
        for (mxSpatial* object : all()) {
            startWorld.push_back(object->getWorldTransform());
            startLocal.push_back(object->getLocalTransform());
        }
    }

    // Every object below the root, and the loose branch, in a fixed order.
    std::vector<mxSpatial*> all() const {
        return {parent.get(), a.get(),  a1.get(),    excluded.get(), excluded1.get(),
                b.get(),      b1.get(), loose.get(), loose1.get()};
    }
    std::size_t indexOf(const mxSpatial* object) const {
        const std::vector<mxSpatial*> objects = all();
        for (std::size_t i = 0; i < objects.size(); ++i) {
            if (objects[i] == object) {
                return i;
            }
        }
        ADD_FAILURE() << "not an object of the scene";
        return 0;
    }
    const Transform& startWorldOf(const mxSpatial* object) const {
        return startWorld[indexOf(object)];
    }
    const Transform& startLocalOf(const mxSpatial* object) const {
        return startLocal[indexOf(object)];
    }

    // Checks the placement a drag by delta leaves: every included reference object at
    // delta * its start world, kept as written, with its local taken back through its parent,
    // no longer ignored and with no world update pending, and its child following; the parent
    // and the excluded branch untouched.
    void expectDraggedBy(const Transform& delta) const {
        const std::vector<mxNode*> movedObjects = {a.get(), b.get(), loose.get()};
        for (mxNode* object : movedObjects) {
            SCOPED_TRACE(object == a.get() ? "a" : object == b.get() ? "b" : "loose");
            const Transform world = Product(delta, startWorldOf(object));
            EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), world));
            if (object->getParent()) {
                EXPECT_TRUE(BitwiseEqual(
                    object->getLocalTransform(),
                    Product(Inverse(object->getParent()->getWorldTransform()), world)));
            } else {
                EXPECT_TRUE(BitwiseEqual(object->getLocalTransform(), world));
            }
            const mxSpatial* child = object->getChild(0);
            EXPECT_TRUE(BitwiseEqual(child->getWorldTransform(),
                                     Product(object->getWorldTransform(), startLocalOf(child))));
            EXPECT_FALSE(object->isIgnored());
            EXPECT_EQ(object->getDirtyFlags() & mxSpatial::DIRTY_WORLD, 0u);
        }
        const std::vector<mxSpatial*> untouched = {parent.get(), excluded.get(), excluded1.get()};
        for (mxSpatial* object : untouched) {
            SCOPED_TRACE(indexOf(object));
            EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), startWorldOf(object)));
            EXPECT_TRUE(BitwiseEqual(object->getLocalTransform(), startLocalOf(object)));
        }
    }

    mxPointer<mxNode> root;
    mxPointer<mxNode> parent;
    mxPointer<mxNode> a;
    mxPointer<mxNode> a1;
    mxPointer<mxNode> excluded;
    mxPointer<mxNode> excluded1;
    mxPointer<UpdateSpy> b;
    mxPointer<mxNode> b1;
    mxPointer<mxNode> loose;
    mxPointer<mxMesh> loose1;
    mxPointer<mxGizmoNode> node;
    std::vector<Transform> startWorld;
    std::vector<Transform> startLocal;
};

// The three kinds of delta a drag produces.
Transform RotationDelta() {
    Transform delta;
    mxGizmoNode::ComputeRotation(Vec3(0.0f, 0.6f, 0.8f), 35.0f * csDegree, Vec3(1.0f, 2.0f, -1.0f),
                                 delta);
    return delta;
}

Transform TranslationDelta() {
    return Translation(Vec3(0.5f, -1.0f, 2.0f));
}

// Scaled by (2, 1, 3) along a frame turned about Z: a general matrix.
Transform HomotheticDelta() {
    Transform delta;
    mxGizmoNode::ComputeHomotheticTransform(
        Vec3(2.0f, 1.0f, 3.0f), Rotation(0, 0, 1, 30.0f * csDegree), Vec3(1.0f, 1.0f, 0.0f), delta);
    return delta;
}

TEST(mxGizmoNodePlacementTest, RotationDeltaMovesEveryIncludedObjectToDeltaTimesItsStart) {
    DragScene scene;
    const Transform delta = RotationDelta();
    ASSERT_TRUE(delta.IsRSMatrix());
    ASSERT_FALSE(delta.IsIdentity());
    scene.node->storeOriginalTransform();

    scene.node->applyWorldTransformForReferencedObjects(delta);

    scene.expectDraggedBy(delta);
}

TEST(mxGizmoNodePlacementTest, TranslationDeltaMovesEveryIncludedObjectToDeltaTimesItsStart) {
    DragScene scene;
    scene.node->storeOriginalTransform();

    scene.node->applyWorldTransformForReferencedObjects(TranslationDelta());

    scene.expectDraggedBy(TranslationDelta());
}

TEST(mxGizmoNodePlacementTest, HomotheticDeltaMovesEveryIncludedObjectToDeltaTimesItsStart) {
    DragScene scene;
    const Transform delta = HomotheticDelta();
    ASSERT_FALSE(delta.IsRSMatrix());
    scene.node->storeOriginalTransform();

    scene.node->applyWorldTransformForReferencedObjects(delta);

    scene.expectDraggedBy(delta);
}

TEST(mxGizmoNodePlacementTest, SecondDeltaStartsAgainFromTheRecordedStart) {
    DragScene scene;
    const Transform first = RotationDelta();
    const Transform second = HomotheticDelta();
    const Transform& start = scene.startWorldOf(scene.a.get());
    // Accumulating the two deltas would give a different placement.
    ASSERT_FALSE(BitwiseEqual(Product(second, Product(first, start)), Product(second, start)));
    scene.node->storeOriginalTransform();

    scene.node->applyWorldTransformForReferencedObjects(first);
    scene.node->applyWorldTransformForReferencedObjects(second);

    scene.expectDraggedBy(second);
}

TEST(mxGizmoNodePlacementTest, IdentityDeltaRestoresEveryWorldTransformationBitForBit) {
    DragScene scene;
    scene.node->storeOriginalTransform();
    scene.node->applyWorldTransformForReferencedObjects(HomotheticDelta());

    scene.node->applyWorldTransformForReferencedObjects(Transform());

    for (mxSpatial* object : scene.all()) {
        SCOPED_TRACE(scene.indexOf(object));
        EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), scene.startWorldOf(object)));
    }
    // Without a parent the local is the world itself.
    EXPECT_TRUE(
        BitwiseEqual(scene.loose->getLocalTransform(), scene.startLocalOf(scene.loose.get())));
    // Under the turned parent the local is recomputed as its inverse times the world. Entries
    // stay below 2: a few ulps of that.
    const std::vector<mxSpatial*> underParent = {scene.a.get(), scene.b.get()};
    for (mxSpatial* object : underParent) {
        SCOPED_TRACE(scene.indexOf(object));
        EXPECT_TRUE(MapsNear(object->getLocalTransform(), scene.startLocalOf(object), 1e-6));
    }
}

TEST(mxGizmoNodePlacementTest, IdentityDeltaUnderAnExactParentRestoresTheLocalBitForBit) {
    // A quarter turn about Z (entries exactly 0 and +-1) with scale 2: its inverse and every
    // product with it are exact in binary.
    const Matrix quarterTurn(0.0f, -1.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f);
    mxPointer<mxNode> parent = MakeNode(
        RotationScaleTranslation(quarterTurn, Vec3(2.0f, 2.0f, 2.0f), Vec3(1.0f, 2.0f, 3.0f)));
    mxPointer<mxNode> object = MakeNode(
        RotationScaleTranslation(Matrix(false), Vec3(3.0f, 3.0f, 3.0f), Vec3(1.0f, -1.0f, 2.0f)));
    mxPointer<mxNode> child = MakeNode(Translation(Vec3(0.0f, 0.0f, 1.0f)));
    object->attachChild(child.get());
    parent->attachChild(object.get());
    parent->UpdateGS();
    const Transform startWorld = object->getWorldTransform();
    const Transform startLocal = object->getLocalTransform();
    const Transform childWorld = child->getWorldTransform();
    mxPointer<mxGizmoNode> node = new mxGizmoNode;
    node->setReferenceObject(object.get());
    node->storeOriginalTransform();
    node->applyWorldTransformForReferencedObjects(RotationDelta());

    node->applyWorldTransformForReferencedObjects(Transform());

    EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), startWorld));
    EXPECT_TRUE(BitwiseEqual(object->getLocalTransform(), startLocal));
    EXPECT_TRUE(BitwiseEqual(child->getWorldTransform(), childWorld));
}

TEST(mxGizmoNodePlacementTest, EachObjectIsUpdatedWithItsWorldWrittenMarkedAndKept) {
    DragScene scene;
    // b alone, so that its parent's flags at b's update come from b's marking only.
    scene.node->setReferenceObjects({scene.b.get()});
    scene.node->storeOriginalTransform();
    scene.b->visits.clear();
    ASSERT_EQ(scene.parent->getDirtyFlags(), 0u);
    ASSERT_EQ(scene.root->getDirtyFlags(), 0u);
    const Transform delta = RotationDelta();
    const std::uint64_t stamp = scene.b->getChangeStamp();

    scene.node->applyWorldTransformForReferencedObjects(delta);

    // Both transformations were written without marking: setDirty is the one marking.
    EXPECT_EQ(scene.b->getChangeStamp() - stamp, 1u);
    ASSERT_EQ(scene.b->visits.size(), 1u);
    const UpdateSpy::Visit& visit = scene.b->visits[0];
    // forceIgnore(true, ...) came before the update: the world is kept as written ...
    EXPECT_TRUE(visit.ignored);
    // ... and so did the world itself ...
    EXPECT_TRUE(BitwiseEqual(visit.world, Product(delta, scene.startWorldOf(scene.b.get()))));
    // ... and setDirty(DIRTY_WORLD, ...), on the object alone (nothing handed down) ...
    EXPECT_NE(visit.dirtyFlags & mxSpatial::DIRTY_WORLD, 0u);
    EXPECT_EQ(visit.dirtyFlagsDown, 0u);
    // ... marking the ancestors as having work below, before the update marks their bounds
    // stale.
    EXPECT_EQ(visit.parentDirtyFlags, static_cast<unsigned int>(mxSpatial::DIRTY_DESCENDANT));
    // forceIgnore(false, ...) came last, and left the world as written.
    EXPECT_FALSE(scene.b->isIgnored());
    EXPECT_TRUE(BitwiseEqual(scene.b->getWorldTransform(), visit.world));
}

TEST(mxGizmoNodePlacementTest, ExcludedObjectIsNeitherMovedNorMarked) {
    DragScene scene;
    scene.node->setReferenceObjects({scene.excluded.get()});
    const std::uint64_t stamp = scene.excluded->getChangeStamp();
    scene.node->storeOriginalTransform();

    scene.node->applyWorldTransformForReferencedObjects(TranslationDelta());

    EXPECT_EQ(scene.excluded->getChangeStamp(), stamp);
    EXPECT_EQ(scene.excluded->getDirtyFlags(), 0u);
    EXPECT_TRUE(BitwiseEqual(scene.excluded->getWorldTransform(),
                             scene.startWorldOf(scene.excluded.get())));
    EXPECT_TRUE(BitwiseEqual(scene.excluded1->getWorldTransform(),
                             scene.startWorldOf(scene.excluded1.get())));
}

TEST(mxGizmoNodePlacementTest, NullEntriesAreToleratedByTheRecordingAndLeftAloneByTheDrag) {
    DragScene scene;
    scene.node->setReferenceObjects({nullptr, scene.a.get(), nullptr, scene.loose.get(), nullptr});

    scene.node->storeOriginalTransform();
    scene.node->applyWorldTransformForReferencedObjects(TranslationDelta());

    const std::vector<mxSpatial*> moved = {scene.a.get(), scene.loose.get()};
    for (mxSpatial* object : moved) {
        SCOPED_TRACE(scene.indexOf(object));
        EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(),
                                 Product(TranslationDelta(), scene.startWorldOf(object))));
    }
    EXPECT_TRUE(BitwiseEqual(scene.b->getWorldTransform(), scene.startWorldOf(scene.b.get())));
}

TEST(mxGizmoNodePlacementTest, NullEntryRecordsIdentitySoAnObjectPutInItsPlaceMovesToTheDelta) {
    DragScene scene;
    scene.node->setReferenceObjects({nullptr, scene.loose.get()});
    scene.node->storeOriginalTransform();
    // b, under the turned parent, takes the slot after the recording: the world and the
    // inverse parent recorded there are both the identity.
    scene.node->editReferenceObjects()[0] = scene.b.get();

    scene.node->applyWorldTransformForReferencedObjects(TranslationDelta());

    EXPECT_TRUE(BitwiseEqual(scene.b->getWorldTransform(), TranslationDelta()));
    EXPECT_TRUE(BitwiseEqual(scene.b->getLocalTransform(), TranslationDelta()));
}

TEST(mxGizmoNodePlacementTest, ObjectsAddedAfterTheRecordingAreNotMoved) {
    DragScene scene;
    scene.node->setReferenceObjects({scene.a.get()});
    scene.node->storeOriginalTransform();
    scene.node->editReferenceObjects().push_back(scene.b.get());
    scene.node->editReferenceObjects().push_back(scene.loose.get());
    const std::uint64_t stamp = scene.b->getChangeStamp();

    scene.node->applyWorldTransformForReferencedObjects(TranslationDelta());

    EXPECT_TRUE(BitwiseEqual(scene.a->getWorldTransform(),
                             Product(TranslationDelta(), scene.startWorldOf(scene.a.get()))));
    const std::vector<mxSpatial*> added = {scene.b.get(), scene.b1.get(), scene.loose.get(),
                                           scene.loose1.get()};
    for (mxSpatial* object : added) {
        SCOPED_TRACE(scene.indexOf(object));
        EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), scene.startWorldOf(object)));
        EXPECT_TRUE(BitwiseEqual(object->getLocalTransform(), scene.startLocalOf(object)));
    }
    EXPECT_EQ(scene.b->getChangeStamp(), stamp);
}

TEST(mxGizmoNodePlacementTest, RecordingAgainWithFewerObjectsForgetsTheDroppedOnes) {
    DragScene scene;
    scene.node->storeOriginalTransform();
    scene.node->setReferenceObjects({scene.a.get()});
    scene.node->storeOriginalTransform();
    scene.node->editReferenceObjects().push_back(scene.b.get());

    scene.node->applyWorldTransformForReferencedObjects(TranslationDelta());

    EXPECT_TRUE(BitwiseEqual(scene.a->getWorldTransform(),
                             Product(TranslationDelta(), scene.startWorldOf(scene.a.get()))));
    EXPECT_TRUE(BitwiseEqual(scene.b->getWorldTransform(), scene.startWorldOf(scene.b.get())));
}

TEST(mxGizmoNodePlacementTest, WithoutARecordingNoObjectIsMoved) {
    DragScene scene;

    scene.node->applyWorldTransformForReferencedObjects(TranslationDelta());

    for (mxSpatial* object : scene.all()) {
        SCOPED_TRACE(scene.indexOf(object));
        EXPECT_TRUE(BitwiseEqual(object->getWorldTransform(), scene.startWorldOf(object)));
        EXPECT_TRUE(BitwiseEqual(object->getLocalTransform(), scene.startLocalOf(object)));
    }
}

TEST(mxGizmoNodePlacementTest, RecordingAgainStartsFromTheCurrentPlacement) {
    DragScene scene;
    scene.node->storeOriginalTransform();
    scene.node->applyWorldTransformForReferencedObjects(RotationDelta());
    const Transform rotatedWorld = scene.a->getWorldTransform();
    scene.node->storeOriginalTransform();

    scene.node->applyWorldTransformForReferencedObjects(TranslationDelta());

    EXPECT_TRUE(
        BitwiseEqual(scene.a->getWorldTransform(), Product(TranslationDelta(), rotatedWorld)));
}

} // namespace
