// MainWindow: the viewer's window: the 3-D view, menus whose actions carry the key bindings,
// the undo history, a status bar (mode, orientation, the axis under the mouse in its colour,
// and during a drag a live readout), and the key-binding overlay that F1 toggles.
#pragma once

#include <QKeySequence>
#include <QList>
#include <QMainWindow>
#include <QPair>
#include <QString>

#include <functional>

class QAction;
class QLabel;
class QMenu;
class QTimer;

namespace viewer {

class ViewerSession;
class ViewportWidget;

class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    // interactive true runs frames continuously (about 60 a second); false leaves frames to
    // whoever drives the session (the script player).
    MainWindow(ViewerSession& session, bool interactive, QWidget* parent = nullptr);
    ~MainWindow() override;

    ViewportWidget& getViewport() { return *viewport; }

    // Triggers the action bound to the key combination, as if it had been typed; false when
    // no action has it.
    bool triggerShortcut(const QKeySequence& keys);
    // Whether the key-binding overlay shows.
    bool isOverlayShown() const;

    // The key bindings as the overlay lists them: pairs of keys and what they do.
    static QList<QPair<QString, QString>> keyBindings();

private:
    QAction* addKeyAction(QMenu* menu, const QString& text, const QList<QKeySequence>& keys,
                          const std::function<void()>& perform);
    void buildMenus();
    void updateStatus();

    ViewerSession& session;
    ViewportWidget* viewport;
    QLabel* modeLabel;
    QLabel* axisLabel;
    QLabel* readoutLabel;
    QLabel* overlay;
    QTimer* frameTimer;
};

} // namespace viewer
