// The viewer without its window: the demo scene it builds, selecting by list and by clicking,
// the gizmo's mode, axes and size, where world points show on screen, a whole drag through the
// controller that lands on the undo stack, and the signal that tells the window to refresh.
//
// Every test starts its own session in the home view over the 960 x 600 view it opens with.
#include "ViewerSession.h"

#include "DemoScene.h"
#include "ManipulationCommand.h"

#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxGenericTransformation.h"
#include "support/mxTestGeometry.h"
#include "support/mxTransformCompare.h"
#include "wm4/Wm4Vector3.h"

#include <QObject>
#include <QPointF>
#include <QString>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

namespace {

using viewer::SceneObject;
using viewer::ViewerSession;
using Vec3 = Wm4::Vector3<float>;
using Vec3d = Wm4::Vector3<double>;
using Xform = mx::mxGenericTransformation<float>;
using mx::test::BitwiseEqual;

constexpr float csPi = 3.14159265358979323846f;

const SceneObject* Find(const ViewerSession& session, const char* name) {
    const SceneObject* object = session.getScene().find(QString::fromUtf8(name));
    EXPECT_NE(object, nullptr) << name;
    return object;
}

Vec3d ToDouble(const Vec3& v) {
    return Vec3d(v.X(), v.Y(), v.Z());
}

// The pixel over the centre of an object's bound.
QPointF CentreOf(const ViewerSession& session, const SceneObject* object) {
    QPointF pixel;
    EXPECT_TRUE(session.project(ToDouble(object->mesh->getWorldBound().getCenter()), pixel))
        << object->name.toStdString();
    return pixel;
}

// A pixel of the home view's sky, above the far end of the ground.
const QPointF csSky(5.0, 5.0);

std::vector<const SceneObject*> Selection(std::initializer_list<const SceneObject*> objects) {
    return std::vector<const SceneObject*>(objects);
}

std::vector<mx::mxSpatial*> MeshesOf(std::initializer_list<const SceneObject*> objects) {
    std::vector<mx::mxSpatial*> meshes;
    for (const SceneObject* object : objects) {
        meshes.push_back(object->mesh.get());
    }
    return meshes;
}

// Whether some line of the gizmo would be drawn.
bool ShowsAnyLine(const mx::mxGizmoNode& gizmo) {
    if (gizmo.getCullingMode() == mx::mxSpatial::CULL_ALWAYS) {
        return false;
    }
    for (int i = 0; i < gizmo.getChildCount(); ++i) {
        const mx::mxSpatial* line = gizmo.getChild(i);
        if (line && line->getCullingMode() != mx::mxSpatial::CULL_ALWAYS) {
            return true;
        }
    }
    return false;
}

// How often session says it changed while action runs.
int ChangesDuring(ViewerSession& session, const std::function<void()>& action) {
    int changes = 0;
    const QMetaObject::Connection connection =
        QObject::connect(&session, &ViewerSession::changed, [&changes] { ++changes; });
    action();
    QObject::disconnect(connection);
    return changes;
}

// ---------------------------------------------------------------------------------------------
// The demo scene and the start

TEST(ViewerSessionTest, DemoHasItsEightObjectsInOrder) {
    const ViewerSession session;
    std::vector<QString> names;
    for (const SceneObject& object : session.getScene().getObjects()) {
        names.push_back(object.name);
    }
    const std::vector<QString> expected = {QStringLiteral("cube"),     QStringLiteral("sphere"),
                                           QStringLiteral("cylinder"), QStringLiteral("cone"),
                                           QStringLiteral("torus"),    QStringLiteral("crate"),
                                           QStringLiteral("pillar"),   QStringLiteral("tower")};
    EXPECT_EQ(names, expected);
    EXPECT_EQ(session.getScene().find(QStringLiteral("teapot")), nullptr);
}

TEST(ViewerSessionTest, CrateAndPillarHangBelowAGroupTurnedThirtyDegreesAndScaledByOneAndAQuarter) {
    const ViewerSession session;
    const mx::mxNode* group = session.getScene().getGroup();
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(Find(session, "crate")->mesh->getParent(), group);
    EXPECT_EQ(Find(session, "pillar")->mesh->getParent(), group);
    for (const char* name : {"cube", "sphere", "cylinder", "cone", "torus", "tower"}) {
        EXPECT_EQ(Find(session, name)->mesh->getParent(), group->getParent()) << name;
    }
    const Xform& placement = group->getWorldTransform();
    ASSERT_TRUE(placement.IsUniformScale());
    EXPECT_EQ(placement.GetUniformScale(), 1.25f);
    EXPECT_TRUE(mx::test::MatrixNear(placement.GetRotate(),
                                     mx::test::Rotation(0, 1, 0, csPi / 6.0f), 1e-6));
}

TEST(ViewerSessionTest, StartsWithNothingSelectedAndTheGizmoHidden) {
    const ViewerSession session;
    EXPECT_TRUE(session.getSelection().empty());
    EXPECT_EQ(session.getGizmo().getMode(), mx::mxGizmoNode::GIZMO_NONE);
    EXPECT_FALSE(ShowsAnyLine(session.getGizmo()));
    // The mode chosen for the first selection.
    EXPECT_EQ(session.getMode(), mx::mxGizmoNode::GIZMO_TRANSLATE);
    EXPECT_EQ(session.getUndoStack().count(), 0);
}

// ---------------------------------------------------------------------------------------------
// Selection

TEST(ViewerSessionTest, SelectShowsTheGizmoInTheChosenModeOnTheObjects) {
    ViewerSession session;
    const SceneObject* cube = Find(session, "cube");
    const SceneObject* cone = Find(session, "cone");
    session.setMode(mx::mxGizmoNode::GIZMO_ROTATE);

    session.select({cube, cone});

    EXPECT_EQ(session.getSelection(), Selection({cube, cone}));
    EXPECT_EQ(session.getGizmo().getMode(), mx::mxGizmoNode::GIZMO_ROTATE);
    EXPECT_EQ(session.getGizmo().getReferenceObjects(), MeshesOf({cube, cone}));
    EXPECT_TRUE(ShowsAnyLine(session.getGizmo()));
}

TEST(ViewerSessionTest, SelectedObjectsAreShownAThirdOfTheWayToWhiteAndRestoredWhenDeselected) {
    ViewerSession session;
    const SceneObject* cube = Find(session, "cube");
    const SceneObject* sphere = Find(session, "sphere");

    session.select({cube});

    const Wm4::ColorRGBA& lit = cube->mesh->getColor();
    EXPECT_FLOAT_EQ(lit.R(), cube->color.R() + (1.0f - cube->color.R()) / 3.0f);
    EXPECT_FLOAT_EQ(lit.G(), cube->color.G() + (1.0f - cube->color.G()) / 3.0f);
    EXPECT_FLOAT_EQ(lit.B(), cube->color.B() + (1.0f - cube->color.B()) / 3.0f);
    EXPECT_EQ(sphere->mesh->getColor().R(), sphere->color.R());

    session.select({sphere});

    EXPECT_EQ(cube->mesh->getColor().R(), cube->color.R());
    EXPECT_EQ(cube->mesh->getColor().G(), cube->color.G());
    EXPECT_EQ(cube->mesh->getColor().B(), cube->color.B());
    EXPECT_GT(sphere->mesh->getColor().R(), sphere->color.R());
}

TEST(ViewerSessionTest, SelectingNothingHidesTheGizmoAgain) {
    ViewerSession session;
    session.select({Find(session, "cube")});
    session.select({});
    EXPECT_TRUE(session.getSelection().empty());
    EXPECT_EQ(session.getGizmo().getMode(), mx::mxGizmoNode::GIZMO_NONE);
    EXPECT_FALSE(ShowsAnyLine(session.getGizmo()));
}

TEST(ViewerSessionTest, SelectKeepsOneOfEachObjectAndNoNull) {
    ViewerSession session;
    const SceneObject* cube = Find(session, "cube");
    const SceneObject* sphere = Find(session, "sphere");

    session.select({cube, nullptr, cube, sphere, nullptr, sphere});

    EXPECT_EQ(session.getSelection(), Selection({cube, sphere}));
    EXPECT_EQ(session.getGizmo().getReferenceObjects(), MeshesOf({cube, sphere}));
}

TEST(ViewerSessionTest, ModeNoneHidesTheGizmoEvenWithASelection) {
    ViewerSession session;
    session.select({Find(session, "cube")});

    session.setMode(mx::mxGizmoNode::GIZMO_NONE);
    EXPECT_EQ(session.getGizmo().getMode(), mx::mxGizmoNode::GIZMO_NONE);
    EXPECT_FALSE(ShowsAnyLine(session.getGizmo()));

    session.setMode(mx::mxGizmoNode::GIZMO_SCALE);
    EXPECT_EQ(session.getGizmo().getMode(), mx::mxGizmoNode::GIZMO_SCALE);
    EXPECT_TRUE(ShowsAnyLine(session.getGizmo()));
}

TEST(ViewerSessionTest, ClickOnTheCentreOfAnObjectSelectsIt) {
    ViewerSession session;
    const SceneObject* cube = Find(session, "cube");
    const SceneObject* cone = Find(session, "cone");
    session.select({cone});

    session.clickAt(CentreOf(session, cube), false);

    EXPECT_EQ(session.getSelection(), Selection({cube}));
}

TEST(ViewerSessionTest, ClickOnEmptySkyClearsTheSelection) {
    ViewerSession session;
    ASSERT_EQ(session.objectAt(csSky), nullptr);
    session.select({Find(session, "cube"), Find(session, "cone")});

    session.clickAt(csSky, false);

    EXPECT_TRUE(session.getSelection().empty());
    EXPECT_EQ(session.getGizmo().getMode(), mx::mxGizmoNode::GIZMO_NONE);
}

TEST(ViewerSessionTest, ToggleClickAddsAnObjectThenTakesItOut) {
    ViewerSession session;
    const SceneObject* cube = Find(session, "cube");
    const SceneObject* sphere = Find(session, "sphere");
    session.clickAt(CentreOf(session, cube), false);

    session.clickAt(CentreOf(session, sphere), true);
    EXPECT_EQ(session.getSelection(), Selection({cube, sphere}));

    session.clickAt(CentreOf(session, cube), true);
    EXPECT_EQ(session.getSelection(), Selection({sphere}));
    EXPECT_EQ(cube->mesh->getColor().R(), cube->color.R());
}

TEST(ViewerSessionTest, ToggleClickOnEmptySkyKeepsTheSelection) {
    ViewerSession session;
    const SceneObject* cube = Find(session, "cube");
    session.select({cube});

    session.clickAt(csSky, true);

    EXPECT_EQ(session.getSelection(), Selection({cube}));
}

TEST(ViewerSessionTest, ObjectAtPicksTheNearestOfOverlappingObjects) {
    // Along the x axis at the height of the shapes the line of sight passes through the cube
    // (x = -3), the sphere (x = 0) and the cylinder (x = 3): from either end, the near one.
    ViewerSession session;
    const Vec3d target(0.0, 0.7, 0.0);
    QPointF centre;

    ASSERT_TRUE(session.lookAt(Vec3d(-10.0, 0.7, 0.0), target));
    ASSERT_TRUE(session.project(target, centre));
    EXPECT_EQ(session.objectAt(centre), Find(session, "cube"));

    ASSERT_TRUE(session.lookAt(Vec3d(10.0, 0.7, 0.0), target));
    ASSERT_TRUE(session.project(target, centre));
    EXPECT_EQ(session.objectAt(centre), Find(session, "cylinder"));
}

// ---------------------------------------------------------------------------------------------
// Projection

// The distance of world from the pick ray of pixel, the ray taken at the pixel's centre as the
// camera wants it (from the lower left).
double DistanceFromPickRay(const ViewerSession& session, const QPointF& pixel, const Vec3d& world) {
    const double width = session.getViewportWidth();
    const double height = session.getViewportHeight();
    Vec3 origin;
    Vec3 direction;
    EXPECT_TRUE(session.getCamera().getPickRay(
        static_cast<float>((pixel.x() + 0.5) / width),
        static_cast<float>((height - pixel.y() - 0.5) / height), origin, direction));
    const Vec3d offset = world - ToDouble(origin);
    const Vec3d along = ToDouble(direction);
    return (offset - along * offset.Dot(along)).Length();
}

TEST(ViewerSessionTest, ProjectGivesThePixelWhosePickRayPassesThroughThePoint) {
    ViewerSession session;
    for (bool perspective : {true, false}) {
        session.setPerspective(perspective);
        for (const Vec3d& world : {Vec3d(-3.0, 0.6, 0.0), Vec3d(0.0, 0.75, 0.0),
                                   Vec3d(1.0, 2.0, 3.0), Vec3d(-2.5, -1.0, -4.0)}) {
            QPointF pixel;
            ASSERT_TRUE(session.project(world, pixel));
            ASSERT_GE(pixel.x(), 0.0);
            ASSERT_LT(pixel.x(), session.getViewportWidth());
            ASSERT_GE(pixel.y(), 0.0);
            ASSERT_LT(pixel.y(), session.getViewportHeight());
            EXPECT_LT(DistanceFromPickRay(session, pixel, world), 1e-4)
                << (perspective ? "perspective " : "orthographic ") << "(" << world.X() << ", "
                << world.Y() << ", " << world.Z() << ")";
        }
    }
}

TEST(ViewerSessionTest, ProjectRefusesAPointBehindTheEye) {
    const ViewerSession session;
    const Vec3d eye = session.getOrbit().getEye();
    const Vec3d behind = eye + (eye - session.getOrbit().getTarget());
    QPointF pixel(-7.0, -7.0);

    EXPECT_FALSE(session.project(behind, pixel));
}

// ---------------------------------------------------------------------------------------------
// Gizmo settings

// The enabled-axis masks of the three modes.
std::vector<int> MasksOf(const mx::mxGizmoNode& gizmo) {
    return {gizmo.getEnabledAxis(mx::mxGizmoNode::GIZMO_TRANSLATE),
            gizmo.getEnabledAxis(mx::mxGizmoNode::GIZMO_ROTATE),
            gizmo.getEnabledAxis(mx::mxGizmoNode::GIZMO_SCALE)};
}

TEST(ViewerSessionTest, ToggleAxisFlipsOneBitOfTheCurrentModesMask) {
    ViewerSession session;
    session.select({Find(session, "cube")});
    const std::vector<int> masks = MasksOf(session.getGizmo());

    session.toggleAxis(1);
    EXPECT_EQ(MasksOf(session.getGizmo()), (std::vector<int>{masks[0] ^ 2, masks[1], masks[2]}));
    session.toggleAxis(1);
    EXPECT_EQ(MasksOf(session.getGizmo()), masks);

    session.setMode(mx::mxGizmoNode::GIZMO_ROTATE);
    session.toggleAxis(2);
    EXPECT_EQ(MasksOf(session.getGizmo()), (std::vector<int>{masks[0], masks[1] ^ 4, masks[2]}));
    session.setMode(mx::mxGizmoNode::GIZMO_SCALE);
    session.toggleAxis(0);
    EXPECT_EQ(MasksOf(session.getGizmo()),
              (std::vector<int>{masks[0], masks[1] ^ 4, masks[2] ^ 1}));
}

TEST(ViewerSessionTest, ToggleAxisDoesNothingInModeNoneOrForAnAxisPastZ) {
    ViewerSession session;
    session.select({Find(session, "cube")});
    const std::vector<int> masks = MasksOf(session.getGizmo());

    session.toggleAxis(3);
    session.toggleAxis(-1);
    EXPECT_EQ(MasksOf(session.getGizmo()), masks);

    session.setMode(mx::mxGizmoNode::GIZMO_NONE);
    session.toggleAxis(0);
    EXPECT_EQ(MasksOf(session.getGizmo()), masks);
    EXPECT_FALSE(ShowsAnyLine(session.getGizmo()));
}

TEST(ViewerSessionTest, ToggleAxisWithNothingSelectedLeavesTheGizmoHidden) {
    ViewerSession session;
    ASSERT_FALSE(ShowsAnyLine(session.getGizmo()));

    session.toggleAxis(0);

    EXPECT_FALSE(ShowsAnyLine(session.getGizmo()));
}

TEST(ViewerSessionTest, ExpectedPixelSizeChangesByTheDeltaWithinTwentyAndThreeHundred) {
    ViewerSession session;
    ASSERT_EQ(session.getGizmo().getExpectedPixelSize(), 60.0f);

    session.changeExpectedPixelSize(15.0f);
    EXPECT_EQ(session.getGizmo().getExpectedPixelSize(), 75.0f);
    session.changeExpectedPixelSize(1000.0f);
    EXPECT_EQ(session.getGizmo().getExpectedPixelSize(), 300.0f);
    session.changeExpectedPixelSize(-1000.0f);
    EXPECT_EQ(session.getGizmo().getExpectedPixelSize(), 20.0f);
}

// ---------------------------------------------------------------------------------------------
// A drag through the controller

// Presses at the pixel over from, drags to the pixel over to and releases there, a frame after
// each step, as the window does with its mouse events. Returns whether the press took a handle.
bool Drag(ViewerSession& session, const Vec3& from, const Vec3& to) {
    QPointF press;
    QPointF release;
    EXPECT_TRUE(session.project(ToDouble(from), press));
    EXPECT_TRUE(session.project(ToDouble(to), release));
    const int width = session.getViewportWidth();
    const int height = session.getViewportHeight();
    mx::mxGizmoController& controller = session.getController();
    const bool taken =
        controller.setMousePressed(&session.getCamera(), static_cast<int>(std::lround(press.x())),
                                   static_cast<int>(std::lround(press.y())), width, height);
    session.runFrame();
    controller.setMousePos(static_cast<int>(std::lround(release.x())),
                           static_cast<int>(std::lround(release.y())));
    session.runFrame();
    controller.setMouseReleased(static_cast<int>(std::lround(release.x())),
                                static_cast<int>(std::lround(release.y())));
    session.runFrame();
    return taken;
}

TEST(ViewerSessionTest, TranslateDragLeavesOneStepWhoseUndoPutsTheObjectBackBitForBit) {
    ViewerSession session;
    const SceneObject* cube = Find(session, "cube");
    session.select({cube});
    session.runFrame();
    const Xform local = cube->mesh->getLocalTransform();
    const Xform world = cube->mesh->getWorldTransform();
    // From the middle of the x arrow's shaft to one gizmo length further along it.
    const Xform& gizmo = session.getGizmo().getWorldTransform();
    const Vec3 from = gizmo.ApplyForward(Vec3(0.6f, 0.0f, 0.0f));
    const Vec3 to = gizmo.ApplyForward(Vec3(1.6f, 0.0f, 0.0f));

    ASSERT_TRUE(Drag(session, from, to));

    ASSERT_EQ(session.getUndoStack().count(), 1);
    const auto* command =
        static_cast<const viewer::ManipulationCommand*>(session.getUndoStack().command(0));
    EXPECT_EQ(command->text(), QStringLiteral("Translate cube"));
    const Xform movedLocal = cube->mesh->getLocalTransform();
    const Xform movedWorld = cube->mesh->getWorldTransform();
    EXPECT_NEAR(movedWorld.GetTranslate().X() - world.GetTranslate().X(), (to - from).X(),
                0.1f * (to - from).Length());
    EXPECT_EQ(movedWorld.GetTranslate().Y(), world.GetTranslate().Y());
    EXPECT_EQ(movedWorld.GetTranslate().Z(), world.GetTranslate().Z());

    session.getUndoStack().undo();
    EXPECT_TRUE(BitwiseEqual(cube->mesh->getLocalTransform(), local));
    EXPECT_TRUE(BitwiseEqual(cube->mesh->getWorldTransform(), world));

    session.getUndoStack().redo();
    EXPECT_TRUE(BitwiseEqual(cube->mesh->getLocalTransform(), movedLocal));
    EXPECT_TRUE(BitwiseEqual(cube->mesh->getWorldTransform(), movedWorld));
}

TEST(ViewerSessionTest, TranslateDragIsHeardByTheRecorderFromStartToEnd) {
    ViewerSession session;
    const SceneObject* cube = Find(session, "cube");
    session.select({cube});
    session.runFrame();
    const Xform& gizmo = session.getGizmo().getWorldTransform();

    ASSERT_TRUE(Drag(session, gizmo.ApplyForward(Vec3(0.6f, 0.0f, 0.0f)),
                     gizmo.ApplyForward(Vec3(1.6f, 0.0f, 0.0f))));

    const auto& events = session.getRecorder().getEvents();
    ASSERT_GE(events.size(), 2u);
    EXPECT_EQ(events.front().name, QStringLiteral("translate start"));
    bool ended = false;
    for (const auto& event : events) {
        ended = ended || event.name == QStringLiteral("translate end");
    }
    EXPECT_TRUE(ended);
    EXPECT_FALSE(session.getRecorder().isDragging());
}

// ---------------------------------------------------------------------------------------------
// The changed signal

TEST(ViewerSessionTest, ChangedFiresOnSelectionAndModeChanges) {
    ViewerSession session;
    const SceneObject* cube = Find(session, "cube");
    EXPECT_GT(ChangesDuring(session, [&] { session.select({cube}); }), 0);
    EXPECT_GT(ChangesDuring(session, [&] { session.clickAt(csSky, false); }), 0);
    EXPECT_GT(ChangesDuring(session, [&] { session.setMode(mx::mxGizmoNode::GIZMO_SCALE); }), 0);
}

TEST(ViewerSessionTest, ChangedFiresOnCameraChanges) {
    ViewerSession session;
    EXPECT_GT(ChangesDuring(session, [&] { session.orbitCamera(10.0, 5.0); }), 0);
    EXPECT_GT(ChangesDuring(session, [&] { session.panCamera(4.0, 3.0); }), 0);
    EXPECT_GT(ChangesDuring(session, [&] { session.zoomCamera(1.0); }), 0);
    EXPECT_GT(
        ChangesDuring(session, [&] { session.lookAt(Vec3d(0.0, 2.0, 9.0), Vec3d(0.0, 0.5, 0.0)); }),
        0);
    EXPECT_GT(ChangesDuring(session, [&] { session.setPerspective(false); }), 0);
    EXPECT_GT(ChangesDuring(session, [&] { session.resetCamera(); }), 0);
    EXPECT_GT(ChangesDuring(session, [&] { session.setViewportSize(800, 500); }), 0);
}

TEST(ViewerSessionTest, FrameSelectionBringsTheSelectionToTheMiddleOfTheView) {
    ViewerSession session;
    const SceneObject* tower = Find(session, "tower");
    session.select({tower});

    session.frameSelection();

    const Vec3 centre = tower->mesh->getWorldBound().getCenter();
    EXPECT_TRUE(mx::test::VectorNear(session.getOrbit().getTarget(), ToDouble(centre), 1e-5));
    QPointF pixel;
    ASSERT_TRUE(session.project(ToDouble(centre), pixel));
    EXPECT_NEAR(pixel.x(), (session.getViewportWidth() - 1) / 2.0, 1e-2);
    EXPECT_NEAR(pixel.y(), (session.getViewportHeight() - 1) / 2.0, 1e-2);
}

TEST(ViewerSessionTest, FrameSelectionWithNothingSelectedLeavesTheCamera) {
    ViewerSession session;
    const Vec3d target = session.getOrbit().getTarget();
    const double distance = session.getOrbit().getDistance();

    session.frameSelection();

    EXPECT_TRUE(mx::test::VectorNear(session.getOrbit().getTarget(), target, 0.0));
    EXPECT_EQ(session.getOrbit().getDistance(), distance);
}

TEST(ViewerSessionTest, CameraChangesReachTheHostCamera) {
    ViewerSession session;
    const Vec3 before = session.getCamera().getLocation();

    session.orbitCamera(90.0, 0.0);

    EXPECT_TRUE(mx::test::VectorNear(ToDouble(session.getCamera().getLocation()),
                                     session.getOrbit().getEye(), 1e-5));
    EXPECT_FALSE(mx::test::VectorNear(session.getCamera().getLocation(), before, 1.0));
}

} // namespace
