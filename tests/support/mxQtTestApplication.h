// The one QApplication of a Qt test program, created on first use. Widgets need it; without a
// display it runs on Qt's offscreen platform, chosen here when QT_QPA_PLATFORM is not set. It
// is never destroyed: torn down among the static objects at exit, it would outlive Qt's own.
#pragma once

#include <QApplication>
#include <QtGlobal>

namespace mx::test {

inline QApplication& EnsureQtApplication() {
    static int argc = 1;
    static char name[] = "mxQtTest";
    static char* argv[] = {name, nullptr};
    static QApplication* application = [] {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        return new QApplication(argc, argv);
    }();
    return *application;
}

} // namespace mx::test
