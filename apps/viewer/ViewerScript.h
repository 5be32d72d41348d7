// ViewerScript: a script the viewer plays without a person at the controls: key presses, mouse
// presses, moves and releases, camera moves, frames and screenshots, read from JSON.
//
//   {
//     "viewport": {"width": 960, "height": 600},          optional; these are the defaults
//     "steps": [
//       {"key": "W"},                                      a key, as QKeySequence reads it
//       {"select": ["cube", "cone"]},                      select objects by name ([] clears)
//       {"press": "translate.x"},                          left press on a handle
//       {"move": {"handle": "translate.x", "along": 1.5}}, move while the button is held
//       {"frames": 2},                                     run frames
//       {"release": null},                                 release where the mouse is
//       {"click": {"object": "torus"}, "modifiers": ["shift"]},
//       {"press": [480, 300], "button": "right"},          pixels from the view's top left
//       {"camera": {"orbit": [30, -10]}},                  yaw and pitch, degrees
//       {"screenshot": "after-translate"}                  writes after-translate.png
//     ]
//   }
//
// Every step is an object with exactly one action field (key, select, press, move, release,
// click, camera, frames, screenshot), the optional fields its action allows, and an optional
// "comment" string. parse() rejects anything else with a message that names the step (counted
// from 1), its action and the field at fault.
//
// Mouse targets (press, move, release, click):
// - null, or the field left out of move and release: where the mouse already is;
// - [x, y]: a pixel of the 3-D view, from its top-left corner (fractions allowed);
// - "mode.axis" (translate, rotate or scale; x, y or z): a handle of the gizmo, the same as
//   {"handle": "mode.axis"};
// - {"handle": "mode.axis", "along": a, "angle": d, "turn": t, "offset": [dx, dy]}: the handle's
//   point, found by projecting the gizmo's geometry with the current camera. For translate
//   and scale it is the point at (0.6 + a) gizmo units along the axis for translate and
//   (1 + a) for scale (a defaults to 0; a gizmo unit is the length of an axis on screen). For
//   rotate it is the point of the circle at angle d + t degrees, d defaulting to the point
//   of the circle nearest the eye and t to 0. along is for translate and scale only, angle and
//   turn for rotate only;
// - {"object": "name", "offset": [dx, dy]}: the centre of the object's bound;
// - {"world": [x, y, z], "offset": [dx, dy]}: a world point;
// offset (pixels, default 0) is added after projecting. A target resolves to the nearest pixel
// when its step is played.
//
// Step fields:
// - key: a non-empty string holding one key combination ("W", "Ctrl+Shift+Z", "F1", "+").
// - select: an array of object names (strings).
// - press and click: optional "button" ("left" (default), "right" or "middle") and
//   "modifiers" (an array of "shift", "ctrl", "alt"). release: optional "button" (default: the
//   button pressed last) and "modifiers". move: optional "modifiers".
// - camera: "home", or an object with exactly one of "orbit": [yawDegrees, pitchDegrees],
//   "pan": [dxPixels, dyPixels], "zoom": notches (positive zooms in), "perspective": bool,
//   "frame": true (frames the selection), or "eye": [x, y, z] together with "target": [x, y, z].
// - frames: an integer from 1 to 10000.
// - screenshot: a file name stem of letters, digits, '-', '_' and '.', not starting with '.',
//   at most 64 characters, not used by an earlier screenshot step.
// - viewport width and height: integers from 64 to 4096.
#pragma once

#include <QByteArray>
#include <QPointF>
#include <QString>
#include <QStringList>

#include <array>
#include <vector>

namespace viewer {

// Where a mouse step happens.
struct ScriptTarget {
    enum Kind { CURRENT, PIXEL, HANDLE, OBJECT, WORLD };
    Kind kind = CURRENT;
    QPointF pixel;                 // PIXEL
    int handleMode = 0;            // HANDLE: 0 translate, 1 rotate, 2 scale
    int handleAxis = 0;            // HANDLE: 0 x, 1 y, 2 z
    double along = 0.0;            // HANDLE, translate and scale
    bool hasAngle = false;         // HANDLE, rotate: whether angle was given
    double angle = 0.0;            // HANDLE, rotate
    double turn = 0.0;             // HANDLE, rotate
    QString object;                // OBJECT
    std::array<double, 3> world{}; // WORLD
    QPointF offset;                // every kind but CURRENT
};

// A camera step.
struct ScriptCamera {
    enum Kind { HOME, ORBIT, PAN, ZOOM, PERSPECTIVE, FRAME, LOOK_AT };
    Kind kind = HOME;
    double first = 0.0;             // ORBIT yaw, PAN dx, ZOOM notches
    double second = 0.0;            // ORBIT pitch, PAN dy
    bool perspective = true;        // PERSPECTIVE
    std::array<double, 3> eye{};    // LOOK_AT
    std::array<double, 3> target{}; // LOOK_AT
};

struct ScriptStep {
    enum Kind { KEY, SELECT, PRESS, MOVE, RELEASE, CLICK, CAMERA, FRAMES, SCREENSHOT };
    Kind kind = KEY;
    int number = 0;      // position in the script, from 1
    int key = 0;         // KEY: Qt::Key
    int modifiers = 0;   // KEY, PRESS, MOVE, RELEASE, CLICK: Qt modifiers
    QStringList objects; // SELECT
    int button = 0;      // PRESS, CLICK; RELEASE (0: the last pressed)
    ScriptTarget target; // PRESS, MOVE, RELEASE, CLICK
    ScriptCamera camera; // CAMERA
    int frames = 0;      // FRAMES
    QString name;        // SCREENSHOT
};

struct ViewerScript {
    int viewportWidth = 960;
    int viewportHeight = 600;
    std::vector<ScriptStep> steps;

    // Reads json into script. On failure returns false, leaves script as it was and sets
    // error to one line naming what is wrong, where: "step 3 (press): field \"button\": must
    // be \"left\", \"right\" or \"middle\"".
    static bool parse(const QByteArray& json, ViewerScript& script, QString& error);

    // The name of a step kind as scripts write it ("press").
    static QString kindName(ScriptStep::Kind kind);
    // An error about field of a step, in the form parse() uses; an empty field leaves the
    // field part out.
    static QString stepError(const ScriptStep& step, const QString& field, const QString& message);
};

} // namespace viewer
