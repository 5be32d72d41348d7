// ViewportWidget: the 3-D view. It draws the session's scene with the host's OpenGL renderer
// in the widget's context, passes mouse events to the gizmo through mxGizmoEventsListener, and
// turns the events the gizmo does not take into selection (left click, Shift+click) and camera
// moves (right drag orbits, middle drag or Shift+right drag pans, the wheel zooms).
#pragma once

#include "qt/mxGizmoEventsListener.h"
#include "rendering/mxOpenGLRenderer.h"
#include "rendering/mxSceneRenderer.h"

#include <QOpenGLWidget>
#include <QPointF>

#include <memory>

namespace viewer {

class ViewerSession;

class ViewportWidget : public QOpenGLWidget {
    Q_OBJECT

public:
    explicit ViewportWidget(ViewerSession& session, QWidget* parent = nullptr);
    ~ViewportWidget() override;

    // Why OpenGL could not be used, or empty.
    QString glError() const { return error; }

protected:
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void releaseRenderer();

    ViewerSession& session;
    mx::mxGizmoEventsListener gizmoEvents;
    std::unique_ptr<mx::mxOpenGLRenderer> renderer;
    mx::mxSceneRenderer sceneRenderer;
    QString error;
    // The gesture in progress that the gizmo did not take.
    Qt::MouseButton dragButton;
    bool panning;
    QPointF pressPosition;
    QPointF lastPosition;
    bool moved;
};

} // namespace viewer
