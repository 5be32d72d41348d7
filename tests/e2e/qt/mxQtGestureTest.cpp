// Whole gestures through real Qt mouse events: a widget with the event filter installed, an
// engine running the gizmo controller, one frame after every event. Each gesture is checked
// against the same gesture given to the controller as direct calls on an identical scene: the
// filter must add nothing and lose nothing on the way.
#include "qt/mxGizmoEventsListener.h"

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "scenegraph/mxGenericTransformation.h"
#include "scenegraph/mxMesh.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "e2e/mxGestureSupport.h"
#include "node/mxGizmoNodeTestSupport.h"
#include "support/mxQtTestSupport.h"
#include "support/mxTransformCompare.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QPoint>
#include <QPointF>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using namespace mx;
using test::BitwiseEqual;
using test::csViewHeight;
using test::csViewWidth;
using test::EnsureQtApplication;
using test::PixelOf;
using test::RecordingWidget;
using test::TwoObjectScene;
using test::UnitAxis;
using test::WidgetPoint;
using Vec3 = Wm4::Vector3<float>;
using Transform = mxGenericTransformation<float>;
using Events = std::vector<std::string>;

// The standard view over one gizmo in mode around two objects 2 units either side of the
// origin: 10 pixels to the unit at the gizmo's depth.
struct Scene : TwoObjectScene {
    using TwoObjectScene::TwoObjectScene;

    // The widget pixel over a point given in the placed gizmo's own frame (its axes are 1 long).
    QPoint at(const Vec3& gizmoPoint) const {
        return WidgetPoint(
            PixelOf(*viewCamera(), gizmo->getWorldTransform().ApplyForward(gizmoPoint)));
    }
};

// A scene driven through Qt: the filter installed on a widget of the view's size.
struct QtScene : Scene {
    explicit QtScene(mxGizmoNode::GizmoMode mode) : Scene(mode), filter(&engine) {
        filter.setController(&controller);
        widget.installEventFilter(&filter);
    }

    // Each sends one event, then runs a frame.
    void press(const QPoint& point, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(&widget, button, Qt::NoModifier, point);
        engine.updateFrame();
    }
    void move(const QPoint& point, Qt::MouseButtons held = Qt::LeftButton) {
        QMouseEvent event(QEvent::MouseMove, QPointF(point), QPointF(widget.mapToGlobal(point)),
                          Qt::NoButton, held, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
        engine.updateFrame();
    }
    void release(const QPoint& point, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(&widget, button, Qt::NoModifier, point);
        engine.updateFrame();
    }

    QApplication& application = EnsureQtApplication();
    RecordingWidget widget;
    mxGizmoEventsListener filter;
};

// The same scene driven by direct calls, as an application without Qt would.
struct DirectScene : Scene {
    using Scene::Scene;

    void press(const QPoint& point) {
        controller.setMousePressed(viewCamera(), point.x(), point.y(), csViewWidth, csViewHeight);
        engine.updateFrame();
    }
    void move(const QPoint& point) {
        controller.setMousePos(point.x(), point.y());
        engine.updateFrame();
    }
    void release(const QPoint& point) {
        controller.setMouseReleased(point.x(), point.y());
        engine.updateFrame();
    }
};

// A press, the moves and the release at the end, in widget pixels.
struct Gesture {
    QPoint pressAt;
    std::vector<QPoint> moves;
    QPoint releaseAt;
};

template <class AnyScene> void Drag(AnyScene& scene, const Gesture& gesture) {
    scene.press(gesture.pressAt);
    for (const QPoint& point : gesture.moves) {
        scene.move(point);
    }
    scene.release(gesture.releaseAt);
}

// Drives gesture through Qt and directly, and checks that the filter consumed every event and
// that both scenes end alike, bit for bit. Returns the Qt scene's listener record.
Events DragBothWaysAndCompare(mxGizmoNode::GizmoMode mode, Gesture (*gestureOf)(const Scene&)) {
    QtScene viaQt(mode);
    DirectScene direct(mode);
    const Gesture gesture = gestureOf(viaQt);
    Drag(viaQt, gesture);
    Drag(direct, gesture);

    EXPECT_TRUE(viaQt.widget.received.empty())
        << viaQt.widget.received.size() << " events reached the widget";
    EXPECT_TRUE(BitwiseEqual(viaQt.left->getWorldTransform(), direct.left->getWorldTransform()));
    EXPECT_TRUE(BitwiseEqual(viaQt.right->getWorldTransform(), direct.right->getWorldTransform()));
    EXPECT_EQ(direct.listener.events, viaQt.listener.events);
    EXPECT_EQ(direct.listener.ends.size(), viaQt.listener.ends.size());
    for (std::size_t i = 0; i < viaQt.listener.ends.size() && i < direct.listener.ends.size();
         ++i) {
        EXPECT_TRUE(BitwiseEqual(viaQt.listener.ends[i], direct.listener.ends[i])) << "end " << i;
    }
    // The gesture did something: the objects moved.
    EXPECT_FALSE(BitwiseEqual(viaQt.right->getWorldTransform(), viaQt.rightAtStart));
    return viaQt.listener.events;
}

// Presses three quarters along the X arrow, drags 10, 20, then 30 pixels to the right and
// releases 40 pixels to the right.
Gesture TranslateAlongX(const Scene& scene) {
    return Gesture{scene.at(UnitAxis(0) * 0.75f),
                   {scene.at(UnitAxis(0) * 0.85f), scene.at(UnitAxis(0) * 0.95f),
                    scene.at(UnitAxis(0) * 1.05f)},
                   scene.at(UnitAxis(0) * 1.15f)};
}

// The point at degrees (counter-clockwise seen from the eye) on the Z circle.
Vec3 OnTheZCircle(double degrees) {
    const double a = degrees * test::csPi / 180.0;
    return Vec3(static_cast<float>(std::cos(a)), static_cast<float>(std::sin(a)), 0.0f);
}

// Presses on the Z circle at 45 degrees, away from the X and Y circles seen edge on, and
// sweeps round it to 60, 75 and 90 degrees, releasing at 100.
Gesture RotateAboutZ(const Scene& scene) {
    return Gesture{
        scene.at(OnTheZCircle(45.0)),
        {scene.at(OnTheZCircle(60.0)), scene.at(OnTheZCircle(75.0)), scene.at(OnTheZCircle(90.0))},
        scene.at(OnTheZCircle(100.0))};
}

// Presses three quarters up the Y axis and drags outwards to 0.9, 1.05 and 1.2 of its length,
// releasing at 1.35.
Gesture ScaleAlongY(const Scene& scene) {
    return Gesture{
        scene.at(UnitAxis(1) * 0.75f),
        {scene.at(UnitAxis(1) * 0.9f), scene.at(UnitAxis(1) * 1.05f), scene.at(UnitAxis(1) * 1.2f)},
        scene.at(UnitAxis(1) * 1.35f)};
}

// Per frame: the press starts the drag, every frame that touched the gizmo announces it, and
// the release ends the drag before the last announcement.
Events ExpectedRecord(const std::string& start, const std::string& end) {
    return Events{start,         "manipulated", "manipulated", "manipulated",
                  "manipulated", end,           "manipulated"};
}

// A gesture of a press, three moves and the release reached the widget whole, and neither the
// objects nor the listener saw anything of it.
void ExpectReachedTheWidgetWholeAndMovedNothing(const QtScene& scene) {
    EXPECT_EQ(
        (std::vector<QEvent::Type>{QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseMove,
                                   QEvent::MouseMove, QEvent::MouseButtonRelease}),
        scene.widget.received);
    EXPECT_TRUE(BitwiseEqual(scene.left->getWorldTransform(), scene.leftAtStart));
    EXPECT_TRUE(BitwiseEqual(scene.right->getWorldTransform(), scene.rightAtStart));
    EXPECT_TRUE(scene.listener.events.empty());
}

TEST(mxQtGestureTest, TranslateDragOnXThroughQtIsConsumedAndEqualsTheDirectCalls) {
    const Events record = DragBothWaysAndCompare(mxGizmoNode::GIZMO_TRANSLATE, &TranslateAlongX);
    EXPECT_EQ(ExpectedRecord("translateStart", "translateEnd"), record);
}

TEST(mxQtGestureTest, TranslateDragOnXMovesTheObjectsAlongXByThePixelsDragged) {
    QtScene scene(mxGizmoNode::GIZMO_TRANSLATE);
    const Gesture gesture = TranslateAlongX(scene);
    Drag(scene, gesture);
    // From 0.75 to 1.15 of the 60-pixel arrow is 24 pixels, give or take the rounding of
    // either end to a widget pixel; in the plane z = 0 ten pixels make one unit.
    const int pixels = gesture.releaseAt.x() - gesture.pressAt.x();
    ASSERT_NEAR(24, pixels, 1);
    const Vec3 moved = scene.right->getWorldTransform().GetTranslate();
    EXPECT_NEAR(2.0f + 0.1f * static_cast<float>(pixels), moved.X(), 1e-4f);
    EXPECT_EQ(0.0f, moved.Y());
    EXPECT_EQ(0.0f, moved.Z());
}

TEST(mxQtGestureTest, RotateDragOnZThroughQtIsConsumedAndEqualsTheDirectCalls) {
    const Events record = DragBothWaysAndCompare(mxGizmoNode::GIZMO_ROTATE, &RotateAboutZ);
    EXPECT_EQ(ExpectedRecord("rotateStart", "rotateEnd"), record);
}

TEST(mxQtGestureTest, RotateDragOnZTurnsTheObjectsByTheSweptAngle) {
    QtScene scene(mxGizmoNode::GIZMO_ROTATE);
    Drag(scene, RotateAboutZ(scene));
    // From 45 to 100 degrees: 55 degrees, a multiple of the 5-degree step, about +Z through
    // the origin. The right object at (2, 0, 0) goes to 2 (cos 55, sin 55, 0).
    const Vec3 turned = scene.right->getWorldTransform().GetTranslate();
    const double a = 55.0 * test::csPi / 180.0;
    EXPECT_NEAR(2.0 * std::cos(a), turned.X(), 1e-5);
    EXPECT_NEAR(2.0 * std::sin(a), turned.Y(), 1e-5);
    EXPECT_NEAR(0.0, turned.Z(), 1e-5);
}

TEST(mxQtGestureTest, ScaleDragOnYThroughQtIsConsumedAndEqualsTheDirectCalls) {
    const Events record = DragBothWaysAndCompare(mxGizmoNode::GIZMO_SCALE, &ScaleAlongY);
    // The scale press announces a translate start as well, on purpose.
    EXPECT_EQ((Events{"translateStart", "scaleStart", "manipulated", "manipulated", "manipulated",
                      "manipulated", "scaleEnd", "manipulated"}),
              record);
}

TEST(mxQtGestureTest, ScaleDragOnYStretchesAlongYOnlyByTheAxisLengthsDragged) {
    QtScene scene(mxGizmoNode::GIZMO_SCALE);
    const Gesture gesture = ScaleAlongY(scene);
    Drag(scene, gesture);
    // From 0.75 to 1.35 of the 60-pixel axis is 36 pixels (widget y grows downwards), give or
    // take the rounding of either end; outwards the factor is 1 plus the axis lengths dragged.
    const int pixels = gesture.pressAt.y() - gesture.releaseAt.y();
    ASSERT_NEAR(36, pixels, 1);
    const float factor = 1.0f + static_cast<float>(pixels) / 60.0f;
    // The objects lie on the X axis through the centre, so they keep their positions.
    const Transform& world = scene.right->getWorldTransform();
    const Vec3 y = world.ApplyForward(Vec3(0.0f, 1.0f, 0.0f), false);
    const Vec3 x = world.ApplyForward(Vec3(1.0f, 0.0f, 0.0f), false);
    EXPECT_NEAR(factor, y.Y(), 1e-4f);
    EXPECT_NEAR(1.0f, x.X(), 1e-5f);
    EXPECT_NEAR(2.0f, world.GetTranslate().X(), 1e-5f);
    EXPECT_NEAR(0.0f, world.GetTranslate().Y(), 1e-5f);
}

TEST(mxQtGestureTest, RightButtonDragOverAHandleReachesTheWidgetAndMovesNothing) {
    QtScene scene(mxGizmoNode::GIZMO_TRANSLATE);
    const Gesture gesture = TranslateAlongX(scene);
    scene.press(gesture.pressAt, Qt::RightButton);
    for (const QPoint& point : gesture.moves) {
        scene.move(point, Qt::RightButton);
    }
    scene.release(gesture.releaseAt, Qt::RightButton);
    ExpectReachedTheWidgetWholeAndMovedNothing(scene);
}

TEST(mxQtGestureTest, LeftDragBegunOffTheGizmosReachesTheWidgetAndMovesNothing) {
    QtScene scene(mxGizmoNode::GIZMO_TRANSLATE);
    // From the upper left corner, across the X arrow and beyond it.
    const Gesture handle = TranslateAlongX(scene);
    Drag(scene, Gesture{QPoint(20, 20),
                        {QPoint(80, 60), handle.pressAt, handle.moves.back()},
                        handle.releaseAt});
    ExpectReachedTheWidgetWholeAndMovedNothing(scene);
}

TEST(mxQtGestureTest, GestureAfterAGestureOffTheGizmosIsConsumedAgain) {
    QtScene scene(mxGizmoNode::GIZMO_TRANSLATE);
    const Gesture handle = TranslateAlongX(scene);
    Drag(scene, Gesture{QPoint(20, 20), {QPoint(30, 30)}, QPoint(40, 40)});
    const std::size_t passedOn = scene.widget.received.size();
    Drag(scene, handle);
    EXPECT_EQ(passedOn, scene.widget.received.size());
    EXPECT_EQ(ExpectedRecord("translateStart", "translateEnd"), scene.listener.events);
}

} // namespace
