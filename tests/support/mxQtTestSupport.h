// Helpers shared by the Qt tests: the one QApplication of a test program, the widget position
// of a pixel position, and a widget that records the input events reaching it. Header-only;
// everything lives in namespace mx::test.
#pragma once

#include "wm4/Wm4Vector2.h"

#include "controller/mxControllerTestSupport.h"

#include <QApplication>
#include <QEvent>
#include <QPoint>
#include <QWidget>
#include <QtGlobal>

#include <vector>

namespace mx::test {

// The one QApplication of a Qt test program, created on first use. Widgets need it; without a
// display it runs on Qt's offscreen platform, chosen here when QT_QPA_PLATFORM is not set. It
// is never destroyed: torn down among the static objects at exit, it would outlive Qt's own.
inline QApplication& EnsureQtApplication() {
    static int argc = 1;
    static char name[] = "mxQtTest";
    static char* argv[] = {name, nullptr};
    static QApplication* application = [] {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        return new QApplication(argc, argv);
    }();
    return *application;
}

// The widget position of a window pixel: widgets count pixels from the top left as well.
inline QPoint ToQPoint(const WindowPixel& pixel) {
    return QPoint(pixel.x, pixel.y);
}

// The widget pixel whose centre lies nearest to pixel, a position from the lower left of a view
// height pixels high (see WindowPixelAt).
inline QPoint WidgetPoint(const Wm4::Vector2<float>& pixel, int height = csViewHeight) {
    return ToQPoint(WindowPixelAt(pixel, height));
}

// A widget of the standard view's size that records the input events reaching it (mouse
// presses, releases, double clicks and moves, key presses, wheel turns, enterings) and takes
// them. Mouse tracking is on, as in a viewer: without it Qt drops moves with no button down
// before any event filter sees them. Create the application first (EnsureQtApplication).
class RecordingWidget : public QWidget {
public:
    RecordingWidget() {
        resize(csViewWidth, csViewHeight);
        setMouseTracking(true);
    }

    std::vector<QEvent::Type> received;

protected:
    bool event(QEvent* event) override {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::KeyPress:
        case QEvent::Wheel:
        case QEvent::Enter:
            received.push_back(event->type());
            event->accept();
            return true;
        default:
            return QWidget::event(event);
        }
    }
};

} // namespace mx::test
