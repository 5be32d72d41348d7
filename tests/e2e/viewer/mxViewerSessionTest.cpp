// Whole sessions of the viewer program, played from scripts: four drags (translate X in the
// World orientation, rotate Z by 45 degrees, scale Y by 2, a Local drag on the turned group),
// undone and redone; the built-in demo; and scripts the viewer must refuse.
//
// What a drag should do is worked out here again, in double, from the camera the library used
// (the report's single-precision camera) and the pixels the mouse steps happened at, through
// the normalised positions the controllers make of them. Each script is played once and shared
// by the tests that read it; every test still runs alone.
#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "e2e/viewer/mxViewerTestSupport.h"
#include "support/mxTestGeometry.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace mx::test;
using Vec3d = Wm4::Vector3<double>;
using Mat3d = Wm4::Matrix3<double>;

constexpr int X = 0;
constexpr int Y = 1;
constexpr int Z = 2;

// The numbers of the mouse steps of one drag.
struct DragSteps {
    int press = 0;
    int move = 0;
    int release = 0;
};

// Adds a drag on handle to script: press on it, a frame, a move to target, a frame, the
// release where the mouse is, a frame. Every mouse event gets a frame of its own.
DragSteps AddDrag(ScriptText& script, const std::string& handle, const std::string& target) {
    DragSteps steps;
    steps.press = script.add("{\"press\": \"" + handle + "\"}");
    script.add("{\"frames\": 1}");
    steps.move = script.add("{\"move\": " + target + "}");
    script.add("{\"frames\": 1}");
    steps.release = script.add("{\"release\": null}");
    script.add("{\"frames\": 1}");
    return steps;
}

// The four drags of the demo, from a fixed eye above and in front of the scene (so that no
// drag depends on the home view), then four undos; with redo, one redo after them.
struct GestureSession {
    DragSteps translate;
    DragSteps rotate;
    DragSteps scale;
    DragSteps local;
    ViewerRun run;

    explicit GestureSession(bool redo) {
        ScriptText script;
        script.add("{\"camera\": {\"eye\": [6, 6, 8], \"target\": [0, 0.5, 0]}}");
        script.add("{\"key\": \"G\"}");
        script.add("{\"select\": [\"cube\"]}");
        script.add("{\"frames\": 1}");
        // One and a half gizmo units to the right of the middle of the shaft.
        translate = AddDrag(script, "translate.x", "{\"handle\": \"translate.x\", \"along\": 1.5}");
        script.add("{\"key\": \"E\"}");
        script.add("{\"select\": [\"cylinder\"]}");
        script.add("{\"frames\": 1}");
        rotate = AddDrag(script, "rotate.z", "{\"handle\": \"rotate.z\", \"turn\": 45}");
        script.add("{\"key\": \"R\"}");
        script.add("{\"select\": [\"cone\"]}");
        script.add("{\"frames\": 1}");
        // From the end square at one unit to two units: twice as long.
        scale = AddDrag(script, "scale.y", "{\"handle\": \"scale.y\", \"along\": 1}");
        script.add("{\"key\": \"W\"}");
        script.add("{\"key\": \"L\"}");
        script.add("{\"select\": [\"crate\"]}");
        script.add("{\"frames\": 1}");
        local = AddDrag(script, "translate.x", "{\"handle\": \"translate.x\", \"along\": 1.2}");
        for (int i = 0; i < 4; ++i) {
            script.add("{\"key\": \"Ctrl+Z\"}");
        }
        script.add("{\"frames\": 1}");
        if (redo) {
            script.add("{\"key\": \"Ctrl+Shift+Z\"}");
            script.add("{\"frames\": 1}");
        }
        run = RunScript(script.json());
    }
};

const GestureSession& Gestures() {
    static const GestureSession session(false);
    return session;
}

const GestureSession& GesturesRedone() {
    static const GestureSession session(true);
    return session;
}

// The scene as it starts: one frame, no gesture.
const ViewerRun& Untouched() {
    static const ViewerRun run = RunScript("{\"steps\": [{\"frames\": 1}]}");
    return run;
}

const ViewerRun& Demo() {
    static const ViewerRun run =
        RunViewer({QStringLiteral("--demo"), QStringLiteral("--out"), QStringLiteral("@OUT")});
    return run;
}

// What the drag's mouse steps give, seen from the report.
struct PlayedDrag {
    mx::mxPointer<mx::mxCamera> camera;
    int width = 0;
    int height = 0;
    ReportTransform gizmo; // at the press
    Wm4::Vector2<float> pressMouse;
    Wm4::Vector2<float> moveMouse;
    qint64 pressFrame = 0;
    qint64 releaseFrame = 0;
};

PlayedDrag Played(const QJsonObject& report, const DragSteps& steps) {
    PlayedDrag drag;
    drag.camera = CameraOf(report);
    drag.width = ViewportWidth(report);
    drag.height = ViewportHeight(report);
    const QJsonObject press = StepRecord(report, steps.press);
    const QJsonObject move = StepRecord(report, steps.move);
    const QJsonObject release = StepRecord(report, steps.release);
    drag.gizmo = GizmoOfStep(press);
    drag.pressMouse = MouseOfWindowPixel(PixelOfStep(press), drag.width, drag.height);
    drag.moveMouse = MouseOfWindowPixel(PixelOfStep(move), drag.width, drag.height);
    drag.pressFrame = FrameOfStep(press);
    drag.releaseFrame = FrameOfStep(release);
    // The release happens where the move left the mouse.
    EXPECT_EQ(PixelOfStep(release).x, PixelOfStep(move).x);
    EXPECT_EQ(PixelOfStep(release).y, PixelOfStep(move).y);
    return drag;
}

// The world displacement of an axis drag on axis of the gizmo, pressed and moved as played.
Vec3d AxisDisplacement(const PlayedDrag& drag, int axis) {
    const AxisDrag axisDrag = PressAxisDrag(*drag.camera, drag.pressMouse, drag.gizmo.translateD(),
                                            drag.gizmo.matrixD(), axis);
    EXPECT_TRUE(axisDrag.found) << "the press ray meets neither drag plane";
    return axisDrag.pointUnder(*drag.camera, drag.moveMouse) - axisDrag.pressPoint;
}

::testing::AssertionResult VectorsNear(const Vec3d& actual, const Vec3d& expected,
                                       double tolerance) {
    if ((actual - expected).Length() <= tolerance) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "actual (" << actual.X() << ", " << actual.Y() << ", " << actual.Z() << ") expected ("
           << expected.X() << ", " << expected.Y() << ", " << expected.Z() << "), off by "
           << (actual - expected).Length() << " > " << tolerance;
}

::testing::AssertionResult MatricesNear(const Mat3d& actual, const Mat3d& expected,
                                        double tolerance) {
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            if (std::fabs(actual(r, c) - expected(r, c)) > tolerance) {
                return ::testing::AssertionFailure()
                       << "entry (" << r << ", " << c << ") is " << actual(r, c) << ", expected "
                       << expected(r, c) << " within " << tolerance;
            }
        }
    }
    return ::testing::AssertionSuccess();
}

Vec3d Moved(const MovedObject& moved) {
    return moved.worldAfter.translateD() - moved.worldBefore.translateD();
}

// The words a gesture pressed in one frame, moved in the next and released in the one after
// hears, each with its frame counted from the press.
std::vector<std::string> GestureWords(const QJsonObject& report, const PlayedDrag& drag) {
    EXPECT_EQ(drag.releaseFrame, drag.pressFrame + 2) << "the drag's frames are not consecutive";
    return EventsInFrames(report, drag.pressFrame, drag.releaseFrame);
}

std::string Joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return "{" + text + "}";
}

// Success when the gestures' run exited 0 and the drag of steps in it was heard as expected
// (see GestureWords).
::testing::AssertionResult HeardAs(const DragSteps GestureSession::*steps,
                                   const std::vector<std::string>& expected) {
    const GestureSession& session = Gestures();
    if (session.run.exitCode != 0) {
        return ::testing::AssertionFailure() << session.run.describe();
    }
    const std::vector<std::string> heard =
        GestureWords(session.run.report, Played(session.run.report, session.*steps));
    if (heard != expected) {
        return ::testing::AssertionFailure()
               << "heard " << Joined(heard) << ", expected " << Joined(expected);
    }
    return ::testing::AssertionSuccess();
}

// Success when the undo history of report holds count commands and stands at index (the number
// of them done).
::testing::AssertionResult UndoHistoryAt(const QJsonObject& report, int index, int count) {
    const QJsonObject undo = report.value(QStringLiteral("undo")).toObject();
    const int actualIndex = undo.value(QStringLiteral("index")).toInt(-1);
    const int actualCount = undo.value(QStringLiteral("count")).toInt(-1);
    if (actualIndex == index && actualCount == count) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "the undo history stands at " << actualIndex << " of " << actualCount << ", expected "
           << index << " of " << count;
}

// Expects every object of objects (the "objects" of an untouched run's report) to have the same
// local and world transformations in report, bit for bit.
void ExpectObjectsAsIn(const QJsonObject& report, const QJsonArray& objects) {
    for (const QJsonValue& value : objects) {
        const QJsonObject expected = value.toObject();
        const QString name = expected.value(QStringLiteral("name")).toString();
        const QJsonObject actual = ObjectEntry(report, name);
        for (const QString& which : {QStringLiteral("local"), QStringLiteral("world")}) {
            EXPECT_TRUE(
                SameBitsAs(TransformOf(actual.value(which)), TransformOf(expected.value(which))))
                << Str(name) << " " << Str(which);
        }
    }
}

// ---------------------------------------------------------------------------------------------
// Translate X, World orientation

TEST(mxViewerSessionTest, WorldTranslateXMovesTheCubeByTheAxisDragOfItsPixelsOnlyAlongX) {
    const GestureSession& session = Gestures();
    ASSERT_EQ(session.run.exitCode, 0) << session.run.describe();
    const PlayedDrag drag = Played(session.run.report, session.translate);
    const Vec3d expected = AxisDisplacement(drag, X);
    const MovedObject cube =
        CommandEntry(session.run.report, QStringLiteral("translate"), QStringLiteral("cube"));

    // A real drag of about one and a half units of a gizmo over a second of them.
    EXPECT_GT(expected.X(), 1.0 * drag.gizmo.unit());
    EXPECT_TRUE(VectorsNear(Moved(cube), expected, 1e-4 * drag.gizmo.unit()));
    // Along the world's X only: the other coordinates keep their bits.
    EXPECT_EQ(cube.worldAfter.translate[1], cube.worldBefore.translate[1]);
    EXPECT_EQ(cube.worldAfter.translate[2], cube.worldBefore.translate[2]);
    EXPECT_TRUE(SameBitsAs(
        TransformOf(
            ObjectEntry(Untouched().report, QStringLiteral("cube")).value(QStringLiteral("world"))),
        cube.worldBefore));
}

TEST(mxViewerSessionTest, WorldTranslateXEndDeltaIsTheTranslationOfTheDrag) {
    const GestureSession& session = Gestures();
    ASSERT_EQ(session.run.exitCode, 0) << session.run.describe();
    const PlayedDrag drag = Played(session.run.report, session.translate);
    const MovedObject cube =
        CommandEntry(session.run.report, QStringLiteral("translate"), QStringLiteral("cube"));

    EXPECT_TRUE(
        VectorsNear(cube.delta.translateD(), AxisDisplacement(drag, X), 1e-4 * drag.gizmo.unit()));
    EXPECT_TRUE(VectorsNear(cube.delta.translateD(), Moved(cube), 1e-6 * drag.gizmo.unit()));
    EXPECT_EQ(cube.delta.translate[1], 0.0f);
    EXPECT_EQ(cube.delta.translate[2], 0.0f);
    EXPECT_TRUE(MatricesNear(cube.delta.matrixD(), Mat3d::IDENTITY, 0.0));
    EXPECT_TRUE(VectorsNear(Vec3d(cube.delta.scale[0], cube.delta.scale[1], cube.delta.scale[2]),
                            Vec3d(1.0, 1.0, 1.0), 0.0));

    // The End callback the listener heard carries the same delta.
    const QJsonArray events = session.run.report.value(QStringLiteral("events")).toArray();
    int ends = 0;
    for (const QJsonValue& value : events) {
        const QJsonObject event = value.toObject();
        if (event.value(QStringLiteral("event")).toString() == QStringLiteral("translate end") &&
            event.value(QStringLiteral("frame")).toInteger() == drag.releaseFrame) {
            ++ends;
            EXPECT_TRUE(
                SameBitsAs(TransformOf(event.value(QStringLiteral("transformation"))), cube.delta));
        }
    }
    EXPECT_EQ(ends, 1);
}

TEST(mxViewerSessionTest, WorldTranslateXIsHeardAsStartManipulatedManipulatedEndManipulated) {
    // The press frame starts the drag and answers it at once; the move frame moves; the
    // release frame ends the drag and answers once more.
    EXPECT_TRUE(
        HeardAs(&GestureSession::translate, {"translate start@0", "manipulated@0", "manipulated@1",
                                             "translate end@2", "manipulated@2"}));
}

// ---------------------------------------------------------------------------------------------
// Rotate Z by 45 degrees, World orientation

TEST(mxViewerSessionTest, RotateZByFortyFiveDegreesTurnsTheCylinderByRzAboutItsCentre) {
    const GestureSession& session = Gestures();
    ASSERT_EQ(session.run.exitCode, 0) << session.run.describe();
    const PlayedDrag drag = Played(session.run.report, session.rotate);
    const Circle circle =
        CircleAbout(drag.gizmo.translateD(), drag.gizmo.matrixD(), Z, drag.gizmo.unit());
    const Vec3d pressPoint = circle.onPlane(*drag.camera, drag.pressMouse);
    const double swept = circle.sweptAngle(*drag.camera, pressPoint, drag.moveMouse);
    EXPECT_NEAR(swept, Radians(45.0), 1e-12);

    const MovedObject cylinder =
        CommandEntry(session.run.report, QStringLiteral("rotate"), QStringLiteral("cylinder"));
    const Mat3d turn = Rotation<double>(0.0, 0.0, 1.0, Radians(45.0));
    ASSERT_TRUE(cylinder.worldAfter.rs) << cylinder.worldAfter.describe();
    EXPECT_TRUE(
        MatricesNear(cylinder.worldAfter.matrixD(), turn * cylinder.worldBefore.matrixD(), 1e-5));
    // The gizmo sits on the cylinder's centre: the turn leaves it where it was.
    EXPECT_TRUE(VectorsNear(cylinder.worldAfter.translateD(), cylinder.worldBefore.translateD(),
                            1e-5 * drag.gizmo.unit()));
    EXPECT_TRUE(MatricesNear(cylinder.delta.matrixD(), turn, 1e-5));
}

TEST(mxViewerSessionTest, RotateZIsHeardAsStartManipulatedManipulatedEndManipulated) {
    EXPECT_TRUE(
        HeardAs(&GestureSession::rotate, {"rotate start@0", "manipulated@0", "manipulated@1",
                                          "rotate end@2", "manipulated@2"}));
}

// ---------------------------------------------------------------------------------------------
// Scale Y by 2, World orientation

TEST(mxViewerSessionTest, ScaleYByTwoStretchesTheConeAlongYOnlyByTheFactorOfItsPixels) {
    const GestureSession& session = Gestures();
    ASSERT_EQ(session.run.exitCode, 0) << session.run.describe();
    const PlayedDrag drag = Played(session.run.report, session.scale);
    const Vec3d centre = drag.gizmo.translateD();
    const AxisDrag axisDrag =
        PressAxisDrag(*drag.camera, drag.pressMouse, centre, drag.gizmo.matrixD(), Y);
    ASSERT_TRUE(axisDrag.found);
    const Vec3d arrow = drag.gizmo.gizmoPoint(Vec3d(0.0, 1.0, 0.0)) - centre;
    const double factor = ScaleFactor(axisDrag.lengthsDragged(*drag.camera, drag.moveMouse, arrow));

    // Close to 2: both pixels are within 0.71 pixel of their points, so the drag is off by at
    // most 1.5 pixels over the arrow's length on screen.
    const Wm4::Vector2<float> centrePixel =
        PixelOf(*drag.camera, ToFloat(centre), drag.width, drag.height);
    const Wm4::Vector2<float> tipPixel =
        PixelOf(*drag.camera, ToFloat(centre + arrow), drag.width, drag.height);
    const double arrowPixels = (tipPixel - centrePixel).Length();
    ASSERT_GT(arrowPixels, 20.0);
    EXPECT_NEAR(factor, 2.0, 1.5 / arrowPixels);

    const MovedObject cone =
        CommandEntry(session.run.report, QStringLiteral("scale"), QStringLiteral("cone"));
    const Mat3d before = cone.worldBefore.matrixD();
    ASSERT_TRUE(MatricesNear(before, Mat3d::IDENTITY, 0.0)) << cone.worldBefore.describe();
    const Mat3d after = cone.worldAfter.matrixD();
    EXPECT_NEAR(after(1, 1), factor, 1e-4 * factor);
    // Nothing but the y axis changes, bit for bit.
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            if (r != 1 || c != 1) {
                EXPECT_EQ(after(r, c), before(r, c)) << "entry (" << r << ", " << c << ")";
            }
        }
    }
    // About the gizmo's centre: t' = c + M (t - c) with M = diag(1, factor, 1).
    const Vec3d t = cone.worldBefore.translateD();
    const Vec3d expected(t.X(), centre.Y() + factor * (t.Y() - centre.Y()), t.Z());
    EXPECT_TRUE(VectorsNear(cone.worldAfter.translateD(), expected, 1e-4 * drag.gizmo.unit()));
    // The End delta scales y by the factor.
    EXPECT_NEAR(cone.delta.scale[1], factor, 1e-4 * factor);
    EXPECT_EQ(cone.delta.scale[0], 1.0f);
    EXPECT_EQ(cone.delta.scale[2], 1.0f);
}

TEST(mxViewerSessionTest, ScaleYPressIsHeardAsTranslateStartThenScaleStartAndEndsWithScaleEnd) {
    // The scale controller announces its press as a translate start first, on purpose.
    EXPECT_TRUE(
        HeardAs(&GestureSession::scale, {"translate start@0", "scale start@0", "manipulated@0",
                                         "manipulated@1", "scale end@2", "manipulated@2"}));
}

// ---------------------------------------------------------------------------------------------
// Translate X on the turned group's crate, Local orientation

TEST(mxViewerSessionTest, LocalTranslateXMovesTheCrateAlongTheGroupsTurnedXAxis) {
    const GestureSession& session = Gestures();
    ASSERT_EQ(session.run.exitCode, 0) << session.run.describe();
    const PlayedDrag drag = Played(session.run.report, session.local);
    // The group is turned 30 degrees about y: its x axis is (cos 30, 0, -sin 30).
    const Vec3d groupX(std::cos(Radians(30.0)), 0.0, -std::sin(Radians(30.0)));
    EXPECT_TRUE(VectorsNear(ColumnOf(drag.gizmo.matrixD(), X), groupX, 1e-6))
        << "the gizmo does not take the group's frame";

    const Vec3d expected = AxisDisplacement(drag, X);
    const MovedObject crate =
        CommandEntry(session.run.report, QStringLiteral("translate"), QStringLiteral("crate"));
    const Vec3d moved = Moved(crate);
    ASSERT_GT(moved.Length(), 0.5 * drag.gizmo.unit());
    EXPECT_TRUE(VectorsNear(moved / moved.Length(), groupX, 1e-4));
    EXPECT_NEAR(moved.Length(), expected.Length(), 1e-4 * drag.gizmo.unit());
    EXPECT_TRUE(VectorsNear(moved, expected, 1e-4 * drag.gizmo.unit()));
}

// ---------------------------------------------------------------------------------------------
// Undo and redo

TEST(mxViewerSessionTest, FourUndosPutEveryObjectBackBitForBit) {
    const GestureSession& session = Gestures();
    ASSERT_EQ(session.run.exitCode, 0) << session.run.describe();
    const ViewerRun& untouched = Untouched();
    ASSERT_EQ(untouched.exitCode, 0) << untouched.describe();

    const QJsonArray objects = untouched.report.value(QStringLiteral("objects")).toArray();
    ASSERT_EQ(objects.size(), 8);
    ASSERT_EQ(session.run.report.value(QStringLiteral("objects")).toArray().size(), 8);
    ExpectObjectsAsIn(session.run.report, objects);
}

TEST(mxViewerSessionTest, FourUndosPutEveryMovedObjectBackToItsTransformationsBeforeTheDrag) {
    const GestureSession& session = Gestures();
    ASSERT_EQ(session.run.exitCode, 0) << session.run.describe();
    const std::pair<QString, QString> moves[] = {
        {QStringLiteral("translate"), QStringLiteral("cube")},
        {QStringLiteral("rotate"), QStringLiteral("cylinder")},
        {QStringLiteral("scale"), QStringLiteral("cone")},
        {QStringLiteral("translate"), QStringLiteral("crate")}};
    for (const auto& [kind, name] : moves) {
        const MovedObject moved = CommandEntry(session.run.report, kind, name);
        const QJsonObject now = ObjectEntry(session.run.report, name);
        EXPECT_TRUE(SameBitsAs(TransformOf(now.value(QStringLiteral("local"))), moved.localBefore))
            << Str(name);
        EXPECT_TRUE(SameBitsAs(TransformOf(now.value(QStringLiteral("world"))), moved.worldBefore))
            << Str(name);
        // Each drag did move its object.
        EXPECT_FALSE(SameBitsAs(moved.worldAfter, moved.worldBefore)) << Str(name);
    }
}

TEST(mxViewerSessionTest, UndoHistoryHoldsFourCommandsAllUndone) {
    const GestureSession& session = Gestures();
    ASSERT_EQ(session.run.exitCode, 0) << session.run.describe();
    EXPECT_TRUE(UndoHistoryAt(session.run.report, 0, 4));
    const QJsonArray commands = session.run.report.value(QStringLiteral("undo"))
                                    .toObject()
                                    .value(QStringLiteral("commands"))
                                    .toArray();
    QStringList kinds;
    for (const QJsonValue& command : commands) {
        kinds << command.toObject().value(QStringLiteral("kind")).toString();
    }
    EXPECT_EQ(Str(kinds.join(QStringLiteral(" "))), "translate rotate scale translate");
}

TEST(mxViewerSessionTest, RedoAfterFourUndosPutsTheCubeBitForBitWhereItsDragLeftIt) {
    const GestureSession& session = GesturesRedone();
    ASSERT_EQ(session.run.exitCode, 0) << session.run.describe();
    EXPECT_TRUE(UndoHistoryAt(session.run.report, 1, 4));

    const MovedObject cube =
        CommandEntry(session.run.report, QStringLiteral("translate"), QStringLiteral("cube"));
    const QJsonObject now = ObjectEntry(session.run.report, QStringLiteral("cube"));
    EXPECT_TRUE(SameBitsAs(TransformOf(now.value(QStringLiteral("local"))), cube.localAfter));
    EXPECT_TRUE(SameBitsAs(TransformOf(now.value(QStringLiteral("world"))), cube.worldAfter));
    // The others stay undone.
    const MovedObject crate =
        CommandEntry(session.run.report, QStringLiteral("translate"), QStringLiteral("crate"));
    EXPECT_TRUE(SameBitsAs(TransformOf(ObjectEntry(session.run.report, QStringLiteral("crate"))
                                           .value(QStringLiteral("world"))),
                           crate.worldBefore));
}

// ---------------------------------------------------------------------------------------------
// The built-in demo

TEST(mxViewerSessionTest, DemoExitsZeroWithEightScreenshotsOfTheViewsSize) {
    const ViewerRun& demo = Demo();
    ASSERT_EQ(demo.exitCode, 0) << demo.describe();
    const QJsonArray screenshots = demo.report.value(QStringLiteral("screenshots")).toArray();
    ASSERT_EQ(screenshots.size(), 8);
    for (const QJsonValue& value : screenshots) {
        const QString file = value.toString();
        EXPECT_TRUE(file.endsWith(QStringLiteral(".png"))) << Str(file);
        QImageReader reader(QDir(demo.outDir).filePath(file));
        EXPECT_EQ(reader.format(), QByteArray("png")) << Str(file);
        const QImage image = reader.read();
        ASSERT_FALSE(image.isNull()) << Str(file) << ": " << Str(reader.errorString());
        EXPECT_EQ(image.width(), 960) << Str(file);
        EXPECT_EQ(image.height(), 600) << Str(file);
    }
}

TEST(mxViewerSessionTest, DemoUndoesItsFourDragsBitForBit) {
    const ViewerRun& demo = Demo();
    ASSERT_EQ(demo.exitCode, 0) << demo.describe();
    const ViewerRun& untouched = Untouched();
    ASSERT_EQ(untouched.exitCode, 0) << untouched.describe();
    EXPECT_TRUE(UndoHistoryAt(demo.report, 0, 4));

    const QJsonArray objects = untouched.report.value(QStringLiteral("objects")).toArray();
    ASSERT_EQ(demo.report.value(QStringLiteral("objects")).toArray().size(), objects.size());
    ExpectObjectsAsIn(demo.report, objects);
}

TEST(mxViewerSessionTest, DemoNamesItsReportOnStandardOutput) {
    const ViewerRun& demo = Demo();
    ASSERT_EQ(demo.exitCode, 0) << demo.describe();
    const QString report =
        QDir::cleanPath(QDir(demo.outDir).absoluteFilePath(QStringLiteral("report.json")));
    EXPECT_TRUE(QFileInfo(report).isFile());
    EXPECT_TRUE(demo.standardOutput.contains(report)) << Str(demo.standardOutput);
}

// ---------------------------------------------------------------------------------------------
// Scripts the viewer refuses: exit status 2, the error on stderr, nothing written

// Success when run exited 2, its standard error names each of words and it wrote nothing; the
// failure lists every one of these that does not hold.
::testing::AssertionResult Refused(const ViewerRun& run, const QStringList& words) {
    std::string problems;
    if (run.exitCode != 2) {
        problems += "\nexit status " + std::to_string(run.exitCode) + ", expected 2";
    }
    for (const QString& word : words) {
        if (!run.standardError.contains(word)) {
            problems += "\nstderr does not name " + Str(word);
        }
    }
    if (run.outDirExists) {
        problems += "\nthe out directory was written";
    }
    if (problems.empty()) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << problems << "\n" << run.describe();
}

TEST(mxViewerSessionTest, BadButtonExitsTwoNamingTheStepAndTheFieldAndWritesNothing) {
    const ViewerRun run = RunScript("{\"steps\": [{\"frames\": 1}, {\"screenshot\": \"first\"},"
                                    " {\"press\": [480, 300], \"button\": \"sideways\"}]}");
    EXPECT_TRUE(Refused(run, {QStringLiteral("step 3 (press)"), QStringLiteral("\"button\"")}));
}

TEST(mxViewerSessionTest, UnknownObjectInSelectExitsTwoWhenPlayedAndWritesNothing) {
    // Well formed: the name is only found missing when the step plays, after a screenshot.
    const ViewerRun run = RunScript("{\"steps\": [{\"frames\": 1}, {\"screenshot\": \"first\"},"
                                    " {\"select\": [\"cube\", \"teapot\"]}, {\"frames\": 1}]}");
    EXPECT_TRUE(Refused(run, {QStringLiteral("step 3 (select)"), QStringLiteral("teapot")}));
}

TEST(mxViewerSessionTest, MissingScriptFileExitsTwoAndWritesNothing) {
    const ViewerRun run =
        RunViewer({QStringLiteral("--script"), QStringLiteral("@DIR/no-such-script.json"),
                   QStringLiteral("--out"), QStringLiteral("@OUT")});
    EXPECT_TRUE(Refused(run, {QStringLiteral("no-such-script.json")}));
}

} // namespace
