// The one QGuiApplication of a test program that uses Qt's GUI classes without widgets (OpenGL
// contexts, images). Header-only; everything lives in namespace mx::test.
#pragma once

#include <QGuiApplication>

#include <string>

namespace mx::test {

// The one QGuiApplication of the program, created on first use on platform, the name of a Qt
// platform plugin ("offscreen", "xcb"), or, when platform is null, on the one the environment
// names (QT_QPA_PLATFORM: the OpenGL and viewer programs run under mxRunWithXvfb.sh, which sets
// xcb and a private X server). The first call decides: later calls get the same application
// whatever platform they name. Never destroyed: torn down among the static objects at exit, it
// would outlive Qt's own.
inline QGuiApplication& EnsureGuiApplication(const char* platform = nullptr) {
    // QGuiApplication keeps argc and argv, so they live as long as the program.
    static int argc = 1;
    static char name[] = "mxQtGuiTest";
    static char platformOption[] = "-platform";
    static std::string platformName;
    static char* argv[] = {name, nullptr, nullptr, nullptr};
    static QGuiApplication* application = [platform] {
        if (platform) {
            // On the command line, the platform wins over QT_QPA_PLATFORM.
            platformName = platform;
            argv[1] = platformOption;
            argv[2] = platformName.data();
            argc = 3;
        }
        return new QGuiApplication(argc, argv);
    }();
    return *application;
}

} // namespace mx::test
