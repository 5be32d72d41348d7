#include "qt/mxGizmoEventsListener.h"

#include "controller/mxGizmoController.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxEngineInterface.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPoint>
#include <QPointF>
#include <QtGlobal>

#include <climits>
#include <cmath>

namespace mx {

namespace {

// Strictly between these bounds Qt's rounding of a coordinate lands within int.
constexpr double csLowestCoordinate = -2147483648.5;
constexpr double csHighestCoordinate = 2147483647.5;

// A coordinate rounded as QPointF::toPoint rounds it (qRound). That rounding converts to int
// unchecked, so a coordinate beyond the range of int, which a synthesised event may carry,
// would be undefined: it becomes the nearest int instead, still as far outside the view as an
// int can say.
int toPixelCoordinate(double value) {
    if (value <= csLowestCoordinate) {
        return INT_MIN;
    }
    if (value >= csHighestCoordinate) {
        return INT_MAX;
    }
    return qRound(value);
}

// The widget pixel of an event's position; false for a position that is not a number, which
// names no pixel, so that the event is none of the controller's business.
bool toWidgetPixel(const QPointF& position, QPoint& pixel) {
    if (std::isnan(position.x()) || std::isnan(position.y())) {
        return false;
    }
    pixel = QPoint(toPixelCoordinate(position.x()), toPixelCoordinate(position.y()));
    return true;
}

} // namespace

mxGizmoEventsListener::mxGizmoEventsListener(mxEngineInterface* engine)
    : QObject(nullptr), controller(nullptr), engine(engine) {}

mxGizmoEventsListener::~mxGizmoEventsListener() = default;

QString mxGizmoEventsListener::trUtf8(const char* text, const char* comment) {
    return staticMetaObject.tr(text, comment);
}

QString mxGizmoEventsListener::trUtf8(const char* text, const char* comment, int n) {
    return staticMetaObject.tr(text, comment, n);
}

bool mxGizmoEventsListener::eventFilter(QObject*, QEvent* event) {
    if (!controller || !event) {
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const QMouseEvent* mouse = static_cast<const QMouseEvent*>(event);
        if (mouse->button() != Qt::LeftButton) {
            return false;
        }
        // Without an engine there is no view to hit-test against: the press is not ours.
        if (!engine) {
            return false;
        }
        QPoint position;
        if (!toWidgetPixel(mouse->position(), position)) {
            return false;
        }
        int width = 0;
        int height = 0;
        engine->getViewportSize(width, height);
        const mxCameraNode* cameraNode = engine->getCameraNode();
        const mxCamera* camera = cameraNode ? cameraNode->getCamera() : nullptr;
        return controller->setMousePressed(camera, position.x(), position.y(), width, height);
    }
    case QEvent::MouseButtonRelease: {
        const QMouseEvent* mouse = static_cast<const QMouseEvent*>(event);
        QPoint position;
        if (mouse->button() != Qt::LeftButton || !toWidgetPixel(mouse->position(), position)) {
            return false;
        }
        return controller->setMouseReleased(position.x(), position.y());
    }
    case QEvent::MouseMove: {
        // Every move counts, with or without a button down: hovering needs them.
        QPoint position;
        if (!toWidgetPixel(static_cast<const QMouseEvent*>(event)->position(), position)) {
            return false;
        }
        return controller->setMousePos(position.x(), position.y());
    }
    default:
        return false;
    }
}

} // namespace mx
