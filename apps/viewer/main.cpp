// mx3dviewer: select objects and move, rotate and scale them with the gizmos.
//
//   mx3dviewer                              opens the window
//   mx3dviewer --script FILE --out DIR      plays a script, writes screenshots and report.json
//   mx3dviewer --demo --out DIR             plays the built-in demo script
//
// Exit status: 0 done; 1 the viewer could not run (no OpenGL, the output not writable);
// 2 the script cannot be read or is malformed (nothing is written but the error).
#include "MainWindow.h"
#include "ScriptPlayer.h"
#include "ViewerReport.h"
#include "ViewerScript.h"
#include "ViewerSession.h"
#include "ViewportWidget.h"

#include "system/mxLog.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>
#include <QSurfaceFormat>
#include <QTextStream>

#include <cstdio>
#include <string>

namespace {

constexpr int csExitFailure = 1;
constexpr int csExitMalformedScript = 2;

void printError(const QString& message) {
    std::fprintf(stderr, "mx3dviewer: %s\n", qPrintable(message));
}

// Lines are wide and the gizmo is drawn over the scene: a compatibility profile keeps wide
// lines. A script renders without multisampling, so its pictures are exact.
void chooseSurfaceFormat(bool scripted) {
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    // Without it Mesa hands out a forward-compatible core context, which has no wide lines.
    format.setOption(QSurfaceFormat::DeprecatedFunctions);
    format.setDepthBufferSize(24);
    format.setSamples(scripted ? 0 : 4);
    QSurfaceFormat::setDefaultFormat(format);
}

bool writeFile(const QString& path, const QByteArray& data, QString& error) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit()) {
        error = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

int playScript(viewer::ViewerSession& session, viewer::MainWindow& window,
               const QString& scriptName, const QByteArray& json, const QString& outDir) {
    viewer::ViewerScript script;
    QString error;
    if (!viewer::ViewerScript::parse(json, script, error)) {
        printError(scriptName + QStringLiteral(": ") + error);
        return csExitMalformedScript;
    }
    // The view gets exactly the script's size; the window wraps it.
    window.getViewport().setFixedSize(script.viewportWidth, script.viewportHeight);
    window.show();
    // Showing the view creates its OpenGL context; make sure it exists before the first step.
    const QImage first = window.getViewport().grabFramebuffer();
    if (first.isNull() || !window.getViewport().glError().isEmpty()) {
        printError(QStringLiteral("OpenGL is not available: ") + window.getViewport().glError());
        return csExitFailure;
    }
    session.setViewportSize(script.viewportWidth, script.viewportHeight);

    viewer::ScriptPlayer player(session, window);
    if (!player.play(script, error)) {
        printError(scriptName + QStringLiteral(": ") + error);
        return csExitMalformedScript;
    }

    // Everything played: now write.
    if (!QDir().mkpath(outDir)) {
        printError(QStringLiteral("cannot create %1").arg(outDir));
        return csExitFailure;
    }
    const QDir dir(outDir);
    QStringList files;
    for (const auto& [file, image] : player.getScreenshots()) {
        if (!image.save(dir.filePath(file), "PNG")) {
            printError(QStringLiteral("cannot write %1").arg(dir.filePath(file)));
            return csExitFailure;
        }
        files << file;
    }
    QStringList log;
    for (const std::string& line : mx::mxLog::msInstance->getRecentLines()) {
        log << QString::fromStdString(line);
    }
    const QJsonObject report =
        viewer::ViewerReport::build(session, scriptName, player.getStepRecords(), files, log);
    if (!writeFile(dir.filePath(QStringLiteral("report.json")),
                   QJsonDocument(report).toJson(QJsonDocument::Indented), error)) {
        printError(error);
        return csExitFailure;
    }
    QTextStream out(stdout);
    out << "Played " << scriptName << ": " << script.steps.size() << " steps, "
        << session.getFrameCount() << " frames.\n";
    for (const QString& file : files) {
        out << "Screenshot: " << QDir::cleanPath(dir.absoluteFilePath(file)) << "\n";
    }
    out << "Report:     " << QDir::cleanPath(dir.absoluteFilePath(QStringLiteral("report.json")))
        << "\n";
    return 0;
}

} // namespace

int main(int argc, char* argv[]) {
    // The format must be chosen before the application exists, so look for the script
    // options by hand first.
    bool scripted = false;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        scripted = scripted || argument == "--script" || argument == "--demo";
    }
    chooseSurfaceFormat(scripted);
    QApplication application(argc, argv);
    // The demo script is compiled into the viewer's static library.
    Q_INIT_RESOURCE(viewer);
    QApplication::setApplicationName(QStringLiteral("mx3dviewer"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Select objects and move, rotate and scale them with the gizmos."));
    parser.addHelpOption();
    const QCommandLineOption scriptOption(QStringLiteral("script"),
                                          QStringLiteral("Play the JSON script <file>."),
                                          QStringLiteral("file"));
    const QCommandLineOption demoOption(QStringLiteral("demo"),
                                        QStringLiteral("Play the built-in demo script."));
    const QCommandLineOption outOption(
        QStringLiteral("out"),
        QStringLiteral("Write the screenshots and report.json of a script into <dir>."),
        QStringLiteral("dir"), QStringLiteral("mx3dviewer-out"));
    parser.addOption(scriptOption);
    parser.addOption(demoOption);
    parser.addOption(outOption);
    parser.process(application);

    viewer::ViewerSession session;
    if (!parser.isSet(scriptOption) && !parser.isSet(demoOption)) {
        viewer::MainWindow window(session, true);
        window.resize(1280, 800);
        window.show();
        return application.exec();
    }

    QString scriptName = QStringLiteral("built-in demo");
    QString path = QStringLiteral(":/viewer/demo.json");
    if (parser.isSet(scriptOption)) {
        scriptName = path = parser.value(scriptOption);
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        printError(QStringLiteral("cannot read %1: %2").arg(path, file.errorString()));
        return csExitMalformedScript;
    }
    viewer::MainWindow window(session, false);
    return playScript(session, window, scriptName, file.readAll(), parser.value(outOption));
}
