// mxGizmoEventsListener: feeds a Qt widget's mouse events to an mxGizmoController. Create it
// with the engine, give it the controller and install it on the widget that shows the engine's
// picture:
//
//     mx::mxGizmoEventsListener filter(&engine);
//     filter.setController(&controller);
//     view->installEventFilter(&filter);
//
// Left-button presses and releases and every mouse move (any buttons, none included) reach the
// controller in widget pixels. The filter consumes the events of a gesture that began on a
// gizmo: the press, every move until the release, and the release. Presses elsewhere, the
// moves that follow them, other buttons and every other event pass on to the widget. Without a
// controller everything passes. Qt delivers moves without a button only to widgets that track
// the mouse: call setMouseTracking(true) on the view for the hover highlight.
//
// Positions are rounded to the nearest pixel as QPointF::toPoint rounds them; a coordinate
// beyond the range of int counts as the nearest int, and an event whose position is not a
// number passes on untouched, the controller never hearing of it.
//
// It owns neither the controller nor the engine, and must not outlive them.
#pragma once

#include <QObject>
#include <QString>

namespace mx {

class mxEngineInterface;
class mxGizmoController;

class mxGizmoEventsListener : public QObject {
    Q_OBJECT

public:
    // engine gives the camera and the viewport size of a press. The listener has no parent.
    explicit mxGizmoEventsListener(mxEngineInterface* engine);
    ~mxGizmoEventsListener() override;

    void setController(mxGizmoController* gizmoController) { controller = gizmoController; }
    mxGizmoController* getController() const { return controller; }

    // Translations through the class's meta-object, as tr does. Sources are UTF-8, so these
    // are tr under their older name.
    static QString trUtf8(const char* text, const char* comment = nullptr);
    static QString trUtf8(const char* text, const char* comment, int n);

protected:
    // Passes the event on (returns false) or consumes it (true); watched is not used.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    mxGizmoController* controller;
    mxEngineInterface* engine;
};

} // namespace mx
