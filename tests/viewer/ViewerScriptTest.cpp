// The viewer's script reader: every accepted form gives the fields ViewerScript.h describes, and
// every rejection gives one line naming the step, its action and the field at fault.
#include "ViewerScript.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QString>

#include <gtest/gtest.h>

#include <string>

namespace {

using viewer::ScriptCamera;
using viewer::ScriptStep;
using viewer::ScriptTarget;
using viewer::ViewerScript;

// A script holding the given steps (the text between the brackets).
QByteArray Steps(const std::string& steps) {
    return QByteArray::fromStdString("{\"steps\": [" + steps + "]}");
}

// Parses json, expecting success.
ViewerScript Parsed(const QByteArray& json) {
    ViewerScript script;
    QString error;
    EXPECT_TRUE(ViewerScript::parse(json, script, error)) << json.toStdString() << "\n"
                                                          << error.toStdString();
    return script;
}

// The one step of a script holding it alone, expecting success.
ScriptStep OnlyStep(const std::string& step) {
    const ViewerScript script = Parsed(Steps(step));
    EXPECT_EQ(script.steps.size(), 1u) << step;
    return script.steps.empty() ? ScriptStep() : script.steps.front();
}

// Parses json, expecting failure, and returns the message.
std::string ErrorOf(const QByteArray& json) {
    ViewerScript script;
    QString error;
    EXPECT_FALSE(ViewerScript::parse(json, script, error)) << json.toStdString();
    return error.toStdString();
}

// A script whose fields all differ from what any script in these tests reads.
ViewerScript Marker() {
    ViewerScript script;
    script.viewportWidth = 100;
    script.viewportHeight = 200;
    ScriptStep step;
    step.kind = ScriptStep::SCREENSHOT;
    step.number = 42;
    step.name = QStringLiteral("marker");
    script.steps.push_back(step);
    return script;
}

void ExpectMarker(const ViewerScript& script) {
    EXPECT_EQ(script.viewportWidth, 100);
    EXPECT_EQ(script.viewportHeight, 200);
    ASSERT_EQ(script.steps.size(), 1u);
    EXPECT_EQ(script.steps[0].kind, ScriptStep::SCREENSHOT);
    EXPECT_EQ(script.steps[0].number, 42);
    EXPECT_EQ(script.steps[0].name, QStringLiteral("marker"));
}

// ---------------------------------------------------------------------------------------------
// Accepted forms

TEST(ViewerScriptTest, TheHeaderExampleReadsIntoTenStepsNumberedOneToTen) {
    const ViewerScript script = Parsed(R"json({
        "viewport": {"width": 960, "height": 600},
        "steps": [
            {"key": "W"},
            {"select": ["cube", "cone"]},
            {"press": "translate.x"},
            {"move": {"handle": "translate.x", "along": 1.5}},
            {"frames": 2},
            {"release": null},
            {"click": {"object": "torus"}, "modifiers": ["shift"]},
            {"press": [480, 300], "button": "right"},
            {"camera": {"orbit": [30, -10]}},
            {"screenshot": "after-translate"}
        ]
    })json");
    EXPECT_EQ(script.viewportWidth, 960);
    EXPECT_EQ(script.viewportHeight, 600);
    ASSERT_EQ(script.steps.size(), 10u);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(script.steps[i].number, i + 1);
    }

    const ScriptStep& key = script.steps[0];
    EXPECT_EQ(key.kind, ScriptStep::KEY);
    EXPECT_EQ(key.key, int(Qt::Key_W));
    EXPECT_EQ(key.modifiers, 0);

    const ScriptStep& select = script.steps[1];
    EXPECT_EQ(select.kind, ScriptStep::SELECT);
    EXPECT_EQ(select.objects, QStringList({QStringLiteral("cube"), QStringLiteral("cone")}));

    const ScriptStep& press = script.steps[2];
    EXPECT_EQ(press.kind, ScriptStep::PRESS);
    EXPECT_EQ(press.button, int(Qt::LeftButton));
    EXPECT_EQ(press.modifiers, 0);
    EXPECT_EQ(press.target.kind, ScriptTarget::HANDLE);
    EXPECT_EQ(press.target.handleMode, 0);
    EXPECT_EQ(press.target.handleAxis, 0);
    EXPECT_EQ(press.target.along, 0.0);

    const ScriptStep& move = script.steps[3];
    EXPECT_EQ(move.kind, ScriptStep::MOVE);
    EXPECT_EQ(move.target.kind, ScriptTarget::HANDLE);
    EXPECT_EQ(move.target.handleMode, 0);
    EXPECT_EQ(move.target.handleAxis, 0);
    EXPECT_EQ(move.target.along, 1.5);
    EXPECT_EQ(move.target.offset, QPointF(0.0, 0.0));

    const ScriptStep& frames = script.steps[4];
    EXPECT_EQ(frames.kind, ScriptStep::FRAMES);
    EXPECT_EQ(frames.frames, 2);

    const ScriptStep& release = script.steps[5];
    EXPECT_EQ(release.kind, ScriptStep::RELEASE);
    EXPECT_EQ(release.target.kind, ScriptTarget::CURRENT);
    EXPECT_EQ(release.button, 0);

    const ScriptStep& click = script.steps[6];
    EXPECT_EQ(click.kind, ScriptStep::CLICK);
    EXPECT_EQ(click.target.kind, ScriptTarget::OBJECT);
    EXPECT_EQ(click.target.object, QStringLiteral("torus"));
    EXPECT_EQ(click.modifiers, int(Qt::ShiftModifier));
    EXPECT_EQ(click.button, int(Qt::LeftButton));

    const ScriptStep& rightPress = script.steps[7];
    EXPECT_EQ(rightPress.kind, ScriptStep::PRESS);
    EXPECT_EQ(rightPress.target.kind, ScriptTarget::PIXEL);
    EXPECT_EQ(rightPress.target.pixel, QPointF(480.0, 300.0));
    EXPECT_EQ(rightPress.button, int(Qt::RightButton));

    const ScriptStep& camera = script.steps[8];
    EXPECT_EQ(camera.kind, ScriptStep::CAMERA);
    EXPECT_EQ(camera.camera.kind, ScriptCamera::ORBIT);
    EXPECT_EQ(camera.camera.first, 30.0);
    EXPECT_EQ(camera.camera.second, -10.0);

    const ScriptStep& screenshot = script.steps[9];
    EXPECT_EQ(screenshot.kind, ScriptStep::SCREENSHOT);
    EXPECT_EQ(screenshot.name, QStringLiteral("after-translate"));
}

TEST(ViewerScriptTest, ScriptWithoutViewportIsNineHundredSixtyBySixHundred) {
    const ViewerScript script = Parsed(Steps(R"json({"frames": 1})json"));
    EXPECT_EQ(script.viewportWidth, 960);
    EXPECT_EQ(script.viewportHeight, 600);
}

TEST(ViewerScriptTest, ViewportTakesBothBoundsAndEachSideAlone) {
    const ViewerScript both =
        Parsed(R"json({"viewport": {"width": 64, "height": 4096}, "steps": []})json");
    EXPECT_EQ(both.viewportWidth, 64);
    EXPECT_EQ(both.viewportHeight, 4096);
    const ViewerScript width = Parsed(R"json({"viewport": {"width": 4096}, "steps": []})json");
    EXPECT_EQ(width.viewportWidth, 4096);
    EXPECT_EQ(width.viewportHeight, 600);
    const ViewerScript height = Parsed(R"json({"viewport": {"height": 64}, "steps": []})json");
    EXPECT_EQ(height.viewportWidth, 960);
    EXPECT_EQ(height.viewportHeight, 64);
    const ViewerScript none = Parsed(R"json({"viewport": {}, "steps": []})json");
    EXPECT_EQ(none.viewportWidth, 960);
    EXPECT_EQ(none.viewportHeight, 600);
}

TEST(ViewerScriptTest, EmptyStepsArrayIsAScriptWithoutSteps) {
    EXPECT_TRUE(Parsed(Steps("")).steps.empty());
}

TEST(ViewerScriptTest, SuccessfulParseReplacesTheWholeScript) {
    ViewerScript script = Marker();
    QString error;
    ASSERT_TRUE(ViewerScript::parse(Steps(R"json({"frames": 3})json"), script, error))
        << error.toStdString();
    EXPECT_EQ(script.viewportWidth, 960);
    EXPECT_EQ(script.viewportHeight, 600);
    ASSERT_EQ(script.steps.size(), 1u);
    EXPECT_EQ(script.steps[0].kind, ScriptStep::FRAMES);
    EXPECT_EQ(script.steps[0].number, 1);
    EXPECT_EQ(script.steps[0].frames, 3);
}

TEST(ViewerScriptTest, CommentIsAcceptedAtTopLevelAndInEveryStepKind) {
    const ViewerScript script = Parsed(R"json({
        "comment": "the whole script",
        "steps": [
            {"key": "W", "comment": "a"},
            {"select": [], "comment": "b"},
            {"press": null, "comment": "c"},
            {"move": null, "comment": "d"},
            {"release": null, "comment": "e"},
            {"click": null, "comment": "f"},
            {"camera": "home", "comment": "g"},
            {"frames": 1, "comment": "h"},
            {"screenshot": "s", "comment": "i"}
        ]
    })json");
    ASSERT_EQ(script.steps.size(), 9u);
    const ScriptStep::Kind kinds[] = {
        ScriptStep::KEY,    ScriptStep::SELECT,  ScriptStep::PRESS,
        ScriptStep::MOVE,   ScriptStep::RELEASE, ScriptStep::CLICK,
        ScriptStep::CAMERA, ScriptStep::FRAMES,  ScriptStep::SCREENSHOT};
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(script.steps[i].kind, kinds[i]) << "step " << i + 1;
    }
}

TEST(ViewerScriptTest, KeysAreReadAsQKeySequenceReadsThemWithModifiersApart) {
    struct Case {
        const char* text;
        int key;
        int modifiers;
    };
    const Case cases[] = {
        {"+", Qt::Key_Plus, 0},
        {"-", Qt::Key_Minus, 0},
        {"1", Qt::Key_1, 0},
        {"F1", Qt::Key_F1, 0},
        {"Home", Qt::Key_Home, 0},
        {"w", Qt::Key_W, 0},
        {"Ctrl+Z", Qt::Key_Z, Qt::ControlModifier},
        {"Ctrl+Shift+Z", Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier},
        {"Shift+Ctrl+z", Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier},
        {"Alt+F1", Qt::Key_F1, Qt::AltModifier},
    };
    for (const Case& c : cases) {
        const ScriptStep step = OnlyStep(std::string("{\"key\": \"") + c.text + "\"}");
        EXPECT_EQ(step.kind, ScriptStep::KEY) << c.text;
        EXPECT_EQ(step.key, c.key) << c.text;
        EXPECT_EQ(step.modifiers, c.modifiers) << c.text;
    }
}

TEST(ViewerScriptTest, SelectReadsNamesInOrderAndEmptyArrayClears) {
    EXPECT_EQ(OnlyStep(R"json({"select": ["b", "a", "b"]})json").objects,
              QStringList({QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b")}));
    const ScriptStep clear = OnlyStep(R"json({"select": []})json");
    EXPECT_EQ(clear.kind, ScriptStep::SELECT);
    EXPECT_TRUE(clear.objects.isEmpty());
}

TEST(ViewerScriptTest, PressAndClickDefaultToTheLeftButton) {
    EXPECT_EQ(OnlyStep(R"json({"press": null})json").button, int(Qt::LeftButton));
    EXPECT_EQ(OnlyStep(R"json({"click": null})json").button, int(Qt::LeftButton));
}

TEST(ViewerScriptTest, ReleaseWithoutButtonHasButtonZeroForTheLastPressed) {
    EXPECT_EQ(OnlyStep(R"json({"release": null})json").button, 0);
    EXPECT_EQ(OnlyStep(R"json({"release": [1, 2]})json").button, 0);
}

TEST(ViewerScriptTest, ButtonNamesGiveQtButtons) {
    EXPECT_EQ(OnlyStep(R"json({"press": null, "button": "left"})json").button, int(Qt::LeftButton));
    EXPECT_EQ(OnlyStep(R"json({"press": null, "button": "right"})json").button,
              int(Qt::RightButton));
    EXPECT_EQ(OnlyStep(R"json({"click": null, "button": "middle"})json").button,
              int(Qt::MiddleButton));
    EXPECT_EQ(OnlyStep(R"json({"release": null, "button": "right"})json").button,
              int(Qt::RightButton));
}

TEST(ViewerScriptTest, ModifiersCombineAndRepeatsAreHarmless) {
    EXPECT_EQ(OnlyStep(R"json({"press": null, "modifiers": ["alt", "ctrl", "shift", "ctrl"]})json")
                  .modifiers,
              int(Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier));
    EXPECT_EQ(OnlyStep(R"json({"move": null, "modifiers": ["ctrl"]})json").modifiers,
              int(Qt::ControlModifier));
    EXPECT_EQ(OnlyStep(R"json({"release": null, "modifiers": ["alt"]})json").modifiers,
              int(Qt::AltModifier));
    EXPECT_EQ(OnlyStep(R"json({"click": null, "modifiers": []})json").modifiers, 0);
}

TEST(ViewerScriptTest, NullTargetIsWhereTheMouseAlreadyIs) {
    for (const char* kind : {"press", "move", "release", "click"}) {
        const ScriptStep step = OnlyStep(std::string("{\"") + kind + "\": null}");
        EXPECT_EQ(step.target.kind, ScriptTarget::CURRENT) << kind;
        EXPECT_EQ(ViewerScript::kindName(step.kind), QString::fromLatin1(kind));
    }
}

TEST(ViewerScriptTest, PixelTargetKeepsFractionsAndTakesTheMillionBound) {
    const ScriptStep fraction = OnlyStep(R"json({"move": [12.25, -0.5]})json");
    EXPECT_EQ(fraction.target.kind, ScriptTarget::PIXEL);
    EXPECT_EQ(fraction.target.pixel, QPointF(12.25, -0.5));
    const ScriptStep bound = OnlyStep(R"json({"click": [1000000, -1000000]})json");
    EXPECT_EQ(bound.target.pixel, QPointF(1e6, -1e6));
}

TEST(ViewerScriptTest, NineHandleNamesGiveModeAndAxis) {
    const char* modes[] = {"translate", "rotate", "scale"};
    const char* axes[] = {"x", "y", "z"};
    for (int mode = 0; mode < 3; ++mode) {
        for (int axis = 0; axis < 3; ++axis) {
            const std::string name = std::string(modes[mode]) + "." + axes[axis];
            const ScriptStep step = OnlyStep("{\"press\": \"" + name + "\"}");
            EXPECT_EQ(step.target.kind, ScriptTarget::HANDLE) << name;
            EXPECT_EQ(step.target.handleMode, mode) << name;
            EXPECT_EQ(step.target.handleAxis, axis) << name;
        }
    }
}

TEST(ViewerScriptTest, HandleNameAloneEqualsTheHandleObject) {
    const ScriptTarget named = OnlyStep(R"json({"press": "scale.y"})json").target;
    const ScriptTarget object = OnlyStep(R"json({"press": {"handle": "scale.y"}})json").target;
    for (const ScriptTarget& target : {named, object}) {
        EXPECT_EQ(target.kind, ScriptTarget::HANDLE);
        EXPECT_EQ(target.handleMode, 2);
        EXPECT_EQ(target.handleAxis, 1);
        EXPECT_EQ(target.along, 0.0);
        EXPECT_FALSE(target.hasAngle);
        EXPECT_EQ(target.turn, 0.0);
        EXPECT_EQ(target.offset, QPointF(0.0, 0.0));
    }
}

TEST(ViewerScriptTest, RotateHandleWithoutAngleHasNoAngle) {
    const ScriptTarget target = OnlyStep(R"json({"press": "rotate.z"})json").target;
    EXPECT_EQ(target.kind, ScriptTarget::HANDLE);
    EXPECT_EQ(target.handleMode, 1);
    EXPECT_EQ(target.handleAxis, 2);
    EXPECT_FALSE(target.hasAngle);
    EXPECT_EQ(target.turn, 0.0);
    // A turn alone still leaves the angle to the point nearest the eye.
    const ScriptTarget turned =
        OnlyStep(R"json({"move": {"handle": "rotate.z", "turn": 90}})json").target;
    EXPECT_FALSE(turned.hasAngle);
    EXPECT_EQ(turned.turn, 90.0);
}

TEST(ViewerScriptTest, RotateHandleTakesAngleTurnAndOffset) {
    const ScriptTarget target =
        OnlyStep(R"json({"move": {"handle": "rotate.x", "angle": 0, "turn": -45.5,
                                   "offset": [3, -4]}})json")
            .target;
    EXPECT_EQ(target.handleMode, 1);
    EXPECT_EQ(target.handleAxis, 0);
    // An angle of 0 is given, not left out.
    EXPECT_TRUE(target.hasAngle);
    EXPECT_EQ(target.angle, 0.0);
    EXPECT_EQ(target.turn, -45.5);
    EXPECT_EQ(target.offset, QPointF(3.0, -4.0));
}

TEST(ViewerScriptTest, TranslateAndScaleHandlesTakeAlong) {
    EXPECT_EQ(
        OnlyStep(R"json({"move": {"handle": "translate.z", "along": -0.25}})json").target.along,
        -0.25);
    const ScriptTarget scale =
        OnlyStep(R"json({"move": {"handle": "scale.x", "along": 2, "offset": [0.5, 1]}})json")
            .target;
    EXPECT_EQ(scale.handleMode, 2);
    EXPECT_EQ(scale.along, 2.0);
    EXPECT_EQ(scale.offset, QPointF(0.5, 1.0));
}

TEST(ViewerScriptTest, ObjectAndWorldTargetsTakeAnOffset) {
    const ScriptTarget object =
        OnlyStep(R"json({"click": {"object": "cone", "offset": [-2, 7]}})json").target;
    EXPECT_EQ(object.kind, ScriptTarget::OBJECT);
    EXPECT_EQ(object.object, QStringLiteral("cone"));
    EXPECT_EQ(object.offset, QPointF(-2.0, 7.0));
    const ScriptTarget world =
        OnlyStep(R"json({"press": {"world": [1, -2.5, 1000000], "offset": [1, 1]}})json").target;
    EXPECT_EQ(world.kind, ScriptTarget::WORLD);
    EXPECT_EQ(world.world[0], 1.0);
    EXPECT_EQ(world.world[1], -2.5);
    EXPECT_EQ(world.world[2], 1e6);
    EXPECT_EQ(world.offset, QPointF(1.0, 1.0));
}

TEST(ViewerScriptTest, CameraReadsHomeAndEveryMoveWithItsBounds) {
    EXPECT_EQ(OnlyStep(R"json({"camera": "home"})json").camera.kind, ScriptCamera::HOME);

    const ScriptCamera orbit = OnlyStep(R"json({"camera": {"orbit": [3600, -3600]}})json").camera;
    EXPECT_EQ(orbit.kind, ScriptCamera::ORBIT);
    EXPECT_EQ(orbit.first, 3600.0);
    EXPECT_EQ(orbit.second, -3600.0);

    const ScriptCamera pan = OnlyStep(R"json({"camera": {"pan": [-10000, 2.5]}})json").camera;
    EXPECT_EQ(pan.kind, ScriptCamera::PAN);
    EXPECT_EQ(pan.first, -10000.0);
    EXPECT_EQ(pan.second, 2.5);

    const ScriptCamera zoomIn = OnlyStep(R"json({"camera": {"zoom": 100}})json").camera;
    EXPECT_EQ(zoomIn.kind, ScriptCamera::ZOOM);
    EXPECT_EQ(zoomIn.first, 100.0);
    EXPECT_EQ(OnlyStep(R"json({"camera": {"zoom": -100}})json").camera.first, -100.0);

    const ScriptCamera flat = OnlyStep(R"json({"camera": {"perspective": false}})json").camera;
    EXPECT_EQ(flat.kind, ScriptCamera::PERSPECTIVE);
    EXPECT_FALSE(flat.perspective);
    EXPECT_TRUE(OnlyStep(R"json({"camera": {"perspective": true}})json").camera.perspective);

    EXPECT_EQ(OnlyStep(R"json({"camera": {"frame": true}})json").camera.kind, ScriptCamera::FRAME);

    const ScriptCamera look =
        OnlyStep(R"json({"camera": {"eye": [0, 0, 10], "target": [1, 2, -3]}})json").camera;
    EXPECT_EQ(look.kind, ScriptCamera::LOOK_AT);
    EXPECT_EQ(look.eye, (std::array<double, 3>{0.0, 0.0, 10.0}));
    EXPECT_EQ(look.target, (std::array<double, 3>{1.0, 2.0, -3.0}));
}

TEST(ViewerScriptTest, FramesTakesOneAndTenThousand) {
    EXPECT_EQ(OnlyStep(R"json({"frames": 1})json").frames, 1);
    EXPECT_EQ(OnlyStep(R"json({"frames": 10000})json").frames, 10000);
    // 2.0 is an integer written as a fraction.
    EXPECT_EQ(OnlyStep(R"json({"frames": 2.0})json").frames, 2);
}

TEST(ViewerScriptTest, ScreenshotNameOfSixtyFourAllowedCharactersIsAccepted) {
    EXPECT_EQ(OnlyStep(R"json({"screenshot": "a.B-9_z"})json").name, QStringLiteral("a.B-9_z"));
    const std::string longest(64, 'x');
    EXPECT_EQ(OnlyStep("{\"screenshot\": \"" + longest + "\"}").name,
              QString::fromStdString(longest));
    // Names differing in case are different files.
    EXPECT_EQ(Parsed(Steps(R"json({"screenshot": "a"}, {"screenshot": "A"})json")).steps.size(),
              2u);
}

TEST(ViewerScriptTest, KindNameIsTheSpellingScriptsUse) {
    EXPECT_EQ(ViewerScript::kindName(ScriptStep::KEY), QStringLiteral("key"));
    EXPECT_EQ(ViewerScript::kindName(ScriptStep::SELECT), QStringLiteral("select"));
    EXPECT_EQ(ViewerScript::kindName(ScriptStep::PRESS), QStringLiteral("press"));
    EXPECT_EQ(ViewerScript::kindName(ScriptStep::MOVE), QStringLiteral("move"));
    EXPECT_EQ(ViewerScript::kindName(ScriptStep::RELEASE), QStringLiteral("release"));
    EXPECT_EQ(ViewerScript::kindName(ScriptStep::CLICK), QStringLiteral("click"));
    EXPECT_EQ(ViewerScript::kindName(ScriptStep::CAMERA), QStringLiteral("camera"));
    EXPECT_EQ(ViewerScript::kindName(ScriptStep::FRAMES), QStringLiteral("frames"));
    EXPECT_EQ(ViewerScript::kindName(ScriptStep::SCREENSHOT), QStringLiteral("screenshot"));
}

TEST(ViewerScriptTest, StepErrorNamesStepKindAndFieldAndLeavesAnEmptyFieldOut) {
    ScriptStep step;
    step.kind = ScriptStep::PRESS;
    step.number = 3;
    EXPECT_EQ(ViewerScript::stepError(step, QStringLiteral("button"), QStringLiteral("bad"))
                  .toStdString(),
              R"(step 3 (press): field "button": bad)");
    EXPECT_EQ(ViewerScript::stepError(step, QString(), QStringLiteral("bad")).toStdString(),
              "step 3 (press): bad");
}

// ---------------------------------------------------------------------------------------------
// Rejections

TEST(ViewerScriptTest, InvalidJsonGivesQtsReasonAndOffset) {
    const QByteArray json = R"json({"steps": [{"frames": 1}, ]})json";
    QJsonParseError qtError;
    QJsonDocument::fromJson(json, &qtError);
    ASSERT_NE(qtError.error, QJsonParseError::NoError);
    EXPECT_EQ(ErrorOf(json),
              "the script is not valid JSON: " + qtError.errorString().toStdString() +
                  " at offset " + std::to_string(qtError.offset));
    EXPECT_EQ(ErrorOf("").rfind("the script is not valid JSON: ", 0), 0u);
}

TEST(ViewerScriptTest, TopLevelThatIsNoObjectIsRejected) {
    EXPECT_EQ(ErrorOf(R"json([{"frames": 1}])json"),
              R"(the script must be a JSON object with "steps")");
}

TEST(ViewerScriptTest, ScriptWithoutStepsIsRejected) {
    EXPECT_EQ(ErrorOf(R"json({"viewport": {"width": 100}})json"),
              R"(field "steps": missing (the script needs an array of steps))");
}

TEST(ViewerScriptTest, StepsThatAreNoArrayAreRejected) {
    EXPECT_EQ(ErrorOf(R"json({"steps": {"frames": 1}})json"), R"(field "steps": must be an array)");
    EXPECT_EQ(ErrorOf(R"json({"steps": null})json"), R"(field "steps": must be an array)");
}

TEST(ViewerScriptTest, TopLevelUnknownFieldIsRejected) {
    EXPECT_EQ(ErrorOf(R"json({"steps": [], "step": []})json"), R"(field "step": unknown field)");
}

TEST(ViewerScriptTest, CommentThatIsNoStringIsRejected) {
    EXPECT_EQ(ErrorOf(R"json({"steps": [], "comment": 1})json"),
              R"(field "comment": must be a string)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"frames": 1, "comment": ["a"]})json")),
              R"(step 1 (frames): field "comment": must be a string)");
}

TEST(ViewerScriptTest, StepThatIsNoObjectNamesItsNumber) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"frames": 1}, {"frames": 1}, "frames")json")),
              "step 3: must be an object");
}

TEST(ViewerScriptTest, StepWithoutActionListsTheActions) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"frames": 1}, {"comment": "nothing"})json")),
              "step 2: no action field (one of key, select, press, move, release, click, camera, "
              "frames, screenshot)");
    EXPECT_EQ(ErrorOf(Steps(R"json({})json")),
              "step 1: no action field (one of key, select, press, move, release, click, camera, "
              "frames, screenshot)");
}

TEST(ViewerScriptTest, StepWithTwoActionsNamesBothInActionOrder) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"frames": 1}, {"move": null, "press": null})json")),
              R"(step 2: more than one action field ("press" and "move"))");
}

TEST(ViewerScriptTest, UnknownStepFieldIsNamed) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"press": null, "buton": "left"})json")),
              R"(step 1 (press): field "buton": unknown field)");
}

TEST(ViewerScriptTest, FieldOfAnotherKindIsUnknownToThisKind) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"move": null, "button": "left"})json")),
              R"(step 1 (move): field "button": unknown field)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"key": "W", "modifiers": ["ctrl"]})json")),
              R"(step 1 (key): field "modifiers": unknown field)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"frames": 1, "button": "left"})json")),
              R"(step 1 (frames): field "button": unknown field)");
}

TEST(ViewerScriptTest, UnknownTargetFieldIsNamedUnderItsAction) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"move": {"handle": "translate.x", "alng": 1}})json")),
              R"(step 1 (move): field "move.alng": unknown field)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"click": {"object": "cube", "button": "left"}})json")),
              R"(step 1 (click): field "click.button": unknown field)");
}

TEST(ViewerScriptTest, TargetObjectNeedsExactlyOneOfHandleObjectAndWorld) {
    const std::string message =
        R"(step 1 (click): field "click": must hold exactly one of "handle", "object" and "world")";
    EXPECT_EQ(ErrorOf(Steps(R"json({"click": {"offset": [1, 2]}})json")), message);
    EXPECT_EQ(ErrorOf(Steps(R"json({"click": {"object": "a", "world": [0, 0, 0]}})json")), message);
}

TEST(ViewerScriptTest, TargetOfAnotherTypeIsRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"press": 5})json")),
              R"(step 1 (press): field "press": must be null, [x, y], a handle such as )"
              R"("translate.x" or an object with "handle", "object" or "world")");
}

TEST(ViewerScriptTest, ObjectTargetNeedsANonEmptyName) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"click": {"object": ""}})json")),
              R"(step 1 (click): field "click.object": must be a non-empty string)");
}

TEST(ViewerScriptTest, WorldTargetNeedsThreeNumbers) {
    const std::string message = R"(step 1 (press): field "press.world": must be three numbers )"
                                R"([x, y, z], each from -1000000 to 1000000)";
    EXPECT_EQ(ErrorOf(Steps(R"json({"press": {"world": [1, 2]}})json")), message);
    EXPECT_EQ(ErrorOf(Steps(R"json({"press": {"world": [1, 2, 1000001]}})json")), message);
}

TEST(ViewerScriptTest, BadButtonIsRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"frames": 1}, {"frames": 1}, {"frames": 1},
                             {"press": null, "button": "Left"})json")),
              R"(step 4 (press): field "button": must be "left", "right" or "middle")");
    EXPECT_EQ(ErrorOf(Steps(R"json({"release": null, "button": 1})json")),
              R"(step 1 (release): field "button": must be "left", "right" or "middle")");
}

TEST(ViewerScriptTest, BadModifierIsRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"click": null, "modifiers": ["shift", "meta"]})json")),
              R"(step 1 (click): field "modifiers": "meta" is not "shift", "ctrl" or "alt")");
    EXPECT_EQ(ErrorOf(Steps(R"json({"move": null, "modifiers": "shift"})json")),
              R"(step 1 (move): field "modifiers": must be an array of "shift", "ctrl" and "alt")");
}

TEST(ViewerScriptTest, EmptyKeyIsRejected) {
    const std::string message =
        R"(step 1 (key): field "key": must be a non-empty string such as "W" or "Ctrl+Z")";
    EXPECT_EQ(ErrorOf(Steps(R"json({"key": ""})json")), message);
    EXPECT_EQ(ErrorOf(Steps(R"json({"key": 87})json")), message);
}

TEST(ViewerScriptTest, KeyThatIsNoCombinationIsRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"key": "Ctrl+"})json")),
              R"(step 1 (key): field "key": "Ctrl+" is not a key combination)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"key": "NotAKey"})json")),
              R"(step 1 (key): field "key": "NotAKey" is not a key combination)");
}

TEST(ViewerScriptTest, KeyWithTwoCombinationsIsRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"key": "A, B"})json")),
              R"(step 1 (key): field "key": "A, B" holds 2 key combinations; a step presses one)");
}

TEST(ViewerScriptTest, WrongHandleNamesAreRejected) {
    const std::string message =
        R"(must be a handle "mode.axis" with mode translate, rotate or scale and axis x, y or z )"
        R"(("translate.x"))";
    for (const char* name : {"Translate.x", "translate.X", "translate.w", "move.x", "translate",
                             "translate.x.y", ""}) {
        EXPECT_EQ(ErrorOf(Steps(std::string("{\"press\": \"") + name + "\"}")),
                  R"(step 1 (press): field "press": )" + message)
            << name;
        EXPECT_EQ(ErrorOf(Steps(std::string("{\"move\": {\"handle\": \"") + name + "\"}}")),
                  R"(step 1 (move): field "move.handle": )" + message)
            << name;
    }
}

TEST(ViewerScriptTest, AlongOnARotateHandleIsRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"move": {"handle": "rotate.y", "along": 1}})json")),
              R"(step 1 (move): field "move.along": only for translate and scale handles)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"click": {"object": "cube", "along": 1}})json")),
              R"(step 1 (click): field "click.along": only for translate and scale handles)");
}

TEST(ViewerScriptTest, TurnOrAngleOffARotateHandleIsRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"move": {"handle": "translate.x", "turn": 10}})json")),
              R"(step 1 (move): field "move.turn": only for rotate handles)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"press": {"handle": "scale.z", "angle": 10}})json")),
              R"(step 1 (press): field "press.angle": only for rotate handles)");
}

TEST(ViewerScriptTest, HandleNumbersOutOfRangeAreRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"move": {"handle": "rotate.x", "angle": 1e308}})json")),
              R"(step 1 (move): field "move.angle": must be a number from -1000000 to 1000000)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"move": {"handle": "scale.x", "along": "1"}})json")),
              R"(step 1 (move): field "move.along": must be a number from -1000000 to 1000000)");
}

TEST(ViewerScriptTest, PixelThatIsNotTwoNumbersIsRejected) {
    const std::string message = R"(step 1 (press): field "press": must be two numbers [x, y], )"
                                R"(each from -1000000 to 1000000)";
    for (const char* pixel : {"[]", "[1]", "[1, 2, 3]", "[\"1\", 2]", "[1, null]"}) {
        EXPECT_EQ(ErrorOf(Steps(std::string("{\"press\": ") + pixel + "}")), message) << pixel;
    }
}

TEST(ViewerScriptTest, PixelOutOfRangeIsRejected) {
    const std::string message = R"(step 1 (move): field "move": must be two numbers [x, y], )"
                                R"(each from -1000000 to 1000000)";
    EXPECT_EQ(ErrorOf(Steps(R"json({"move": [1e308, 0]})json")), message);
    EXPECT_EQ(ErrorOf(Steps(R"json({"move": [0, -1000000.5]})json")), message);
    EXPECT_EQ(ErrorOf(Steps(R"json({"move": {"object": "a", "offset": [0, 1000001]}})json")),
              R"(step 1 (move): field "move.offset": must be two numbers [x, y], )"
              R"(each from -1000000 to 1000000)");
}

TEST(ViewerScriptTest, FramesOutsideOneToTenThousandOrNotAnIntegerAreRejected) {
    const std::string message = R"(step 1 (frames): field "frames": must be an integer from 1 to )"
                                R"(10000)";
    for (const char* frames : {"0", "10001", "1.5", "\"3\"", "-1", "1e308", "null"}) {
        EXPECT_EQ(ErrorOf(Steps(std::string("{\"frames\": ") + frames + "}")), message) << frames;
    }
}

TEST(ViewerScriptTest, ScreenshotNameWithSlashIsRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"screenshot": "shots/a"})json")),
              R"(step 1 (screenshot): field "screenshot": the name "shots/a" may hold only )"
              R"(letters, digits, '-', '_' and '.')");
    EXPECT_EQ(ErrorOf(Steps(R"json({"screenshot": "a b"})json")),
              R"(step 1 (screenshot): field "screenshot": the name "a b" may hold only )"
              R"(letters, digits, '-', '_' and '.')");
}

TEST(ViewerScriptTest, ScreenshotNameStartingWithDotIsRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"screenshot": ".hidden"})json")),
              R"(step 1 (screenshot): field "screenshot": the name ".hidden" must not start )"
              R"(with '.')");
}

TEST(ViewerScriptTest, EmptyScreenshotNameIsRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"screenshot": ""})json")),
              R"(step 1 (screenshot): field "screenshot": must not be empty)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"screenshot": null})json")),
              R"(step 1 (screenshot): field "screenshot": must be a file name stem (a string))");
}

TEST(ViewerScriptTest, ScreenshotNameOfSixtyFiveCharactersIsRejected) {
    EXPECT_EQ(ErrorOf(Steps("{\"screenshot\": \"" + std::string(65, 'x') + "\"}")),
              R"(step 1 (screenshot): field "screenshot": must be at most 64 characters )"
              R"((it has 65))");
}

TEST(ViewerScriptTest, ScreenshotNameUsedTwiceNamesTheEarlierStep) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"frames": 1}, {"screenshot": "b"}, {"screenshot": "a"},
                              {"frames": 1}, {"screenshot": "c"}, {"frames": 1},
                              {"screenshot": "a"})json")),
              R"(step 7 (screenshot): field "screenshot": the name "a" is already used by step 3)");
}

TEST(ViewerScriptTest, CameraWithTwoMovesIsRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"camera": {"pan": [1, 2], "orbit": [3, 4]}})json")),
              R"(step 1 (camera): field "camera": more than one camera move ("orbit" and "pan"))");
    EXPECT_EQ(
        ErrorOf(Steps(R"json({"camera": {"eye": [0, 0, 1], "target": [0, 0, 0], "zoom": 1}})json")),
        R"(step 1 (camera): field "camera": more than one camera move ("eye" and "zoom"))");
}

TEST(ViewerScriptTest, CameraEyeAndTargetNeedEachOther) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"camera": {"eye": [0, 0, 10]}})json")),
              R"(step 1 (camera): field "camera.eye": needs "target" as well)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"camera": {"target": [0, 0, 0]}})json")),
              R"(step 1 (camera): field "camera.target": needs "eye" as well)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"camera": {"eye": [0, 0, 10], "target": [0, 0]}})json")),
              R"(step 1 (camera): field "camera.target": must be three numbers [x, y, z], )"
              R"(each from -1000000 to 1000000)");
}

TEST(ViewerScriptTest, CameraFrameMustBeTrueAndPerspectiveABool) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"camera": {"frame": false}})json")),
              R"(step 1 (camera): field "camera.frame": must be true)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"camera": {"perspective": "yes"}})json")),
              R"(step 1 (camera): field "camera.perspective": must be true or false)");
}

TEST(ViewerScriptTest, CameraNumbersOutOfRangeAreRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"camera": {"orbit": [3600.5, 0]}})json")),
              R"(step 1 (camera): field "camera.orbit": must be two numbers )"
              R"([yawDegrees, pitchDegrees], each from -3600 to 3600)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"camera": {"pan": [0, 10001]}})json")),
              R"(step 1 (camera): field "camera.pan": must be two numbers [dxPixels, dyPixels], )"
              R"(each from -10000 to 10000)");
    EXPECT_EQ(ErrorOf(Steps(R"json({"camera": {"zoom": -101}})json")),
              R"(step 1 (camera): field "camera.zoom": must be a number from -100 to 100)");
}

TEST(ViewerScriptTest, CameraUnknownFieldOrWordIsRejected) {
    EXPECT_EQ(ErrorOf(Steps(R"json({"camera": {"spin": 1}})json")),
              R"(step 1 (camera): field "camera.spin": unknown field)");
    const std::string message =
        R"(step 1 (camera): field "camera": must be "home" or an object with one of "orbit", )"
        R"("pan", "zoom", "perspective", "frame" or "eye" with "target")";
    EXPECT_EQ(ErrorOf(Steps(R"json({"camera": "away"})json")), message);
    EXPECT_EQ(ErrorOf(Steps(R"json({"camera": {}})json")), message);
}

TEST(ViewerScriptTest, ViewportOutsideSixtyFourToFourThousandNinetySixIsRejected) {
    EXPECT_EQ(ErrorOf(R"json({"viewport": {"width": 63}, "steps": []})json"),
              R"(field "viewport.width": must be an integer from 64 to 4096)");
    EXPECT_EQ(ErrorOf(R"json({"viewport": {"width": 4097}, "steps": []})json"),
              R"(field "viewport.width": must be an integer from 64 to 4096)");
    EXPECT_EQ(ErrorOf(R"json({"viewport": {"height": 100.5}, "steps": []})json"),
              R"(field "viewport.height": must be an integer from 64 to 4096)");
    EXPECT_EQ(ErrorOf(R"json({"viewport": {"height": "100"}, "steps": []})json"),
              R"(field "viewport.height": must be an integer from 64 to 4096)");
}

TEST(ViewerScriptTest, ViewportUnknownFieldOrNonObjectIsRejected) {
    EXPECT_EQ(ErrorOf(R"json({"viewport": {"width": 100, "depth": 3}, "steps": []})json"),
              R"(field "viewport.depth": unknown field)");
    EXPECT_EQ(ErrorOf(R"json({"viewport": [100, 100], "steps": []})json"),
              R"(field "viewport": must be an object with "width" and "height")");
}

TEST(ViewerScriptTest, SelectThatIsNoArrayOfStringsIsRejected) {
    const std::string message =
        R"(step 1 (select): field "select": must be an array of object names (non-empty strings))";
    EXPECT_EQ(ErrorOf(Steps(R"json({"select": "cube"})json")), message);
    EXPECT_EQ(ErrorOf(Steps(R"json({"select": ["cube", 1]})json")), message);
    EXPECT_EQ(ErrorOf(Steps(R"json({"select": ["cube", ""]})json")), message);
}

TEST(ViewerScriptTest, FailedParseLeavesTheScriptAsItWas) {
    const QByteArray failures[] = {
        // Fails after a good viewport and a good step have been read.
        R"json({"viewport": {"width": 640, "height": 480},
                "steps": [{"frames": 1}, {"screenshot": "a"}, {"frames": 0}]})json",
        R"json({"viewport": {"width": 640, "height": 480}})json",
        R"json({"steps": [)json",
    };
    for (const QByteArray& json : failures) {
        ViewerScript script = Marker();
        QString error;
        EXPECT_FALSE(ViewerScript::parse(json, script, error)) << json.toStdString();
        EXPECT_FALSE(error.isEmpty());
        ExpectMarker(script);
    }
}

} // namespace
