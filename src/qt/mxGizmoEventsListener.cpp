#include "qt/mxGizmoEventsListener.h"

#include "controller/mxGizmoController.h"
#include "scenegraph/mxCameraNode.h"
#include "scenegraph/mxEngineInterface.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPoint>

namespace mx {

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
        int width = 0;
        int height = 0;
        engine->getViewportSize(width, height);
        const mxCameraNode* cameraNode = engine->getCameraNode();
        const mxCamera* camera = cameraNode ? cameraNode->getCamera() : nullptr;
        const QPoint position = mouse->position().toPoint();
        return controller->setMousePressed(camera, position.x(), position.y(), width, height);
    }
    case QEvent::MouseButtonRelease: {
        const QMouseEvent* mouse = static_cast<const QMouseEvent*>(event);
        if (mouse->button() != Qt::LeftButton) {
            return false;
        }
        const QPoint position = mouse->position().toPoint();
        return controller->setMouseReleased(position.x(), position.y());
    }
    case QEvent::MouseMove: {
        // Every move counts, with or without a button down: hovering needs them.
        const QPoint position = static_cast<const QMouseEvent*>(event)->position().toPoint();
        return controller->setMousePos(position.x(), position.y());
    }
    default:
        return false;
    }
}

} // namespace mx
