#include <gtest/gtest.h>
#include <QGuiApplication>
#include <QLocale>
#include <QtPlugin>

// The window is a plugin in this very program.
Q_IMPORT_PLUGIN(OstrevoOrbelPlugin)

/// The tests need no display, and draw the same on every machine, unless the environment says otherwise.
int main(int count, char** words) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
    // Under Wayland, Qt loads a driver of OpenGL that nothing here draws with. What Mesa's has not freed when
    // Qt unloads it is a leak for the sanitizers.
    qputenv("__EGL_VENDOR_LIBRARY_FILENAMES", "/nonexistent");
    QGuiApplication application(count, words);
    QLocale::setDefault(QLocale::c());
    testing::InitGoogleTest(&count, words);
    return RUN_ALL_TESTS();
}
