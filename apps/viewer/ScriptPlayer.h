// ScriptPlayer: plays a ViewerScript on a shown MainWindow, step by step, as a person would:
// keys trigger the window's actions, mouse steps are Qt mouse events sent to the 3-D view
// (through the gizmo's event filter first), frames run the session. Screenshots and the report
// are kept in memory and written only when every step has played, so a script that fails
// leaves nothing behind but its error.
#pragma once

#include "ViewerScript.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QPointF>
#include <QString>

#include "wm4/Wm4Vector3.h"

#include <utility>
#include <vector>

namespace viewer {

class MainWindow;
class ViewerSession;

class ScriptPlayer {
public:
    ScriptPlayer(ViewerSession& session, MainWindow& window);

    // Plays every step. On a step that cannot be played (an object name the scene does not
    // have, a handle of a gizmo that is not shown) it stops, returns false and sets error to
    // the same form ViewerScript::parse uses.
    bool play(const ViewerScript& script, QString& error);

    // What each played step did: its number ("step"), action ("action"), the frames run by
    // the end of it ("frame"); for mouse steps the pixel it happened at ("pixel"), the gizmo's
    // world transformation at that moment ("gizmo"), and for a target in the world the point
    // it resolved to ("world", and "angle" in degrees for a rotate handle); for keys the
    // combination ("key") and whether an action took it ("bound"); for camera steps the new
    // "eye" and "target"; for screenshots the "file".
    const QJsonArray& getStepRecords() const { return stepRecords; }
    // The screenshots taken, in order, with their file names (name.png).
    const std::vector<std::pair<QString, QImage>>& getScreenshots() const { return screenshots; }

private:
    bool playStep(const ScriptStep& step, QJsonObject& record, QString& error);
    bool resolve(const ScriptStep& step, QPointF& pixel, QJsonObject& record, QString& error) const;
    bool resolveHandle(const ScriptStep& step, Wm4::Vector3<double>& world, QJsonObject& record,
                       QString& error) const;
    void sendMouse(int type, const QPointF& pixel, int button, int modifiers);
    void playCamera(const ScriptCamera& camera);

    ViewerSession& session;
    MainWindow& window;
    QPointF mousePosition;
    int buttonsHeld;
    int lastPressed;
    QJsonArray stepRecords;
    std::vector<std::pair<QString, QImage>> screenshots;
};

} // namespace viewer
