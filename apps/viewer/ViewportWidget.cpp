#include "ViewportWidget.h"

#include "ViewerSession.h"

#include "rendering/mxRendererInterface.h"

#include <QMouseEvent>
#include <QOpenGLContext>
#include <QWheelEvent>

namespace viewer {

namespace {

// A left press and release closer than this (in pixels) is a click.
constexpr double csClickSlop = 4.0;
// Degrees of orbit per pixel of mouse travel.
constexpr double csOrbitDegreesPerPixel = 0.4;

} // namespace

ViewportWidget::ViewportWidget(ViewerSession& session, QWidget* parent)
    : QOpenGLWidget(parent), session(session), gizmoEvents(&session.getEngine()),
      sceneRenderer(nullptr), dragButton(Qt::NoButton), panning(false), moved(false) {
    gizmoEvents.setController(&session.getController());
    installEventFilter(&gizmoEvents);
    // Moves without a button reach the gizmo too, for the hover highlight.
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    connect(&session, &ViewerSession::changed, this, qOverload<>(&QWidget::update));
}

ViewportWidget::~ViewportWidget() {
    removeEventFilter(&gizmoEvents);
    // The base class destroys the context after this object is gone: its signal must not
    // reach this object any more.
    if (QOpenGLContext* current = context()) {
        disconnect(current, nullptr, this, nullptr);
    }
    releaseRenderer();
}

void ViewportWidget::initializeGL() {
    renderer = std::make_unique<mx::mxOpenGLRenderer>();
    if (!renderer->isValid()) {
        error = QString::fromStdString(renderer->getError());
        qWarning("mx3dviewer: OpenGL cannot be used: %s", qPrintable(error));
        return;
    }
    mx::mxRendererInterface::SetHardwareRenderer(renderer.get());
    // The renderer's GL objects go with the context.
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &ViewportWidget::releaseRenderer);
}

void ViewportWidget::resizeGL(int width, int height) {
    (void)width;
    (void)height;
    // The session counts in widget pixels, as mouse events do.
    session.setViewportSize(this->width(), this->height());
}

void ViewportWidget::paintGL() {
    if (renderer && renderer->isValid()) {
        session.getEngine().renderFrame(sceneRenderer);
    }
}

void ViewportWidget::mousePressEvent(QMouseEvent* event) {
    if (dragButton != Qt::NoButton) {
        return;
    }
    dragButton = event->button();
    panning = dragButton == Qt::MiddleButton ||
              (dragButton == Qt::RightButton && (event->modifiers() & Qt::ShiftModifier));
    pressPosition = event->position();
    lastPosition = pressPosition;
    moved = false;
}

void ViewportWidget::mouseMoveEvent(QMouseEvent* event) {
    if (dragButton == Qt::NoButton) {
        return;
    }
    const QPointF delta = event->position() - lastPosition;
    lastPosition = event->position();
    if ((event->position() - pressPosition).manhattanLength() > csClickSlop) {
        moved = true;
    }
    if (panning) {
        session.panCamera(delta.x(), delta.y());
    } else if (dragButton == Qt::RightButton) {
        session.orbitCamera(-delta.x() * csOrbitDegreesPerPixel,
                            delta.y() * csOrbitDegreesPerPixel);
    }
}

void ViewportWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != dragButton) {
        return;
    }
    if (dragButton == Qt::LeftButton && !moved) {
        session.clickAt(event->position(), (event->modifiers() & Qt::ShiftModifier) != 0);
    }
    dragButton = Qt::NoButton;
    panning = false;
}

void ViewportWidget::wheelEvent(QWheelEvent* event) {
    // One notch is 120 eighths of a degree.
    session.zoomCamera(event->angleDelta().y() / 120.0);
    event->accept();
}

void ViewportWidget::releaseRenderer() {
    if (!renderer) {
        return;
    }
    if (mx::mxRendererInterface::GetHardwareRenderer() == renderer.get()) {
        mx::mxRendererInterface::SetHardwareRenderer(nullptr);
    }
    makeCurrent();
    renderer.reset();
    doneCurrent();
}

} // namespace viewer
