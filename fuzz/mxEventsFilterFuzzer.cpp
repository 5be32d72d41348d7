// mxEventsFilterFuzzer: mxGizmoEventsListener fed arbitrary Qt events.
//
// The filter is installed on a plain QObject and every event is delivered with
// QCoreApplication::sendEvent, so the protected eventFilter is reached the way Qt reaches it.
// Behind the filter runs a real engine with a controller and one or two gizmos, so that presses
// can land on handles and the recorded events are replayed in engine frames.
//
// The bytes decode a viewport, a camera and the gizmos (modes, sizes, positions), whether the
// filter starts with a controller, then up to 256 operations: mouse events (QMouseEvent) of any
// type value with any button, button set and modifiers, at positions aimed at a handle or
// anywhere a double can say (NaN, infinities, beyond int); other events (QEvent) of any type
// value but the three the filter reads as mouse events; engine frames; the controller taken
// away and given back; camera and viewport changes, the camera taken away; and the listener's
// meta-object calls (tr, qt_metacast) with arbitrary strings.
//
// Checked, because the library promises it: without a controller nothing is consumed, nor an
// event at a position that is not a number (the controller never hears of it); events
// other than mouse presses, releases and moves are never consumed, nor presses and releases of
// another button than the left one; a move is consumed exactly while the last left press was,
// and so is a left release, once; qt_metacast answers null for a null name and the listener
// itself for its own class name.

#include "mxFuzzInput.h"

#include "controller/mxGizmoController.h"
#include "node/mxGizmoNode.h"
#include "qt/mxGizmoEventsListener.h"
#include "rendering/mxEngine.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxMesh.h"
#include "scenegraph/mxPointer.h"
#include "system/mxLog.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QMetaObject>
#include <QMouseEvent>
#include <QObject>
#include <QPointF>
#include <QString>
#include <QtGlobal>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

using mx::fuzz::HandlePoint;
using mx::fuzz::mxFuzzInput;
using mx::fuzz::WindowPositionOf;
using Vector = Wm4::Vector3<float>;

// The object the filter watches: it takes every event that gets past the filter and counts it,
// so that a consumed event is one it never saw. It handles nothing itself, whatever the type.
class Receiver : public QObject {
public:
    bool event(QEvent*) override {
        ++delivered;
        return true;
    }
    int delivered = 0;
};

// The types an event of class QMouseEvent may carry, the three the filter reads first.
const QEvent::Type csMouseTypes[] = {QEvent::MouseButtonPress,
                                     QEvent::MouseButtonRelease,
                                     QEvent::MouseMove,
                                     QEvent::MouseButtonDblClick,
                                     QEvent::NonClientAreaMouseMove,
                                     QEvent::NonClientAreaMouseButtonPress,
                                     QEvent::NonClientAreaMouseButtonRelease,
                                     QEvent::NonClientAreaMouseButtonDblClick};

bool IsFilteredMouseType(int type) {
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease ||
           type == QEvent::MouseMove;
}

class Session {
public:
    explicit Session(mxFuzzInput& input)
        : input(input), camera(new mx::mxCamera(true)),
          cameraNode(new mx::mxCameraNode(camera.get())), filter(&engine) {
        engine.setCameraNode(cameraNode.get());
        engine.attachController(&controller);
        chooseView();
        const int gizmoCount = input.integer<int>(1, 2);
        for (int i = 0; i < gizmoCount; ++i) {
            addGizmo(i);
        }
        if (input.choice(5) != 4) {
            filter.setController(&controller);
        }
        receiver.installEventFilter(&filter);
        engine.updateFrame();
        engine.updateFrame();
    }

    ~Session() { engine.detachController(&controller); }

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void run() {
        for (int i = 0; i < 256 && !input.exhausted(); ++i) {
            step();
        }
        engine.updateFrame();
    }

private:
    void chooseView() {
        static const int csSizes[][2] = {{200, 200}, {640, 480}, {0, 0},
                                         {1, 1},     {0, 200},   {200, 0}};
        const int which = input.choice(7);
        if (which < 6) {
            engine.setViewportSize(csSizes[which][0], csSizes[which][1]);
        } else {
            engine.setViewportSize(input.anyInteger<int>(), input.anyInteger<int>());
        }
        camera->setPerspective(input.choice(4) != 3);
        switch (input.choice(4)) {
        case 0:
            // The standard view: eye on +Z looking down -Z, a 90-degree field of view.
            camera->setFrame(Vector(0.0f, 0.0f, 10.0f), Vector(0.0f, 0.0f, -1.0f),
                             Vector(0.0f, 1.0f, 0.0f), Vector(1.0f, 0.0f, 0.0f));
            camera->setFrustum(90.0f, 1.0f, 1.0f, 100.0f);
            break;
        case 1: {
            const Vector eye = input.niceVector();
            const Vector target = input.niceVector();
            camera->lookAt(eye, target, Vector(0.0f, 1.0f, 0.0f));
            break;
        }
        case 2: {
            const Vector location = input.anyVector();
            const Vector d = input.anyVector();
            const Vector u = input.anyVector();
            const Vector r = input.anyVector();
            camera->setFrame(location, d, u, r);
            break;
        }
        default: {
            float values[6];
            for (float& value : values) {
                value = input.anyFloat();
            }
            camera->setFrustum(values[0], values[1], values[2], values[3], values[4], values[5]);
            break;
        }
        }
    }

    void addGizmo(int index) {
        mx::mxPointer<mx::mxMesh> object = new mx::mxMesh(3u, 1u);
        object->editLocalTransform(true).SetTranslate(input.flag() ? input.anyVector()
                                                                   : input.niceVector());
        engine.getScene()->attachChild(object.get());
        mx::mxPointer<mx::mxGizmoNode> gizmo = new mx::mxGizmoNode();
        const int modes[] = {mx::mxGizmoNode::GIZMO_TRANSLATE, mx::mxGizmoNode::GIZMO_ROTATE,
                             mx::mxGizmoNode::GIZMO_SCALE, mx::mxGizmoNode::GIZMO_NONE};
        gizmo->setMode(static_cast<mx::mxGizmoNode::GizmoMode>(modes[input.choice(4)]));
        if (input.choice(4) == 0) {
            gizmo->setExpectedPixelSize(input.anyFloat());
        }
        gizmo->setReferenceObject(object.get());
        engine.getScene()->attachChild(gizmo.get());
        gizmos[index] = gizmo;
    }

    // A widget position: on a handle of a gizmo (with a fraction of a pixel added), or any
    // pair of doubles.
    QPointF choosePosition() {
        if (input.choice(3) != 0) {
            const mx::mxGizmoNode* gizmo = gizmos[input.integer<int>(0, 1)].get();
            const mx::mxCamera* view = engine.getCameraNode()->getCamera();
            const int handle = input.integer<int>(0, 5);
            const float along = handle < 3 ? 0.1f * static_cast<float>(input.integer<int>(0, 15))
                                           : 9.0f * static_cast<float>(input.integer<int>(0, 39));
            int width = 0;
            int height = 0;
            engine.getViewportSize(width, height);
            double x = 0.0;
            double y = 0.0;
            if (gizmo && view &&
                WindowPositionOf(
                    *view, gizmo->getWorldTransform().ApplyForward(HandlePoint(handle, along)),
                    width, height, x, y)) {
                static constexpr double csFractions[] = {0.0, 0.25, 0.49, 0.5, -0.5, -0.49};
                return QPointF(std::round(x) + csFractions[input.integer<std::size_t>(0, 5)],
                               std::round(y) + csFractions[input.integer<std::size_t>(0, 5)]);
            }
        }
        const double x = input.anyDouble();
        const double y = input.anyDouble();
        return QPointF(x, y);
    }

    Qt::MouseButton chooseButton() {
        static const Qt::MouseButton csButtons[] = {Qt::LeftButton,   Qt::RightButton,
                                                    Qt::MiddleButton, Qt::NoButton,
                                                    Qt::BackButton,   Qt::LeftButton};
        const int which = input.choice(7);
        if (which < 6) {
            return csButtons[which];
        }
        return static_cast<Qt::MouseButton>(input.anyInteger<std::uint32_t>());
    }

    void sendMouseEvent() {
        const int which = input.choice(10);
        const int type = which < 8 ? csMouseTypes[which] : input.integer<int>(0, 65535);
        const QPointF position = choosePosition();
        const QPointF global = input.flag() ? position : choosePosition();
        const Qt::MouseButton button = chooseButton();
        const Qt::MouseButtons buttons =
            input.flag() ? Qt::MouseButtons(button)
                         : Qt::MouseButtons::fromInt(input.anyInteger<std::uint32_t>());
        const Qt::KeyboardModifiers modifiers =
            input.flag() ? Qt::NoModifier
                         : Qt::KeyboardModifiers::fromInt(input.anyInteger<std::uint32_t>());
        QMouseEvent event(static_cast<QEvent::Type>(type), position, global, button, buttons,
                          modifiers);

        const bool consumed = deliver(event);
        // Without a controller, or at a position that is not a number, the event passes on
        // and the controller hears nothing.
        if (!filter.getController() || std::isnan(position.x()) || std::isnan(position.y())) {
            MX_FUZZ_CHECK(!consumed);
            return;
        }
        switch (type) {
        case QEvent::MouseButtonPress:
            if (button != Qt::LeftButton) {
                MX_FUZZ_CHECK(!consumed);
            } else {
                pressedOnGizmo = consumed;
            }
            break;
        case QEvent::MouseButtonRelease:
            if (button != Qt::LeftButton) {
                MX_FUZZ_CHECK(!consumed);
            } else {
                MX_FUZZ_CHECK(consumed == pressedOnGizmo);
                pressedOnGizmo = false;
            }
            break;
        case QEvent::MouseMove:
            MX_FUZZ_CHECK(consumed == pressedOnGizmo);
            break;
        default:
            MX_FUZZ_CHECK(!consumed);
            break;
        }
    }

    void sendOtherEvent() {
        int type = input.integer<int>(0, 65535);
        if (IsFilteredMouseType(type)) {
            // A plain QEvent may not claim to be a mouse event: Qt itself casts by type.
            type = QEvent::KeyPress;
        }
        QEvent event(static_cast<QEvent::Type>(type));
        MX_FUZZ_CHECK(!deliver(event));
    }

    // Sends event to the receiver through the filter; true when the filter consumed it.
    bool deliver(QEvent& event) {
        const int before = receiver.delivered;
        QCoreApplication::sendEvent(&receiver, &event);
        return receiver.delivered == before;
    }

    void metaObjectCalls() {
        const std::string text = input.flag() ? std::string("Move") : randomText();
        const std::string comment = randomText();
        const bool withComment = input.flag();
        (void)mx::mxGizmoEventsListener::trUtf8(text.c_str(),
                                                withComment ? comment.c_str() : nullptr);
        (void)mx::mxGizmoEventsListener::trUtf8(text.c_str(), comment.c_str(),
                                                input.anyInteger<int>());
        (void)mx::mxGizmoEventsListener::tr(text.c_str(), withComment ? comment.c_str() : nullptr,
                                            input.anyInteger<int>());
        MX_FUZZ_CHECK(filter.qt_metacast(nullptr) == nullptr);
        MX_FUZZ_CHECK(filter.qt_metacast("mx::mxGizmoEventsListener") == &filter);
        (void)filter.qt_metacast(text.c_str());
        MX_FUZZ_CHECK(std::strcmp(filter.metaObject()->className(), "mx::mxGizmoEventsListener") ==
                      0);
    }

    std::string randomText() {
        std::string text;
        const int length = input.integer<int>(0, 24);
        for (int i = 0; i < length; ++i) {
            // No NUL inside: the calls take C strings.
            text.push_back(static_cast<char>(input.integer<int>(1, 255)));
        }
        return text;
    }

    void step() {
        switch (input.choice(12)) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4:
            sendMouseEvent();
            break;
        case 5:
            sendOtherEvent();
            break;
        case 6:
        case 7:
            engine.updateFrame();
            break;
        case 8:
            filter.setController(filter.getController() ? nullptr : &controller);
            break;
        case 9:
            switch (input.choice(3)) {
            case 0:
                cameraNode->setCamera(nullptr);
                break;
            case 1:
                cameraNode->setCamera(camera.get());
                break;
            default:
                chooseView();
                break;
            }
            break;
        case 10:
            metaObjectCalls();
            break;
        default:
            // The application's own calls on the controller behind the filter's back: the
            // gesture flag then follows them.
            if (input.flag()) {
                controller.clearControllerEvents();
            } else {
                MX_FUZZ_CHECK(controller.setMouseReleased(0, 0) == pressedOnGizmo);
                pressedOnGizmo = false;
            }
            break;
        }
    }

    mxFuzzInput& input;
    mx::mxEngine engine;
    mx::mxPointer<mx::mxCamera> camera;
    mx::mxPointer<mx::mxCameraNode> cameraNode;
    mx::mxGizmoController controller;
    mx::mxPointer<mx::mxGizmoNode> gizmos[2];
    mx::mxGizmoEventsListener filter;
    Receiver receiver;
    // The controller's answer to the last left press that reached it.
    bool pressedOnGizmo = false;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    mx::mxLog::msInstance->setEchoToStandardError(false);
    // One application for the whole run, on the offscreen platform; never destroyed (the
    // platform plugin must outlive every event). Qt sees only the program's name, not
    // libFuzzer's options.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "mxEventsFilterFuzzer";
    static char* argv[] = {name, nullptr};
    static QGuiApplication* application = new QGuiApplication(argc, argv);
    (void)application;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mxFuzzInput input(data, size);
    Session session(input);
    session.run();
    return 0;
}
