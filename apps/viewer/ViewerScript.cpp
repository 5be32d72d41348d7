#include "ViewerScript.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <QKeySequence>

#include <cmath>
#include <map>

namespace viewer {

namespace {

// How far numbers may go. JSON has no NaN or infinity, but 1e308 is valid JSON and no pixel.
constexpr double csCoordinateLimit = 1e6; // pixels, offsets, world coordinates, along, angles
constexpr double csPanLimit = 1e4;        // pixels per pan
constexpr double csZoomLimit = 100.0;     // wheel notches
constexpr double csOrbitLimit = 3600.0;   // degrees, ten turns
constexpr int csMinFrames = 1;
constexpr int csMaxFrames = 10000;
constexpr int csMinViewport = 64;
constexpr int csMaxViewport = 4096;
constexpr int csMaxNameLength = 64;

// The action fields, in the order messages list them.
const ScriptStep::Kind csKinds[] = {
    ScriptStep::KEY,    ScriptStep::SELECT,  ScriptStep::PRESS,
    ScriptStep::MOVE,   ScriptStep::RELEASE, ScriptStep::CLICK,
    ScriptStep::CAMERA, ScriptStep::FRAMES,  ScriptStep::SCREENSHOT};

QString quoted(const QString& text) {
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString formatNumber(double value) {
    return QString::number(value, 'g', 10);
}

// What went wrong while reading a value: the field at fault, as written in the script
// ("move.along" for a nested one), and why.
struct Fault {
    QString field;
    QString message;

    bool set(const QString& faultField, const QString& faultMessage) {
        field = faultField;
        message = faultMessage;
        return false;
    }
};

QString within(double limit) {
    return QStringLiteral("from ") + formatNumber(-limit) + QStringLiteral(" to ") +
           formatNumber(limit);
}

bool isNumberWithin(const QJsonValue& value, double limit) {
    // Written so that a NaN fails as well.
    return value.isDouble() && std::fabs(value.toDouble()) <= limit;
}

bool readNumber(const QJsonValue& value, const QString& field, double limit, double& out,
                Fault& fault) {
    if (!isNumberWithin(value, limit)) {
        return fault.set(field, QStringLiteral("must be a number ") + within(limit));
    }
    out = value.toDouble();
    return true;
}

bool readInteger(const QJsonValue& value, const QString& field, int low, int high, int& out,
                 Fault& fault) {
    const double number = value.toDouble();
    if (!value.isDouble() || !(number >= low && number <= high) || std::floor(number) != number) {
        return fault.set(field,
                         QStringLiteral("must be an integer from %1 to %2").arg(low).arg(high));
    }
    out = static_cast<int>(number);
    return true;
}

// count numbers, each within limit; what describes the expected form in the message.
bool readNumbers(const QJsonValue& value, const QString& field, int count, double limit,
                 const QString& what, double* out, Fault& fault) {
    bool good = value.isArray() && value.toArray().size() == count;
    if (good) {
        const QJsonArray array = value.toArray();
        for (int i = 0; i < count; ++i) {
            good = good && isNumberWithin(array[i], limit);
        }
    }
    if (!good) {
        return fault.set(field, QStringLiteral("must be ") + what + QStringLiteral(", each ") +
                                    within(limit));
    }
    const QJsonArray array = value.toArray();
    for (int i = 0; i < count; ++i) {
        out[i] = array[i].toDouble();
    }
    return true;
}

bool readPixel(const QJsonValue& value, const QString& field, QPointF& out, Fault& fault) {
    double xy[2] = {0.0, 0.0};
    if (!readNumbers(value, field, 2, csCoordinateLimit, QStringLiteral("two numbers [x, y]"), xy,
                     fault)) {
        return false;
    }
    out = QPointF(xy[0], xy[1]);
    return true;
}

bool readVector3(const QJsonValue& value, const QString& field, std::array<double, 3>& out,
                 Fault& fault) {
    return readNumbers(value, field, 3, csCoordinateLimit,
                       QStringLiteral("three numbers [x, y, z]"), out.data(), fault);
}

bool readName(const QJsonValue& value, const QString& field, QString& out, Fault& fault) {
    if (!value.isString() || value.toString().isEmpty()) {
        return fault.set(field, QStringLiteral("must be a non-empty string"));
    }
    out = value.toString();
    return true;
}

// "translate.x" .. "scale.z"
bool readHandleName(const QJsonValue& value, const QString& field, ScriptTarget& target,
                    Fault& fault) {
    static const QStringList modes = {QStringLiteral("translate"), QStringLiteral("rotate"),
                                      QStringLiteral("scale")};
    static const QStringList axes = {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z")};
    const QStringList parts = value.toString().split(QLatin1Char('.'));
    const int mode = parts.size() == 2 ? int(modes.indexOf(parts[0])) : -1;
    const int axis = parts.size() == 2 ? int(axes.indexOf(parts[1])) : -1;
    if (!value.isString() || mode < 0 || axis < 0) {
        return fault.set(field, QStringLiteral("must be a handle \"mode.axis\" with mode "
                                               "translate, rotate or scale and axis x, y or z "
                                               "(\"translate.x\")"));
    }
    target.kind = ScriptTarget::HANDLE;
    target.handleMode = mode;
    target.handleAxis = axis;
    return true;
}

// {"handle" | "object" | "world": ..., "along", "angle", "turn", "offset"}
bool readTargetObject(const QJsonObject& object, const QString& field, ScriptTarget& target,
                      Fault& fault) {
    static const QStringList kinds = {QStringLiteral("handle"), QStringLiteral("object"),
                                      QStringLiteral("world")};
    static const QStringList others = {QStringLiteral("along"), QStringLiteral("angle"),
                                       QStringLiteral("turn"), QStringLiteral("offset")};
    QStringList present;
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (kinds.contains(it.key())) {
            present << it.key();
        } else if (!others.contains(it.key())) {
            return fault.set(field + QLatin1Char('.') + it.key(), QStringLiteral("unknown field"));
        }
    }
    if (present.size() != 1) {
        return fault.set(field, QStringLiteral("must hold exactly one of \"handle\", \"object\" "
                                               "and \"world\""));
    }
    const QString& kind = present.front();
    const QString kindField = field + QLatin1Char('.') + kind;
    if (kind == QLatin1String("handle")) {
        if (!readHandleName(object[kind], kindField, target, fault)) {
            return false;
        }
    } else if (kind == QLatin1String("object")) {
        target.kind = ScriptTarget::OBJECT;
        if (!readName(object[kind], kindField, target.object, fault)) {
            return false;
        }
    } else {
        target.kind = ScriptTarget::WORLD;
        if (!readVector3(object[kind], kindField, target.world, fault)) {
            return false;
        }
    }
    const bool isHandle = target.kind == ScriptTarget::HANDLE;
    const bool isRotate = isHandle && target.handleMode == 1;
    const QString along = QStringLiteral("along");
    if (object.contains(along)) {
        if (!isHandle || isRotate) {
            return fault.set(field + QStringLiteral(".along"),
                             QStringLiteral("only for translate and scale handles"));
        }
        if (!readNumber(object[along], field + QStringLiteral(".along"), csCoordinateLimit,
                        target.along, fault)) {
            return false;
        }
    }
    for (const QString& name : {QStringLiteral("angle"), QStringLiteral("turn")}) {
        if (!object.contains(name)) {
            continue;
        }
        const QString nameField = field + QLatin1Char('.') + name;
        if (!isRotate) {
            return fault.set(nameField, QStringLiteral("only for rotate handles"));
        }
        double& out = name == QLatin1String("angle") ? target.angle : target.turn;
        if (!readNumber(object[name], nameField, csCoordinateLimit, out, fault)) {
            return false;
        }
    }
    target.hasAngle = object.contains(QStringLiteral("angle"));
    const QString offset = QStringLiteral("offset");
    if (object.contains(offset) &&
        !readPixel(object[offset], field + QStringLiteral(".offset"), target.offset, fault)) {
        return false;
    }
    return true;
}

// null, [x, y], "mode.axis" or an object; field is the step's action field.
bool readTarget(const QJsonValue& value, const QString& field, ScriptTarget& target, Fault& fault) {
    target = ScriptTarget();
    if (value.isNull()) {
        return true;
    }
    if (value.isArray()) {
        target.kind = ScriptTarget::PIXEL;
        return readPixel(value, field, target.pixel, fault);
    }
    if (value.isString()) {
        return readHandleName(value, field, target, fault);
    }
    if (value.isObject()) {
        return readTargetObject(value.toObject(), field, target, fault);
    }
    return fault.set(field, QStringLiteral("must be null, [x, y], a handle such as "
                                           "\"translate.x\" or an object with \"handle\", "
                                           "\"object\" or \"world\""));
}

bool readButton(const QJsonValue& value, int& button, Fault& fault) {
    const QString name = value.toString();
    if (value.isString() && name == QLatin1String("left")) {
        button = Qt::LeftButton;
    } else if (value.isString() && name == QLatin1String("right")) {
        button = Qt::RightButton;
    } else if (value.isString() && name == QLatin1String("middle")) {
        button = Qt::MiddleButton;
    } else {
        return fault.set(QStringLiteral("button"),
                         QStringLiteral("must be \"left\", \"right\" or \"middle\""));
    }
    return true;
}

bool readModifiers(const QJsonValue& value, int& modifiers, Fault& fault) {
    const QString field = QStringLiteral("modifiers");
    if (!value.isArray()) {
        return fault.set(field, QStringLiteral("must be an array of \"shift\", \"ctrl\" and "
                                               "\"alt\""));
    }
    int result = 0;
    for (const QJsonValue& entry : value.toArray()) {
        const QString name = entry.toString();
        if (entry.isString() && name == QLatin1String("shift")) {
            result |= Qt::ShiftModifier;
        } else if (entry.isString() && name == QLatin1String("ctrl")) {
            result |= Qt::ControlModifier;
        } else if (entry.isString() && name == QLatin1String("alt")) {
            result |= Qt::AltModifier;
        } else {
            const QString shown =
                entry.isString() ? quoted(name) : QStringLiteral("an entry that is no string");
            return fault.set(field, shown + QStringLiteral(" is not \"shift\", \"ctrl\" or "
                                                           "\"alt\""));
        }
    }
    modifiers = result;
    return true;
}

bool readKey(const QJsonValue& value, ScriptStep& step, Fault& fault) {
    const QString field = QStringLiteral("key");
    const QString text = value.toString();
    if (!value.isString() || text.isEmpty()) {
        return fault.set(field, QStringLiteral("must be a non-empty string such as \"W\" or "
                                               "\"Ctrl+Z\""));
    }
    const QKeySequence sequence = QKeySequence::fromString(text, QKeySequence::PortableText);
    // QKeySequence also writes '+' between the keys of a combination: should a Qt release fail
    // to read a lone "+" (or "-"), the key is named here.
    if ((text == QLatin1String("+") || text == QLatin1String("-")) &&
        (sequence.count() != 1 || sequence[0].key() == Qt::Key_unknown)) {
        step.key = text == QLatin1String("+") ? Qt::Key_Plus : Qt::Key_Minus;
        step.modifiers = 0;
        return true;
    }
    if (sequence.count() > 1) {
        return fault.set(field, quoted(text) + QStringLiteral(" holds %1 key combinations; "
                                                              "a step presses one")
                                                   .arg(sequence.count()));
    }
    const Qt::Key key = sequence.isEmpty() ? Qt::Key_unknown : sequence[0].key();
    if (key == Qt::Key_unknown || key == 0) {
        return fault.set(field, quoted(text) + QStringLiteral(" is not a key combination"));
    }
    step.key = key;
    step.modifiers = int(sequence[0].keyboardModifiers());
    return true;
}

bool readSelect(const QJsonValue& value, ScriptStep& step, Fault& fault) {
    const QString field = QStringLiteral("select");
    QStringList names;
    bool good = value.isArray();
    for (const QJsonValue& entry : value.toArray()) {
        good = good && entry.isString() && !entry.toString().isEmpty();
        names << entry.toString();
    }
    if (!good) {
        return fault.set(field, QStringLiteral("must be an array of object names (non-empty "
                                               "strings)"));
    }
    step.objects = names;
    return true;
}

// press, move, release and click.
bool readMouse(const QJsonObject& object, ScriptStep& step, Fault& fault) {
    const QString action = ViewerScript::kindName(step.kind);
    if (!readTarget(object[action], action, step.target, fault)) {
        return false;
    }
    step.button = step.kind == ScriptStep::RELEASE ? 0 : int(Qt::LeftButton);
    if (object.contains(QStringLiteral("button")) &&
        !readButton(object[QStringLiteral("button")], step.button, fault)) {
        return false;
    }
    return !object.contains(QStringLiteral("modifiers")) ||
           readModifiers(object[QStringLiteral("modifiers")], step.modifiers, fault);
}

// "home" or {one of orbit, pan, zoom, perspective, frame, eye + target}
bool readCamera(const QJsonValue& value, ScriptCamera& camera, Fault& fault) {
    const QString field = QStringLiteral("camera");
    const QString expected = QStringLiteral("must be \"home\" or an object with one of \"orbit\", "
                                            "\"pan\", \"zoom\", \"perspective\", \"frame\" or "
                                            "\"eye\" with \"target\"");
    camera = ScriptCamera();
    if (value.isString() && value.toString() == QLatin1String("home")) {
        camera.kind = ScriptCamera::HOME;
        return true;
    }
    if (!value.isObject()) {
        return fault.set(field, expected);
    }
    const QJsonObject object = value.toObject();
    static const QStringList moves = {QStringLiteral("orbit"), QStringLiteral("pan"),
                                      QStringLiteral("zoom"),  QStringLiteral("perspective"),
                                      QStringLiteral("frame"), QStringLiteral("eye"),
                                      QStringLiteral("target")};
    QStringList present;
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!moves.contains(it.key())) {
            return fault.set(field + QLatin1Char('.') + it.key(), QStringLiteral("unknown field"));
        }
        // eye and target make one move.
        if (it.key() != QLatin1String("target") || !object.contains(QStringLiteral("eye"))) {
            present << it.key();
        }
    }
    if (present.isEmpty()) {
        return fault.set(field, expected);
    }
    if (present.size() > 1) {
        return fault.set(field, QStringLiteral("more than one camera move (%1 and %2)")
                                    .arg(quoted(present[0]), quoted(present[1])));
    }
    const QString move = present.front();
    const QString moveField = field + QLatin1Char('.') + move;
    const QJsonValue argument = object[move];
    double pair[2] = {0.0, 0.0};
    if (move == QLatin1String("orbit")) {
        camera.kind = ScriptCamera::ORBIT;
        if (!readNumbers(argument, moveField, 2, csOrbitLimit,
                         QStringLiteral("two numbers [yawDegrees, pitchDegrees]"), pair, fault)) {
            return false;
        }
    } else if (move == QLatin1String("pan")) {
        camera.kind = ScriptCamera::PAN;
        if (!readNumbers(argument, moveField, 2, csPanLimit,
                         QStringLiteral("two numbers [dxPixels, dyPixels]"), pair, fault)) {
            return false;
        }
    } else if (move == QLatin1String("zoom")) {
        camera.kind = ScriptCamera::ZOOM;
        if (!readNumber(argument, moveField, csZoomLimit, pair[0], fault)) {
            return false;
        }
    } else if (move == QLatin1String("perspective")) {
        camera.kind = ScriptCamera::PERSPECTIVE;
        if (!argument.isBool()) {
            return fault.set(moveField, QStringLiteral("must be true or false"));
        }
        camera.perspective = argument.toBool();
    } else if (move == QLatin1String("frame")) {
        camera.kind = ScriptCamera::FRAME;
        if (!argument.isBool() || !argument.toBool()) {
            return fault.set(moveField, QStringLiteral("must be true"));
        }
    } else if (move == QLatin1String("eye")) {
        camera.kind = ScriptCamera::LOOK_AT;
        if (!object.contains(QStringLiteral("target"))) {
            return fault.set(moveField, QStringLiteral("needs \"target\" as well"));
        }
        if (!readVector3(argument, moveField, camera.eye, fault) ||
            !readVector3(object[QStringLiteral("target")], field + QStringLiteral(".target"),
                         camera.target, fault)) {
            return false;
        }
    } else {
        return fault.set(moveField, QStringLiteral("needs \"eye\" as well"));
    }
    camera.first = pair[0];
    camera.second = pair[1];
    return true;
}

bool readFrames(const QJsonValue& value, ScriptStep& step, Fault& fault) {
    return readInteger(value, QStringLiteral("frames"), csMinFrames, csMaxFrames, step.frames,
                       fault);
}

// names: the screenshot names used so far, with the step that used them.
bool readScreenshot(const QJsonValue& value, ScriptStep& step, std::map<QString, int>& names,
                    Fault& fault) {
    const QString field = QStringLiteral("screenshot");
    if (!value.isString()) {
        return fault.set(field, QStringLiteral("must be a file name stem (a string)"));
    }
    const QString name = value.toString();
    if (name.isEmpty()) {
        return fault.set(field, QStringLiteral("must not be empty"));
    }
    if (name.size() > csMaxNameLength) {
        return fault.set(field, QStringLiteral("must be at most %1 characters (it has %2)")
                                    .arg(csMaxNameLength)
                                    .arg(name.size()));
    }
    for (const QChar c : name) {
        // ASCII only: the name becomes a file name on every system.
        const bool allowed = (c >= QLatin1Char('a') && c <= QLatin1Char('z')) ||
                             (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) ||
                             (c >= QLatin1Char('0') && c <= QLatin1Char('9')) ||
                             c == QLatin1Char('-') || c == QLatin1Char('_') ||
                             c == QLatin1Char('.');
        if (!allowed) {
            return fault.set(field, QStringLiteral("the name %1 may hold only letters, digits, "
                                                   "'-', '_' and '.'")
                                        .arg(quoted(name)));
        }
    }
    if (name.startsWith(QLatin1Char('.'))) {
        return fault.set(field,
                         QStringLiteral("the name %1 must not start with '.'").arg(quoted(name)));
    }
    const auto used = names.find(name);
    if (used != names.end()) {
        return fault.set(field, QStringLiteral("the name %1 is already used by step %2")
                                    .arg(quoted(name))
                                    .arg(used->second));
    }
    names[name] = step.number;
    step.name = name;
    return true;
}

// The fields a step of kind may hold besides its action field and "comment".
QStringList optionalFields(ScriptStep::Kind kind) {
    switch (kind) {
    case ScriptStep::PRESS:
    case ScriptStep::RELEASE:
    case ScriptStep::CLICK:
        return {QStringLiteral("button"), QStringLiteral("modifiers")};
    case ScriptStep::MOVE:
        return {QStringLiteral("modifiers")};
    default:
        return {};
    }
}

bool readStep(const QJsonValue& value, int number, std::map<QString, int>& names, ScriptStep& step,
              QString& error) {
    const QString where = QStringLiteral("step %1").arg(number);
    if (!value.isObject()) {
        error = where + QStringLiteral(": must be an object");
        return false;
    }
    const QJsonObject object = value.toObject();
    QStringList actions;
    QStringList allActions;
    for (const ScriptStep::Kind kind : csKinds) {
        const QString name = ViewerScript::kindName(kind);
        allActions << name;
        if (object.contains(name)) {
            if (actions.isEmpty()) {
                step.kind = kind;
            }
            actions << name;
        }
    }
    if (actions.isEmpty()) {
        error = where + QStringLiteral(": no action field (one of %1)")
                            .arg(allActions.join(QStringLiteral(", ")));
        return false;
    }
    if (actions.size() > 1) {
        error = where + QStringLiteral(": more than one action field (%1 and %2)")
                            .arg(quoted(actions[0]), quoted(actions[1]));
        return false;
    }
    step.number = number;
    const QString action = actions.front();
    const QStringList optional = optionalFields(step.kind);
    const QString comment = QStringLiteral("comment");
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it.key() != action && it.key() != comment && !optional.contains(it.key())) {
            error = ViewerScript::stepError(step, it.key(), QStringLiteral("unknown field"));
            return false;
        }
    }
    if (object.contains(comment) && !object[comment].isString()) {
        error = ViewerScript::stepError(step, comment, QStringLiteral("must be a string"));
        return false;
    }
    Fault fault;
    bool read = false;
    switch (step.kind) {
    case ScriptStep::KEY:
        read = readKey(object[action], step, fault);
        break;
    case ScriptStep::SELECT:
        read = readSelect(object[action], step, fault);
        break;
    case ScriptStep::PRESS:
    case ScriptStep::MOVE:
    case ScriptStep::RELEASE:
    case ScriptStep::CLICK:
        read = readMouse(object, step, fault);
        break;
    case ScriptStep::CAMERA:
        read = readCamera(object[action], step.camera, fault);
        break;
    case ScriptStep::FRAMES:
        read = readFrames(object[action], step, fault);
        break;
    case ScriptStep::SCREENSHOT:
        read = readScreenshot(object[action], step, names, fault);
        break;
    }
    if (!read) {
        error = ViewerScript::stepError(step, fault.field, fault.message);
    }
    return read;
}

bool readViewport(const QJsonValue& value, ViewerScript& script, QString& error) {
    const QString field = QStringLiteral("viewport");
    if (!value.isObject()) {
        error = QStringLiteral("field \"viewport\": must be an object with \"width\" and "
                               "\"height\"");
        return false;
    }
    const QJsonObject object = value.toObject();
    Fault fault;
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString nested = field + QLatin1Char('.') + it.key();
        int* out = it.key() == QLatin1String("width")    ? &script.viewportWidth
                   : it.key() == QLatin1String("height") ? &script.viewportHeight
                                                         : nullptr;
        if (out == nullptr) {
            fault.set(nested, QStringLiteral("unknown field"));
        } else {
            readInteger(it.value(), nested, csMinViewport, csMaxViewport, *out, fault);
        }
        if (!fault.message.isEmpty()) {
            error = QStringLiteral("field %1: %2").arg(quoted(fault.field), fault.message);
            return false;
        }
    }
    return true;
}

} // namespace

bool ViewerScript::parse(const QByteArray& json, ViewerScript& script, QString& error) {
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        error = QStringLiteral("the script is not valid JSON: %1 at offset %2")
                    .arg(parseError.errorString())
                    .arg(parseError.offset);
        return false;
    }
    if (!document.isObject()) {
        error = QStringLiteral("the script must be a JSON object with \"steps\"");
        return false;
    }
    const QJsonObject top = document.object();
    for (auto it = top.begin(); it != top.end(); ++it) {
        if (it.key() != QLatin1String("steps") && it.key() != QLatin1String("viewport") &&
            it.key() != QLatin1String("comment")) {
            error = QStringLiteral("field %1: unknown field").arg(quoted(it.key()));
            return false;
        }
    }
    if (top.contains(QStringLiteral("comment")) && !top[QStringLiteral("comment")].isString()) {
        error = QStringLiteral("field \"comment\": must be a string");
        return false;
    }
    ViewerScript result;
    if (top.contains(QStringLiteral("viewport")) &&
        !readViewport(top[QStringLiteral("viewport")], result, error)) {
        return false;
    }
    if (!top.contains(QStringLiteral("steps"))) {
        error = QStringLiteral("field \"steps\": missing (the script needs an array of steps)");
        return false;
    }
    const QJsonValue steps = top[QStringLiteral("steps")];
    if (!steps.isArray()) {
        error = QStringLiteral("field \"steps\": must be an array");
        return false;
    }
    std::map<QString, int> names;
    const QJsonArray array = steps.toArray();
    for (int i = 0; i < array.size(); ++i) {
        ScriptStep step;
        if (!readStep(array[i], i + 1, names, step, error)) {
            return false;
        }
        result.steps.push_back(step);
    }
    script = result;
    return true;
}

QString ViewerScript::kindName(ScriptStep::Kind kind) {
    switch (kind) {
    case ScriptStep::KEY:
        return QStringLiteral("key");
    case ScriptStep::SELECT:
        return QStringLiteral("select");
    case ScriptStep::PRESS:
        return QStringLiteral("press");
    case ScriptStep::MOVE:
        return QStringLiteral("move");
    case ScriptStep::RELEASE:
        return QStringLiteral("release");
    case ScriptStep::CLICK:
        return QStringLiteral("click");
    case ScriptStep::CAMERA:
        return QStringLiteral("camera");
    case ScriptStep::FRAMES:
        return QStringLiteral("frames");
    case ScriptStep::SCREENSHOT:
        return QStringLiteral("screenshot");
    }
    return QString();
}

QString ViewerScript::stepError(const ScriptStep& step, const QString& field,
                                const QString& message) {
    QString text = QStringLiteral("step %1 (%2): ").arg(step.number).arg(kindName(step.kind));
    if (!field.isEmpty()) {
        text += QStringLiteral("field %1: ").arg(quoted(field));
    }
    return text + message;
}

} // namespace viewer
