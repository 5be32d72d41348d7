// Helpers for the tests that play scripts in the viewer program (mx3dviewer) and read what it
// leaves behind: running it in a fresh temporary directory, building scripts step by step,
// reading report.json (step records, objects, undo history, events, the camera the library
// used) and the screenshots. Header-only; everything lives in namespace mx::test.
//
// The program is started as a child process and inherits the test's display (a private Xvfb:
// the viewer renders with OpenGL through xcb). The test process itself reads PNG files with
// its own QGuiApplication on the offscreen platform, so it needs no display.
#pragma once

#include "node/mxGizmoNode.h"
#include "scenegraph/mxCamera.h"
#include "scenegraph/mxPointer.h"
#include "wm4/Wm4ColorRGB.h"
#include "wm4/Wm4Matrix3.h"
#include "wm4/Wm4Vector2.h"
#include "wm4/Wm4Vector3.h"

#include "controller/mxControllerTestSupport.h"
#include "support/mxQtGuiTestSupport.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRgb>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace mx::test {

// The platform of the program's QGuiApplication: it only reads images, so it needs no display
// even though it runs under the viewer's X server.
inline constexpr char csImagePlatform[] = "offscreen";

inline std::string Str(const QString& text) {
    return text.toStdString();
}

// ---------------------------------------------------------------------------------------------
// Running the viewer

// One run of the viewer: its exit status, its output, and what it wrote into outDir.
struct ViewerRun {
    std::shared_ptr<QTemporaryDir> directory;
    int exitCode = -1;
    bool finished = false;
    QString standardOutput;
    QString standardError;
    QString outDir;
    bool outDirExists = false;
    QJsonObject report;

    // A screenshot the run wrote (name.png), or a null image.
    QImage screenshot(const QString& name) const {
        EnsureGuiApplication(csImagePlatform);
        return QImage(QDir(outDir).filePath(name + QStringLiteral(".png")), "PNG");
    }

    // For failure messages.
    std::string describe() const {
        return "exit " + std::to_string(exitCode) + (finished ? "" : " (did not finish)") +
               "\nstdout: " + Str(standardOutput) + "\nstderr: " + Str(standardError);
    }
};

// Runs the viewer with arguments, in which "@OUT" stands for the run's out directory (a
// directory inside a fresh temporary directory, not created beforehand) and "@DIR" for the
// temporary directory. script, when not empty, is written to @DIR/script.json first.
inline ViewerRun RunViewer(const QStringList& arguments, const QByteArray& script = QByteArray()) {
    EnsureGuiApplication(csImagePlatform);
    ViewerRun run;
    run.directory = std::make_shared<QTemporaryDir>();
    EXPECT_TRUE(run.directory->isValid()) << "no temporary directory";
    const QDir dir(run.directory->path());
    run.outDir = dir.filePath(QStringLiteral("out"));
    if (!script.isEmpty()) {
        QFile file(dir.filePath(QStringLiteral("script.json")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(script) == script.size())
            << "cannot write the script";
    }
    QStringList replaced;
    for (QString argument : arguments) {
        argument.replace(QStringLiteral("@OUT"), run.outDir);
        argument.replace(QStringLiteral("@DIR"), dir.path());
        replaced << argument;
    }
    QProcess process;
    // Built with AddressSanitizer, the viewer ends with a few hundred bytes that Qt's platform
    // plugins keep until exit; Qt has unloaded the plugins by then, so LeakSanitizer can trace
    // them to no module and no suppression can name them. The viewer's own classes are
    // leak-checked in mxViewerUnitTest; its whole process runs without the leak check (other
    // builds ignore the setting).
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString sanitizerOptions = environment.value(QStringLiteral("ASAN_OPTIONS"));
    environment.insert(QStringLiteral("ASAN_OPTIONS"),
                       sanitizerOptions + QStringLiteral(":detect_leaks=0"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(MX3D_VIEWER_PROGRAM), replaced);
    // A bound against a hung child only; a run takes about half a second.
    run.finished = process.waitForStarted(60000) && process.waitForFinished(300000);
    if (!run.finished) {
        process.kill();
        process.waitForFinished(10000);
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.standardOutput = QString::fromLocal8Bit(process.readAllStandardOutput());
    run.standardError = QString::fromLocal8Bit(process.readAllStandardError());
    run.outDirExists = QFileInfo::exists(run.outDir);
    QFile reportFile(QDir(run.outDir).filePath(QStringLiteral("report.json")));
    if (reportFile.open(QIODevice::ReadOnly)) {
        run.report = QJsonDocument::fromJson(reportFile.readAll()).object();
    }
    return run;
}

// Plays script (its JSON text) with --script and --out.
inline ViewerRun RunScript(const QByteArray& script) {
    return RunViewer({QStringLiteral("--script"), QStringLiteral("@DIR/script.json"),
                      QStringLiteral("--out"), QStringLiteral("@OUT")},
                     script);
}

// A script built step by step: add() returns the step's number (from 1), the number its
// record carries in the report.
class ScriptText {
public:
    int add(const std::string& step) {
        steps.push_back(step);
        return static_cast<int>(steps.size());
    }

    QByteArray json(int width = 960, int height = 600) const {
        std::string text = "{\"viewport\": {\"width\": " + std::to_string(width) +
                           ", \"height\": " + std::to_string(height) + "},\n \"steps\": [\n";
        for (std::size_t i = 0; i < steps.size(); ++i) {
            text += "  " + steps[i] + (i + 1 < steps.size() ? ",\n" : "\n");
        }
        return QByteArray::fromStdString(text + "]}\n");
    }

private:
    std::vector<std::string> steps;
};

// ---------------------------------------------------------------------------------------------
// Reading the report

// A transformation as the report writes it: the stored matrix (row by row), scale and
// translation, each number the float written, and the two flags.
struct ReportTransform {
    bool rs = false;
    bool uniform = false;
    float matrix[9] = {};
    float scale[3] = {};
    float translate[3] = {};

    Wm4::Matrix3<double> matrixD() const {
        return Wm4::Matrix3<double>(matrix[0], matrix[1], matrix[2], matrix[3], matrix[4],
                                    matrix[5], matrix[6], matrix[7], matrix[8]);
    }
    Wm4::Vector3<double> translateD() const {
        return Wm4::Vector3<double>(translate[0], translate[1], translate[2]);
    }
    // The gizmo's length on screen of one unit, when this is the gizmo's placement.
    double unit() const { return scale[0]; }
    // The point of the gizmo given in gizmo units, when this is the gizmo's placement:
    // translate + matrix * (scale * local).
    Wm4::Vector3<double> gizmoPoint(const Wm4::Vector3<double>& local) const {
        const Wm4::Vector3<double> scaled(local.X() * scale[0], local.Y() * scale[1],
                                          local.Z() * scale[2]);
        return translateD() + matrixD() * scaled;
    }

    std::string describe() const {
        std::ostringstream out;
        out.precision(9);
        out << "{rs " << rs << ", uniform " << uniform << ", matrix (";
        for (int i = 0; i < 9; ++i) {
            out << matrix[i] << (i == 8 ? "" : (i % 3 == 2 ? "; " : ", "));
        }
        out << "), scale (" << scale[0] << ", " << scale[1] << ", " << scale[2] << "), translate ("
            << translate[0] << ", " << translate[1] << ", " << translate[2] << ")}";
        return out.str();
    }
};

inline float FloatOf(const QJsonValue& value) {
    return static_cast<float>(value.toDouble(std::nan("")));
}

inline ReportTransform TransformOf(const QJsonValue& value) {
    const QJsonObject object = value.toObject();
    EXPECT_TRUE(object.contains(QStringLiteral("matrix"))) << "not a transformation";
    ReportTransform t;
    t.rs = object.value(QStringLiteral("rs")).toBool();
    t.uniform = object.value(QStringLiteral("uniform")).toBool();
    const QJsonArray matrix = object.value(QStringLiteral("matrix")).toArray();
    const QJsonArray scale = object.value(QStringLiteral("scale")).toArray();
    const QJsonArray translate = object.value(QStringLiteral("translate")).toArray();
    for (int i = 0; i < 9; ++i) {
        t.matrix[i] = FloatOf(matrix.at(i));
    }
    for (int i = 0; i < 3; ++i) {
        t.scale[i] = FloatOf(scale.at(i));
        t.translate[i] = FloatOf(translate.at(i));
    }
    return t;
}

inline bool SameFloatBits(float a, float b) {
    return std::memcmp(&a, &b, sizeof(float)) == 0;
}

// Success when both hold the same flags and the same bits in all 15 numbers.
inline ::testing::AssertionResult SameBitsAs(const ReportTransform& actual,
                                             const ReportTransform& expected) {
    bool same = actual.rs == expected.rs && actual.uniform == expected.uniform;
    for (int i = 0; i < 9; ++i) {
        same = same && SameFloatBits(actual.matrix[i], expected.matrix[i]);
    }
    for (int i = 0; i < 3; ++i) {
        same = same && SameFloatBits(actual.scale[i], expected.scale[i]) &&
               SameFloatBits(actual.translate[i], expected.translate[i]);
    }
    if (same) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "\n  actual   " << actual.describe() << "\n  expected " << expected.describe();
}

inline Wm4::Vector3<double> VectorOf(const QJsonValue& value) {
    const QJsonArray a = value.toArray();
    EXPECT_EQ(a.size(), 3) << "not a triple";
    return Wm4::Vector3<double>(a.at(0).toDouble(), a.at(1).toDouble(), a.at(2).toDouble());
}

inline Wm4::Vector3<float> FloatVectorOf(const QJsonValue& value) {
    const QJsonArray a = value.toArray();
    EXPECT_EQ(a.size(), 3) << "not a triple";
    return Wm4::Vector3<float>(FloatOf(a.at(0)), FloatOf(a.at(1)), FloatOf(a.at(2)));
}

// The record of step number (from 1).
inline QJsonObject StepRecord(const QJsonObject& report, int number) {
    for (const QJsonValue& value : report.value(QStringLiteral("steps")).toArray()) {
        const QJsonObject record = value.toObject();
        if (record.value(QStringLiteral("step")).toInt() == number) {
            return record;
        }
    }
    ADD_FAILURE() << "no record of step " << number;
    return QJsonObject();
}

// The window pixel a mouse step happened at (from the top left).
inline WindowPixel PixelOfStep(const QJsonObject& record) {
    const QJsonArray pixel = record.value(QStringLiteral("pixel")).toArray();
    EXPECT_EQ(pixel.size(), 2) << "not a mouse step";
    return WindowPixel{static_cast<int>(std::lround(pixel.at(0).toDouble())),
                       static_cast<int>(std::lround(pixel.at(1).toDouble()))};
}

inline ReportTransform GizmoOfStep(const QJsonObject& record) {
    return TransformOf(record.value(QStringLiteral("gizmo")));
}

inline qint64 FrameOfStep(const QJsonObject& record) {
    return record.value(QStringLiteral("frame")).toInteger(-1);
}

// The entry of object name in the report's "objects".
inline QJsonObject ObjectEntry(const QJsonObject& report, const QString& name) {
    for (const QJsonValue& value : report.value(QStringLiteral("objects")).toArray()) {
        const QJsonObject object = value.toObject();
        if (object.value(QStringLiteral("name")).toString() == name) {
            return object;
        }
    }
    ADD_FAILURE() << "no object " << Str(name) << " in the report";
    return QJsonObject();
}

// The undo command of the given kind, and its entry for object name.
struct MovedObject {
    ReportTransform delta;
    ReportTransform localBefore;
    ReportTransform worldBefore;
    ReportTransform localAfter;
    ReportTransform worldAfter;
};

inline MovedObject CommandEntry(const QJsonObject& report, const QString& kind,
                                const QString& name) {
    const QJsonArray commands =
        report.value(QStringLiteral("undo")).toObject().value(QStringLiteral("commands")).toArray();
    for (const QJsonValue& value : commands) {
        const QJsonObject command = value.toObject();
        if (command.value(QStringLiteral("kind")).toString() != kind) {
            continue;
        }
        for (const QJsonValue& entryValue : command.value(QStringLiteral("objects")).toArray()) {
            const QJsonObject entry = entryValue.toObject();
            if (entry.value(QStringLiteral("name")).toString() == name) {
                MovedObject moved;
                moved.delta = TransformOf(command.value(QStringLiteral("delta")));
                moved.localBefore = TransformOf(entry.value(QStringLiteral("localBefore")));
                moved.worldBefore = TransformOf(entry.value(QStringLiteral("worldBefore")));
                moved.localAfter = TransformOf(entry.value(QStringLiteral("localAfter")));
                moved.worldAfter = TransformOf(entry.value(QStringLiteral("worldAfter")));
                return moved;
            }
        }
    }
    ADD_FAILURE() << "no " << Str(kind) << " command moving " << Str(name);
    return MovedObject();
}

// The listener's events heard in frames first to last, as "name@offset" with the frame
// counted from first: what a gesture pressed in frame first and released in frame last heard.
inline std::vector<std::string> EventsInFrames(const QJsonObject& report, qint64 first,
                                               qint64 last) {
    std::vector<std::string> words;
    for (const QJsonValue& value : report.value(QStringLiteral("events")).toArray()) {
        const QJsonObject event = value.toObject();
        const qint64 frame = event.value(QStringLiteral("frame")).toInteger(-1);
        if (frame >= first && frame <= last) {
            words.push_back(Str(event.value(QStringLiteral("event")).toString()) + "@" +
                            std::to_string(frame - first));
        }
    }
    return words;
}

// The camera the library used, rebuilt from the report's single-precision values.
inline mxPointer<mxCamera> CameraOf(const QJsonObject& report) {
    const QJsonObject camera = report.value(QStringLiteral("camera")).toObject();
    mxPointer<mxCamera> used = new mxCamera(camera.value(QStringLiteral("perspective")).toBool());
    used->setFrame(FloatVectorOf(camera.value(QStringLiteral("location"))),
                   FloatVectorOf(camera.value(QStringLiteral("direction"))),
                   FloatVectorOf(camera.value(QStringLiteral("upVector"))),
                   FloatVectorOf(camera.value(QStringLiteral("right"))));
    const QJsonArray f = camera.value(QStringLiteral("frustum")).toArray();
    EXPECT_EQ(f.size(), 6);
    EXPECT_TRUE(used->setFrustum(FloatOf(f.at(0)), FloatOf(f.at(1)), FloatOf(f.at(2)),
                                 FloatOf(f.at(3)), FloatOf(f.at(4)), FloatOf(f.at(5))))
        << "the report's frustum is refused";
    return used;
}

inline int ViewportWidth(const QJsonObject& report) {
    return report.value(QStringLiteral("viewport"))
        .toObject()
        .value(QStringLiteral("width"))
        .toInt();
}

inline int ViewportHeight(const QJsonObject& report) {
    return report.value(QStringLiteral("viewport"))
        .toObject()
        .value(QStringLiteral("height"))
        .toInt();
}

// ---------------------------------------------------------------------------------------------
// Pixels

// The largest difference over the three channels between a pixel and a colour, in 1/255.
inline int ChannelDistance(QRgb pixel, const Wm4::ColorRGB& color) {
    const int expected[3] = {static_cast<int>(std::lround(color.R() * 255.0f)),
                             static_cast<int>(std::lround(color.G() * 255.0f)),
                             static_cast<int>(std::lround(color.B() * 255.0f))};
    const int actual[3] = {qRed(pixel), qGreen(pixel), qBlue(pixel)};
    int worst = 0;
    for (int i = 0; i < 3; ++i) {
        worst = std::max(worst, std::abs(actual[i] - expected[i]));
    }
    return worst;
}

inline std::string DescribePixel(QRgb pixel) {
    return "(" + std::to_string(qRed(pixel)) + ", " + std::to_string(qGreen(pixel)) + ", " +
           std::to_string(qBlue(pixel)) + ")";
}

inline std::string DescribeColor(const Wm4::ColorRGB& color) {
    return "(" + std::to_string(std::lround(color.R() * 255.0f)) + ", " +
           std::to_string(std::lround(color.G() * 255.0f)) + ", " +
           std::to_string(std::lround(color.B() * 255.0f)) + ")";
}

// The smallest channel distance to color among the pixels of image within radius pixels (a
// square) of (x, y) that lie in the image; 256 when none does.
inline int NearestDistance(const QImage& image, int x, int y, int radius,
                           const Wm4::ColorRGB& color) {
    int best = 256;
    for (int dy = -radius; dy <= radius; ++dy) {
        for (int dx = -radius; dx <= radius; ++dx) {
            if (image.valid(x + dx, y + dy)) {
                best = std::min(best, ChannelDistance(image.pixel(x + dx, y + dy), color));
            }
        }
    }
    return best;
}

// The window pixel of a world point in the report's view, as the library reads the mouse.
inline WindowPixel WindowPixelOfPoint(const mxCamera& camera, const Wm4::Vector3<double>& world,
                                      int width, int height) {
    return WindowPixelAt(PixelOf(camera, ToFloat(world), width, height), height);
}

} // namespace mx::test
