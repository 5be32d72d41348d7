// Regression tests for what fuzzing mx::mxGizmoEventsListener found
// (fuzz/mxEventsFilterFuzzer.cpp): mouse events whose positions Qt's rounding to int cannot
// take, a coordinate beyond the range of int or one that is not a number. Qt builds such events
// without complaint, so the filter must take them too. The minimised fuzzer input sits in
// fuzz/corpus/mxEventsFilterFuzzer/regression-*.

#include "qt/mxGizmoEventsListener.h"

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxPointer.h"
#include "scenegraph/mxScene.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "support/mxQtTestSupport.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QPointF>

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

using namespace mx;
using test::csViewHeight;
using test::csViewWidth;
using test::EnsureQtApplication;
using test::MakeObject;
using test::MakeStandardCamera;
using test::RecordingWidget;
using Vec3 = Wm4::Vector3<float>;
using Types = std::vector<QEvent::Type>;

const double csNaN = std::numeric_limits<double>::quiet_NaN();
const double csInfinity = std::numeric_limits<double>::infinity();

// The standard view made orthographic (20 world units across 200 pixels) over a translate gizmo
// at the origin whose expected size is three billion pixels: its X arrow runs along widget row
// 99 from column 100 to beyond the largest int, so the press that counts as the last int column
// of that row lands on it. The filter watches a recording widget.
struct FarReachingGizmo {
    FarReachingGizmo()
        : camera(MakeStandardCamera(false)), cameraNode(new mxCameraNode(camera.get())),
          filter(&engine) {
        EnsureQtApplication();
        camera->setFrustum(-10.0f, 10.0f, -10.0f, 10.0f, 1.0f, 100.0f);
        engine.setViewportSize(csViewWidth, csViewHeight);
        engine.setCameraNode(cameraNode.get());
        object = MakeObject(Vec3(0.0f, 0.0f, 0.0f), engine.getScene());
        gizmo = new mxGizmoNode;
        engine.getScene()->attachChild(gizmo.get());
        gizmo->setMode(mxGizmoNode::GIZMO_TRANSLATE);
        gizmo->setExpectedPixelSize(3e9f);
        gizmo->setReferenceObject(object.get());
        engine.attachController(&controller);
        engine.updateFrame();
        filter.setController(&controller);
        widget = std::make_unique<RecordingWidget>();
        widget->installEventFilter(&filter);
    }
    ~FarReachingGizmo() {
        widget.reset();
        engine.detachController(&controller);
    }

    // Sends a left-button mouse event of type at the widget position (x, y); the global
    // position is an ordinary one.
    void send(QEvent::Type type, double x, double y) {
        const Qt::MouseButtons buttons =
            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, QPointF(x, y), QPointF(0.0, 0.0),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(widget.get(), &event);
    }

    mxEngine engine;
    mxPointer<mxCamera> camera;
    mxPointer<mxCameraNode> cameraNode;
    mxPointer<mxMesh> object;
    mxPointer<mxGizmoNode> gizmo;
    mxGizmoController controller;
    mxGizmoEventsListener filter;
    std::unique_ptr<RecordingWidget> widget;
};

// A press far to the right of every int counts as the last int column, not as an undefined
// one: on the far-reaching X arrow it is the gizmo's, and the widget never sees it.
TEST(mxGizmoEventsListenerHardeningTest, PressBeyondTheLargestIntColumnIsTakenAtThatColumn) {
    FarReachingGizmo view;

    view.send(QEvent::MouseButtonPress, 1e300, 99.0);

    EXPECT_EQ(view.widget->received, Types());
}

// The same for a press at positive infinity, and a press at negative infinity falls on the first
// int column, far to the left of the gizmo: the widget gets it.
TEST(mxGizmoEventsListenerHardeningTest, PressesAtTheInfinitiesAreTakenAtTheIntLimits) {
    FarReachingGizmo view;

    view.send(QEvent::MouseButtonPress, csInfinity, 99.0);
    view.send(QEvent::MouseButtonRelease, 130.0, 99.0);
    view.send(QEvent::MouseButtonPress, -csInfinity, 99.0);

    EXPECT_EQ(view.widget->received, Types({QEvent::MouseButtonPress}));
}

// A move or a release at a position that is not a number names no pixel: it passes on to the
// widget even during a gesture on the gizmo, and the gesture goes on; the next real release ends
// it.
TEST(mxGizmoEventsListenerHardeningTest,
     EventsAtPositionsThatAreNotNumbersPassOnAndTheGestureGoesOn) {
    FarReachingGizmo view;

    view.send(QEvent::MouseButtonPress, 130.0, 99.0);
    view.send(QEvent::MouseMove, csNaN, 99.0);
    view.send(QEvent::MouseMove, 140.0, csNaN);
    view.send(QEvent::MouseButtonRelease, csNaN, csNaN);
    view.send(QEvent::MouseMove, 140.0, 99.0);
    view.send(QEvent::MouseButtonRelease, 140.0, 99.0);
    view.send(QEvent::MouseButtonPress, csNaN, 99.0);

    EXPECT_EQ(view.widget->received, Types({QEvent::MouseMove, QEvent::MouseMove,
                                            QEvent::MouseButtonRelease, QEvent::MouseButtonPress}));
}

} // namespace
