#include "MainWindow.h"

#include "ViewerSession.h"
#include "ViewportWidget.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTimer>
#include <QUndoStack>
#include <QUndoView>

namespace viewer {

namespace {

using Mode = mx::mxGizmoNode::GizmoMode;
using Orientation = mx::mxGizmoController::OrientationReference;

const char* const csAxisNames[3] = {"X", "Y", "Z"};

QString onOff(bool on) {
    return on ? QObject::tr("on") : QObject::tr("off");
}

QString htmlColor(const Wm4::ColorRGB& color) {
    return QColor::fromRgbF(color.R(), color.G(), color.B()).name();
}

} // namespace

MainWindow::MainWindow(ViewerSession& session, bool interactive, QWidget* parent)
    : QMainWindow(parent), session(session), viewport(new ViewportWidget(session, this)),
      modeLabel(new QLabel(this)), axisLabel(new QLabel(this)), readoutLabel(new QLabel(this)),
      overlay(new QLabel(viewport)), frameTimer(new QTimer(this)) {
    setWindowTitle(tr("mx3dviewer"));
    setCentralWidget(viewport);
    buildMenus();

    statusBar()->addWidget(modeLabel);
    statusBar()->addWidget(axisLabel);
    statusBar()->addPermanentWidget(readoutLabel);

    // The key bindings over the view, hidden until F1.
    QString rows;
    for (const auto& [keys, meaning] : keyBindings()) {
        rows += QStringLiteral("<tr><td><b>%1</b></td><td>&nbsp;&nbsp;%2</td></tr>")
                    .arg(keys.toHtmlEscaped(), meaning.toHtmlEscaped());
    }
    overlay->setText(QStringLiteral("<table>") + rows + QStringLiteral("</table>"));
    overlay->setStyleSheet(QStringLiteral(
        "QLabel { background: rgba(20, 22, 26, 210); color: #e8e8e8; padding: 10px; }"));
    overlay->move(12, 12);
    overlay->adjustSize();
    overlay->hide();

    connect(&session, &ViewerSession::changed, this, &MainWindow::updateStatus);
    connect(frameTimer, &QTimer::timeout, &session, &ViewerSession::runFrame);
    if (interactive) {
        frameTimer->start(16);
    }
    updateStatus();
}

MainWindow::~MainWindow() = default;

bool MainWindow::triggerShortcut(const QKeySequence& keys) {
    for (QAction* action : findChildren<QAction*>()) {
        if (action->isEnabled() && action->shortcuts().contains(keys)) {
            action->trigger();
            return true;
        }
    }
    return false;
}

bool MainWindow::isOverlayShown() const {
    return overlay->isVisible();
}

QList<QPair<QString, QString>> MainWindow::keyBindings() {
    return {
        {tr("W / E / R / Q"), tr("translate, rotate, scale gizmo; no gizmo")},
        {tr("L / G / V / C"), tr("Local, World, View, Custom orientation")},
        {tr("S"), tr("snap rotation to the axes on release")},
        {tr("U"), tr("uniform scale")},
        {tr("N"), tr("keep the gizmo between the near and far planes")},
        {tr("1 / 2 / 3"), tr("show or hide the X, Y, Z handle of the current gizmo")},
        {tr("+ / -"), tr("larger or smaller gizmo")},
        {tr("Left click"), tr("select; Shift+click adds or removes; empty space clears")},
        {tr("Left drag on a handle"), tr("move, rotate or scale the selection")},
        {tr("Right drag"), tr("orbit")},
        {tr("Middle drag, Shift+right drag"), tr("pan")},
        {tr("Wheel"), tr("zoom")},
        {tr("F / P / Home"), tr("frame the selection; perspective or orthographic; home view")},
        {tr("Ctrl+Z / Ctrl+Shift+Z"), tr("undo, redo")},
        {tr("F1"), tr("show or hide this list")},
    };
}

QAction* MainWindow::addKeyAction(QMenu* menu, const QString& text, const QList<QKeySequence>& keys,
                                  const std::function<void()>& perform) {
    QAction* action = menu->addAction(text);
    action->setShortcuts(keys);
    // The shortcuts work wherever the focus is in the window.
    action->setShortcutContext(Qt::WindowShortcut);
    connect(action, &QAction::triggered, this, perform);
    return action;
}

void MainWindow::buildMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    addKeyAction(file, tr("&Quit"), {QKeySequence(QKeySequence::Quit)}, [this] { close(); });

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    QAction* undo = session.getUndoStack().createUndoAction(this, tr("&Undo"));
    undo->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Z)});
    QAction* redo = session.getUndoStack().createRedoAction(this, tr("&Redo"));
    redo->setShortcuts(
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    edit->addAction(undo);
    edit->addAction(redo);
    edit->addSeparator();
    // The history in the menu: the state before any drag, then every drag, the current state
    // checked; choosing one goes back or forward to it.
    QMenu* steps = edit->addMenu(tr("&History"));
    connect(steps, &QMenu::aboutToShow, this, [this, steps] {
        steps->clear();
        QUndoStack& stack = session.getUndoStack();
        for (int index = 0; index <= stack.count(); ++index) {
            const QString text = index == 0 ? tr("Before any drag") : stack.text(index - 1);
            QAction* state = steps->addAction(text);
            state->setCheckable(true);
            state->setChecked(index == stack.index());
            connect(state, &QAction::triggered, this,
                    [this, index] { session.getUndoStack().setIndex(index); });
        }
    });
    // The same history as a panel.
    auto* history = new QDockWidget(tr("History"), this);
    history->setObjectName(QStringLiteral("history"));
    history->setWidget(new QUndoView(&session.getUndoStack(), history));
    addDockWidget(Qt::RightDockWidgetArea, history);
    history->hide();
    QAction* showHistory = history->toggleViewAction();
    showHistory->setText(tr("History &panel"));
    showHistory->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_H));
    edit->addAction(showHistory);

    QMenu* gizmo = menuBar()->addMenu(tr("&Gizmo"));
    const std::pair<Mode, QString> modes[] = {{mx::mxGizmoNode::GIZMO_TRANSLATE, tr("&Translate")},
                                              {mx::mxGizmoNode::GIZMO_ROTATE, tr("&Rotate")},
                                              {mx::mxGizmoNode::GIZMO_SCALE, tr("&Scale")},
                                              {mx::mxGizmoNode::GIZMO_NONE, tr("&No gizmo")}};
    const Qt::Key modeKeys[] = {Qt::Key_W, Qt::Key_E, Qt::Key_R, Qt::Key_Q};
    for (int i = 0; i < 4; ++i) {
        const Mode mode = modes[i].first;
        addKeyAction(gizmo, modes[i].second, {QKeySequence(modeKeys[i])},
                     [this, mode] { this->session.setMode(mode); });
    }
    gizmo->addSeparator();
    const std::pair<Orientation, QString> orientations[] = {
        {mx::mxGizmoController::Local, tr("&Local orientation")},
        {mx::mxGizmoController::World, tr("&World orientation")},
        {mx::mxGizmoController::View, tr("&View orientation")},
        {mx::mxGizmoController::Custom, tr("&Custom orientation (45° about y)")}};
    const Qt::Key orientationKeys[] = {Qt::Key_L, Qt::Key_G, Qt::Key_V, Qt::Key_C};
    for (int i = 0; i < 4; ++i) {
        const Orientation orientation = orientations[i].first;
        addKeyAction(gizmo, orientations[i].second, {QKeySequence(orientationKeys[i])},
                     [this, orientation] { this->session.setOrientation(orientation); });
    }
    gizmo->addSeparator();
    addKeyAction(gizmo, tr("&Snap rotation to axes"), {QKeySequence(Qt::Key_S)},
                 [this] { this->session.toggleSnapToAxis(); });
    addKeyAction(gizmo, tr("&Uniform scale"), {QKeySequence(Qt::Key_U)},
                 [this] { this->session.toggleUniformScale(); });
    addKeyAction(gizmo, tr("&Near/far restriction"), {QKeySequence(Qt::Key_N)},
                 [this] { this->session.toggleNearFarRestriction(); });
    const Qt::Key axisKeys[] = {Qt::Key_1, Qt::Key_2, Qt::Key_3};
    for (int axis = 0; axis < 3; ++axis) {
        addKeyAction(gizmo, tr("Show/hide %1 handle").arg(QLatin1String(csAxisNames[axis])),
                     {QKeySequence(axisKeys[axis])},
                     [this, axis] { this->session.toggleAxis(axis); });
    }
    addKeyAction(gizmo, tr("&Larger"), {QKeySequence(Qt::Key_Plus), QKeySequence(Qt::Key_Equal)},
                 [this] { this->session.changeExpectedPixelSize(10.0f); });
    addKeyAction(gizmo, tr("S&maller"), {QKeySequence(Qt::Key_Minus)},
                 [this] { this->session.changeExpectedPixelSize(-10.0f); });

    QMenu* view = menuBar()->addMenu(tr("&View"));
    addKeyAction(view, tr("&Frame selection"), {QKeySequence(Qt::Key_F)},
                 [this] { this->session.frameSelection(); });
    addKeyAction(view, tr("&Perspective/orthographic"), {QKeySequence(Qt::Key_P)}, [this] {
        this->session.setPerspective(!this->session.getOrbit().isPerspective());
    });
    addKeyAction(view, tr("&Home view"), {QKeySequence(Qt::Key_Home)},
                 [this] { this->session.resetCamera(); });
    view->addSeparator();
    addKeyAction(view, tr("&Key bindings"), {QKeySequence(Qt::Key_F1)},
                 [this] { overlay->setVisible(!overlay->isVisible()); });
}

void MainWindow::updateStatus() {
    const mx::mxGizmoNode& gizmo = session.getGizmo();
    QString mask;
    if (session.getMode() != mx::mxGizmoNode::GIZMO_NONE) {
        const unsigned char bits = gizmo.getEnabledAxis(session.getMode());
        for (int axis = 0; axis < 3; ++axis) {
            mask += (bits & (1u << axis)) ? QLatin1String(csAxisNames[axis]) : QStringLiteral("-");
        }
    }
    modeLabel->setText(tr("%1 · %2 · axes %3 · snap %4 · uniform %5 · near/far %6 · %7 px")
                           .arg(session.modeText(), session.orientationText(),
                                mask.isEmpty() ? QStringLiteral("---") : mask,
                                onOff(gizmo.shouldSnapRotationToAxis()),
                                onOff(gizmo.shouldUseUniformScale()),
                                onOff(gizmo.shouldRestrictPositionBetweenNearFar()))
                           .arg(gizmo.getExpectedPixelSize()));
    const int axis = session.getController().getPickedAxeIndex(&gizmo);
    if (axis >= 0 && axis < 3) {
        axisLabel->setText(QStringLiteral("<b style=\"color:%1\">%2</b>")
                               .arg(htmlColor(mx::mxGizmoNode::csColors[axis]),
                                    tr("%1 axis").arg(QLatin1String(csAxisNames[axis]))));
    } else {
        axisLabel->clear();
    }
    readoutLabel->setText(session.getRecorder().readout());
}

} // namespace viewer
