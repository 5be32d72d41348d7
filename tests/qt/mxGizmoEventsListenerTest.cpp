// Tests for the Qt event filter on its own: its meta-object, and which events it hands to the
// gizmo controller and which it keeps from the widget. The widget is never shown:
// QCoreApplication::sendEvent runs the installed filter before the widget sees the event, and
// the widget records what reaches it.
#include "qt/mxGizmoEventsListener.h"

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxEngineInterface.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "e2e/mxGestureSupport.h"
#include "node/mxGizmoNodeTestSupport.h"
#include "support/mxQtTestSupport.h"
#include "support/mxTransformCompare.h"

#include <QCoreApplication>
#include <QEnterEvent>
#include <QEvent>
#include <QKeyEvent>
#include <QMetaObject>
#include <QMouseEvent>
#include <QObject>
#include <QPoint>
#include <QPointF>
#include <QString>
#include <QWheelEvent>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using namespace mx;
using test::BitwiseEqual;
using test::csViewHeight;
using test::csViewWidth;
using test::EnsureQtApplication;
using test::MakeStandardCamera;
using test::PixelOf;
using test::RecordingWidget;
using test::ShowsHover;
using test::TwoObjectScene;
using test::UnitAxis;
using test::WidgetPoint;
using Vec3 = Wm4::Vector3<float>;

// What became of an event sent to the widget.
constexpr bool csPassedOn = true;
constexpr bool csConsumed = false;

// The standard view (200 x 200 pixels, 90 degrees, eye at (0, 0, 10)) over a translate gizmo
// framed by the first frame around two objects 2 units either side of the origin. At depth 10
// its 60-pixel arrows are 6 units long: the X arrow runs from pixel (100, 100) to (160, 100)
// from the lower left, so three quarters along it the mouse is on X and 45 pixels from the
// other arrows, and the corner at widget pixel (20, 20) is far from every handle.
struct Scene : TwoObjectScene {
    explicit Scene(bool withController = true)
        : TwoObjectScene(mxGizmoNode::GIZMO_TRANSLATE), filter(&engine) {
        if (withController) {
            filter.setController(&controller);
        }
        widget.installEventFilter(&filter);
    }

    // The world point fraction of the way along axis of the placed gizmo.
    Vec3 alongAxis(unsigned int axis, float fraction = 0.75f) const {
        return gizmo->getWorldTransform().ApplyForward(UnitAxis(axis) * fraction);
    }
    // Three quarters along the X arrow, in widget pixels.
    QPoint onX() const { return WidgetPoint(PixelOf(*viewCamera(), alongAxis(0))); }
    QPoint offGizmos() const { return QPoint(20, 20); }

    // Each sends one event through the filter and tells what became of it.
    bool press(const QPoint& at, Qt::MouseButton button = Qt::LeftButton) {
        QMouseEvent event(QEvent::MouseButtonPress, QPointF(at), QPointF(at), button, button,
                          Qt::NoModifier);
        return deliver(event);
    }
    bool move(const QPoint& at, Qt::MouseButtons held = Qt::NoButton) {
        QMouseEvent event(QEvent::MouseMove, QPointF(at), QPointF(at), Qt::NoButton, held,
                          Qt::NoModifier);
        return deliver(event);
    }
    bool release(const QPoint& at, Qt::MouseButton button = Qt::LeftButton) {
        QMouseEvent event(QEvent::MouseButtonRelease, QPointF(at), QPointF(at), button,
                          Qt::NoButton, Qt::NoModifier);
        return deliver(event);
    }
    bool deliver(QEvent& event) {
        const std::size_t before = widget.received.size();
        QCoreApplication::sendEvent(&widget, &event);
        return widget.received.size() > before;
    }

    // Success when axis is picked and shown in its hovered shade, the other arrows in their
    // normal colours; with axis -1, when no handle is picked and every arrow shows its normal
    // colour.
    ::testing::AssertionResult hovered(int axis) const {
        if (controller.getPickedAxeIndex(gizmo.get()) != axis) {
            return ::testing::AssertionFailure()
                   << "axis " << controller.getPickedAxeIndex(gizmo.get()) << " is picked";
        }
        return ShowsHover(*gizmo, axis);
    }
    // The objects are where the first frame left them, bit for bit.
    bool objectsUnmoved() const {
        return BitwiseEqual(left->getWorldTransform(), leftAtStart) &&
               BitwiseEqual(right->getWorldTransform(), rightAtStart);
    }

    QApplication& application = EnsureQtApplication();
    RecordingWidget widget;
    mxGizmoEventsListener filter;
};

// ---------------------------------------------------------------------------------------------
// Meta-object

TEST(mxGizmoEventsListenerTest, MetaObjectNamesTheClassInItsNamespace) {
    EnsureQtApplication();
    mxEngine engine;
    mxGizmoEventsListener listener(&engine);
    EXPECT_STREQ("mx::mxGizmoEventsListener", listener.metaObject()->className());
    EXPECT_STREQ("mx::mxGizmoEventsListener", mxGizmoEventsListener::staticMetaObject.className());
    EXPECT_STREQ("QObject", listener.metaObject()->superClass()->className());
}

TEST(mxGizmoEventsListenerTest, MetacastGivesTheObjectForItsOwnNameAndForQObject) {
    EnsureQtApplication();
    mxEngine engine;
    mxGizmoEventsListener listener(&engine);
    EXPECT_EQ(static_cast<void*>(&listener), listener.qt_metacast("mx::mxGizmoEventsListener"));
    EXPECT_EQ(static_cast<void*>(static_cast<QObject*>(&listener)),
              listener.qt_metacast("QObject"));
}

TEST(mxGizmoEventsListenerTest, MetacastGivesNullForANullOrUnknownName) {
    EnsureQtApplication();
    mxEngine engine;
    mxGizmoEventsListener listener(&engine);
    EXPECT_EQ(nullptr, listener.qt_metacast(nullptr));
    EXPECT_EQ(nullptr, listener.qt_metacast("mxGizmoEventsListener"));
    EXPECT_EQ(nullptr, listener.qt_metacast("QWidget"));
}

TEST(mxGizmoEventsListenerTest, InheritsQObject) {
    EnsureQtApplication();
    mxEngine engine;
    mxGizmoEventsListener listener(&engine);
    EXPECT_TRUE(listener.inherits("QObject"));
    EXPECT_TRUE(listener.inherits("mx::mxGizmoEventsListener"));
    EXPECT_FALSE(listener.inherits("QWidget"));
}

TEST(mxGizmoEventsListenerTest, TranslationsGiveTheTextBackWithoutTranslator) {
    EnsureQtApplication();
    EXPECT_EQ(QString("Move along X"), mxGizmoEventsListener::tr("Move along X"));
    EXPECT_EQ(QString("Move along X"), mxGizmoEventsListener::tr("Move along X", "gizmo"));
    EXPECT_EQ(QString("Move along X"), mxGizmoEventsListener::tr("Move along X", "gizmo", 2));
    EXPECT_EQ(QString("Move along X"), mxGizmoEventsListener::trUtf8("Move along X"));
    EXPECT_EQ(QString("Move along X"), mxGizmoEventsListener::trUtf8("Move along X", "gizmo"));
    EXPECT_EQ(QString("Move along X"), mxGizmoEventsListener::trUtf8("Move along X", "gizmo", 2));
    // Non-ASCII text comes back intact: the sources are UTF-8.
    EXPECT_EQ(QString::fromUtf8("Tourner de 90\u00b0"),
              mxGizmoEventsListener::trUtf8("Tourner de 90\u00b0"));
}

TEST(mxGizmoEventsListenerTest, TranslationsWithACountPutTheCountInPlaceOfPercentN) {
    EnsureQtApplication();
    EXPECT_EQ(QString("3 objects moved"),
              mxGizmoEventsListener::tr("%n objects moved", nullptr, 3));
    EXPECT_EQ(QString("3 objects moved"),
              mxGizmoEventsListener::trUtf8("%n objects moved", nullptr, 3));
}

TEST(mxGizmoEventsListenerTest, NewListenerHasNoParentAndNoController) {
    EnsureQtApplication();
    mxEngine engine;
    mxGizmoEventsListener listener(&engine);
    EXPECT_EQ(nullptr, listener.parent());
    EXPECT_EQ(nullptr, listener.getController());
}

TEST(mxGizmoEventsListenerTest, SetControllerStoresIt) {
    EnsureQtApplication();
    mxEngine engine;
    mxGizmoController controller;
    mxGizmoEventsListener listener(&engine);
    listener.setController(&controller);
    EXPECT_EQ(&controller, listener.getController());
    listener.setController(nullptr);
    EXPECT_EQ(nullptr, listener.getController());
}

// ---------------------------------------------------------------------------------------------
// Without a controller

TEST(mxGizmoEventsListenerTest, WithoutControllerEveryEventOnTheGizmoPassesOn) {
    Scene scene(false);
    EXPECT_EQ(csPassedOn, scene.move(scene.onX()));
    EXPECT_EQ(csPassedOn, scene.press(scene.onX()));
    EXPECT_EQ(csPassedOn, scene.move(scene.onX() + QPoint(10, 0), Qt::LeftButton));
    EXPECT_EQ(csPassedOn, scene.release(scene.onX() + QPoint(10, 0)));
    EXPECT_EQ((std::vector<QEvent::Type>{QEvent::MouseMove, QEvent::MouseButtonPress,
                                         QEvent::MouseMove, QEvent::MouseButtonRelease}),
              scene.widget.received);
}

TEST(mxGizmoEventsListenerTest, ControllerSetAfterEventsPassedWithoutOneReplaysNothing) {
    Scene scene(false);
    scene.move(scene.onX());
    scene.press(scene.onX());
    scene.move(scene.onX() + QPoint(10, 0), Qt::LeftButton);
    scene.release(scene.onX() + QPoint(10, 0));
    scene.filter.setController(&scene.controller);
    scene.engine.updateFrame();
    EXPECT_TRUE(scene.hovered(-1));
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_TRUE(scene.objectsUnmoved());
}

// ---------------------------------------------------------------------------------------------
// Buttons

TEST(mxGizmoEventsListenerTest, RightPressOnTheGizmoPassesOnAndReachesNoController) {
    Scene scene;
    EXPECT_EQ(csPassedOn, scene.press(scene.onX(), Qt::RightButton));
    scene.engine.updateFrame();
    // A recorded press would have hovered X and started a drag there.
    EXPECT_TRUE(scene.hovered(-1));
    EXPECT_TRUE(scene.listener.events.empty());
    // No press on a gizmo was recorded, so the gesture is not the gizmo's.
    EXPECT_EQ(csPassedOn, scene.release(scene.onX()));
}

TEST(mxGizmoEventsListenerTest, MiddlePressOnTheGizmoPassesOnAndReachesNoController) {
    Scene scene;
    EXPECT_EQ(csPassedOn, scene.press(scene.onX(), Qt::MiddleButton));
    scene.engine.updateFrame();
    EXPECT_TRUE(scene.hovered(-1));
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_EQ(csPassedOn, scene.release(scene.onX()));
}

TEST(mxGizmoEventsListenerTest, RightReleaseDuringALeftGesturePassesOnAndKeepsTheGesture) {
    Scene scene;
    ASSERT_EQ(csConsumed, scene.press(scene.onX()));
    EXPECT_EQ(csPassedOn, scene.release(scene.onX(), Qt::RightButton));
    // Had the right release reached the controller, it would have ended the gesture.
    EXPECT_EQ(csConsumed, scene.move(scene.onX(), Qt::LeftButton));
    EXPECT_EQ(csConsumed, scene.release(scene.onX()));
}

TEST(mxGizmoEventsListenerTest, LeftPressOnTheGizmoIsConsumed) {
    Scene scene;
    EXPECT_EQ(csConsumed, scene.press(scene.onX()));
    EXPECT_TRUE(scene.widget.received.empty());
    scene.engine.updateFrame();
    // The press reached the controller: it picked X and started a translation.
    EXPECT_TRUE(scene.hovered(0));
    EXPECT_EQ((std::vector<std::string>{"translateStart", "manipulated"}), scene.listener.events);
}

TEST(mxGizmoEventsListenerTest, LeftGestureBegunOffTheGizmosPassesOnWholeEvenAcrossAHandle) {
    Scene scene;
    EXPECT_EQ(csPassedOn, scene.press(scene.offGizmos()));
    EXPECT_EQ(csPassedOn, scene.move(scene.onX(), Qt::LeftButton));
    EXPECT_EQ(csPassedOn, scene.move(scene.onX() + QPoint(10, 0), Qt::LeftButton));
    EXPECT_EQ(csPassedOn, scene.release(scene.onX() + QPoint(10, 0)));
    scene.engine.updateFrame();
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_TRUE(scene.objectsUnmoved());
}

TEST(mxGizmoEventsListenerTest, LeftReleaseAfterAPressOnTheGizmoIsConsumedOnce) {
    Scene scene;
    ASSERT_EQ(csConsumed, scene.press(scene.onX()));
    EXPECT_EQ(csConsumed, scene.release(scene.onX()));
    EXPECT_EQ(csPassedOn, scene.release(scene.onX()));
    EXPECT_EQ(std::vector<QEvent::Type>{QEvent::MouseButtonRelease}, scene.widget.received);
}

// ---------------------------------------------------------------------------------------------
// Moves

TEST(mxGizmoEventsListenerTest, MoveWithoutButtonBeforeAnyPressPassesOnAndIsRecordedForHover) {
    Scene scene;
    ASSERT_TRUE(scene.hovered(-1));
    EXPECT_EQ(csPassedOn, scene.move(scene.onX()));
    scene.engine.updateFrame();
    EXPECT_TRUE(scene.hovered(0));
    // Hovering touches no gizmo.
    EXPECT_TRUE(scene.listener.events.empty());
}

TEST(mxGizmoEventsListenerTest, MoveOffTheHandleIsRecordedTooAndPutsTheColoursBack) {
    Scene scene;
    scene.move(scene.onX());
    scene.engine.updateFrame();
    ASSERT_TRUE(scene.hovered(0));
    EXPECT_EQ(csPassedOn, scene.move(scene.offGizmos()));
    scene.engine.updateFrame();
    EXPECT_TRUE(scene.hovered(-1));
}

TEST(mxGizmoEventsListenerTest, MovesAfterALeftPressOnTheGizmoAreConsumedWhateverTheButtons) {
    Scene scene;
    ASSERT_EQ(csConsumed, scene.press(scene.onX()));
    EXPECT_EQ(csConsumed, scene.move(scene.onX() + QPoint(10, 0), Qt::LeftButton));
    EXPECT_EQ(csConsumed, scene.move(scene.onX() + QPoint(20, 0), Qt::NoButton));
    EXPECT_EQ(csConsumed,
              scene.move(scene.onX() + QPoint(30, 0), Qt::LeftButton | Qt::RightButton));
    EXPECT_TRUE(scene.widget.received.empty());
}

TEST(mxGizmoEventsListenerTest, MovesAfterTheReleaseOfAGizmoGesturePassOnAgain) {
    Scene scene;
    ASSERT_EQ(csConsumed, scene.press(scene.onX()));
    ASSERT_EQ(csConsumed, scene.release(scene.onX()));
    EXPECT_EQ(csPassedOn, scene.move(scene.onX()));
    EXPECT_EQ(csPassedOn, scene.move(scene.onX(), Qt::LeftButton));
}

TEST(mxGizmoEventsListenerTest, MovesOfAGizmoGestureDriveTheDrag) {
    Scene scene;
    const Vec3 rightBefore = scene.right->getWorldTransform().GetTranslate();
    scene.press(scene.onX());
    scene.engine.updateFrame();
    scene.move(scene.onX() + QPoint(20, 0), Qt::LeftButton);
    scene.engine.updateFrame();
    // 20 pixels at depth 10 are 2 units along X.
    const Vec3 rightAfter = scene.right->getWorldTransform().GetTranslate();
    EXPECT_NEAR(rightBefore.X() + 2.0f, rightAfter.X(), 1e-4f);
    EXPECT_EQ(rightBefore.Y(), rightAfter.Y());
    EXPECT_EQ(rightBefore.Z(), rightAfter.Z());
}

// ---------------------------------------------------------------------------------------------
// Other events

TEST(mxGizmoEventsListenerTest, OtherEventTypesOnTheGizmoPassOnAndRecordNothing) {
    Scene scene;
    const QPointF at(scene.onX());
    QKeyEvent key(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, "x");
    QMouseEvent doubleClick(QEvent::MouseButtonDblClick, at, at, Qt::LeftButton, Qt::LeftButton,
                            Qt::NoModifier);
    QWheelEvent wheel(at, at, QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QEnterEvent enter(at, at, at);
    EXPECT_EQ(csPassedOn, scene.deliver(key));
    EXPECT_EQ(csPassedOn, scene.deliver(doubleClick));
    EXPECT_EQ(csPassedOn, scene.deliver(wheel));
    EXPECT_EQ(csPassedOn, scene.deliver(enter));
    scene.engine.updateFrame();
    // Neither a hover nor a press was recorded, and the gesture flag is still clear.
    EXPECT_TRUE(scene.hovered(-1));
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_EQ(csPassedOn, scene.release(scene.onX()));
}

TEST(mxGizmoEventsListenerTest, DoubleClickDuringAGizmoGesturePassesOn) {
    Scene scene;
    ASSERT_EQ(csConsumed, scene.press(scene.onX()));
    const QPointF at(scene.onX());
    QMouseEvent doubleClick(QEvent::MouseButtonDblClick, at, at, Qt::LeftButton, Qt::LeftButton,
                            Qt::NoModifier);
    EXPECT_EQ(csPassedOn, scene.deliver(doubleClick));
}

// ---------------------------------------------------------------------------------------------
// The view of a press

TEST(mxGizmoEventsListenerTest, PressIsHitTestedAgainstTheEnginesViewportSizeNotTheWidgets) {
    Scene scene;
    // The gizmo keeps the frame the 200-pixel view gave it; in a 400 x 400 view the same
    // world points lie twice as far from the lower left.
    scene.engine.setViewportSize(400, 400);
    const QPoint onXFor200 = scene.onX();
    const QPoint onXFor400 =
        WidgetPoint(PixelOf(*scene.viewCamera(), scene.alongAxis(0), 400, 400), 400);
    ASSERT_EQ(QPoint(145, 99), onXFor200);
    ASSERT_EQ(QPoint(290, 199), onXFor400);
    // (145, 99) is now pixel (145.5, 300.5), about 100 pixels from every arrow.
    EXPECT_EQ(csPassedOn, scene.press(onXFor200));
    EXPECT_EQ(csPassedOn, scene.release(onXFor200));
    // (290, 199) would lie off the 200-pixel view altogether.
    EXPECT_EQ(csConsumed, scene.press(onXFor400));
    EXPECT_EQ(csConsumed, scene.release(onXFor400));
}

TEST(mxGizmoEventsListenerTest, PressIsHitTestedWithTheEnginesCurrentCamera) {
    Scene scene;
    const QPoint onXFromTheStandardEye = scene.onX();
    // The eye moved 3 units right: the gizmo now appears 30 pixels further left, with its X
    // arrow from pixel 70 to 130, 15 pixels short of the old point.
    mxPointer<mxCamera> shifted = MakeStandardCamera();
    shifted->setFrame(Vec3(3.0f, 0.0f, 10.0f), Vec3(0.0f, 0.0f, -1.0f), Vec3(0.0f, 1.0f, 0.0f),
                      Vec3(1.0f, 0.0f, 0.0f));
    ASSERT_TRUE(scene.engine.setCameraNode(new mxCameraNode(shifted.get())));
    // Three quarters up the Y arrow, seen from the moved eye: pixel (70, 145), 30 pixels
    // from where the standard eye sees the Y arrow.
    const QPoint onYFromTheShiftedEye = WidgetPoint(PixelOf(*shifted, scene.alongAxis(1)));
    ASSERT_EQ(QPoint(70, 54), onYFromTheShiftedEye);
    EXPECT_EQ(csPassedOn, scene.press(onXFromTheStandardEye));
    EXPECT_EQ(csPassedOn, scene.release(onXFromTheStandardEye));
    EXPECT_EQ(csConsumed, scene.press(onYFromTheShiftedEye));
    EXPECT_EQ(csConsumed, scene.release(onYFromTheShiftedEye));
}

// Without an engine, or with an engine that has no camera node, no press can be hit-tested
// against the view: it is not the gizmos', and passes on.

TEST(mxGizmoEventsListenerTest, ListenerWithoutAnEngineLetsPressesOnTheGizmoPassOn) {
    Scene scene;
    mxGizmoEventsListener blind(nullptr);
    blind.setController(&scene.controller);
    scene.widget.removeEventFilter(&scene.filter);
    scene.widget.installEventFilter(&blind);

    EXPECT_EQ(csPassedOn, scene.press(scene.onX()));
    EXPECT_EQ(csPassedOn, scene.move(scene.onX() + QPoint(20, 0), Qt::LeftButton));
    EXPECT_EQ(csPassedOn, scene.release(scene.onX() + QPoint(20, 0)));
    // The press never reached the controller: the frame replays only the move and the
    // release, which drag nothing.
    scene.engine.updateFrame();
    EXPECT_TRUE(scene.listener.events.empty());
    EXPECT_TRUE(scene.objectsUnmoved());
}

// An engine of the host's interface that has neither a scene nor a camera node yet.
class EngineWithoutCamera : public mxEngineInterface {
public:
    void getViewportSize(int& width, int& height) const override {
        width = csViewWidth;
        height = csViewHeight;
    }
};

TEST(mxGizmoEventsListenerTest, PressWithAnEngineWithoutCameraNodeIsOnNoGizmoAndPassesOn) {
    Scene scene;
    ASSERT_EQ(csConsumed, scene.press(scene.onX()));
    ASSERT_EQ(csConsumed, scene.release(scene.onX()));
    EngineWithoutCamera bare;
    mxGizmoEventsListener filter(&bare);
    filter.setController(&scene.controller);
    scene.widget.removeEventFilter(&scene.filter);
    scene.widget.installEventFilter(&filter);

    EXPECT_EQ(csPassedOn, scene.press(scene.onX()));
    EXPECT_EQ(csPassedOn, scene.release(scene.onX()));
}

// The filter with its event hook opened, as Qt calls it.
class OpenFilter : public mxGizmoEventsListener {
public:
    using mxGizmoEventsListener::eventFilter;
    using mxGizmoEventsListener::mxGizmoEventsListener;
};

TEST(mxGizmoEventsListenerTest, NullEventPassesOnAndRecordsNothing) {
    Scene scene;
    OpenFilter filter(&scene.engine);
    filter.setController(&scene.controller);
    EXPECT_FALSE(filter.eventFilter(&scene.widget, nullptr));
    EXPECT_FALSE(filter.eventFilter(nullptr, nullptr));
    scene.engine.updateFrame();
    EXPECT_TRUE(scene.hovered(-1));
    EXPECT_TRUE(scene.listener.events.empty());
}

// ---------------------------------------------------------------------------------------------
// Lifetime

TEST(mxGizmoEventsListenerTest, DestroyedListenerLeavesTheWidgetItsEventsAndTheControllerUsable) {
    Scene scene;
    auto second = std::make_unique<mxGizmoEventsListener>(&scene.engine);
    second->setController(&scene.controller);
    scene.widget.removeEventFilter(&scene.filter);
    scene.widget.installEventFilter(second.get());
    ASSERT_EQ(csConsumed, scene.press(scene.onX()));
    ASSERT_EQ(csConsumed, scene.release(scene.onX()));
    second.reset();
    // No filter any more: the widget gets the whole gesture.
    EXPECT_EQ(csPassedOn, scene.press(scene.onX()));
    EXPECT_EQ(csPassedOn, scene.release(scene.onX()));
    // The controller and the engine still work: the frame replays the first gesture, all
    // recorded before it, and a gesture given directly runs as well.
    const std::vector<std::string> oneGesture{"translateStart", "translateEnd", "manipulated"};
    scene.engine.updateFrame();
    EXPECT_EQ(oneGesture, scene.listener.events);
    const QPoint at = scene.onX();
    EXPECT_TRUE(scene.controller.setMousePressed(scene.viewCamera(), at.x(), at.y(), csViewWidth,
                                                 csViewHeight));
    EXPECT_TRUE(scene.controller.setMouseReleased(at.x(), at.y()));
    scene.engine.updateFrame();
    std::vector<std::string> twoGestures = oneGesture;
    twoGestures.insert(twoGestures.end(), oneGesture.begin(), oneGesture.end());
    EXPECT_EQ(twoGestures, scene.listener.events);
}

} // namespace
