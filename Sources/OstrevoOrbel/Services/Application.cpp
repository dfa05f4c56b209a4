#include "Services/Application.h"

#include "AppModel/AppModel.h"
#include "CommandOutput.h"
#include "LaunchOptions.h"
#include "Services/LiveDesktop.h"
#include "Util/AppVersion.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <cstdlib>
#include <memory>

namespace orbel {

const std::string_view windowHelp = R"(
Without a command the window opens. It takes these switches:

  --scan PATH   Measure PATH at once; "volume" is the whole disk.
  --open SCREEN Show overview, map, large, duplicates, uninstall, tidy or
                journal.
  --appearance light|dark
  --scan-delay SECONDS
                Wait that long before the scan.
  --snapshot FILE [--snapshot-delay SECONDS]
                After the scan, write a picture of the window as PNG.
  --diagnostics FILE
                Write what the run took as JSON.
  --simulate-hover COUNT
                After the scan, move the pointer over the window.
  --quit-after-scan
)";

namespace {

/// Qt ends the process when it finds no display, after many lines of its own. Instead of them the user gets one.
void tellNoDisplay(QtMsgType type, const QMessageLogContext& /*where*/, const QString& /*words*/) {
    if (type != QtFatalMsg)
        return;
    say("There is no display to open a window on; --scan-json PATH measures without one");
    std::_Exit(ExitStatus::incomplete);
}

std::unique_ptr<QGuiApplication> makeQtApplication(int& count, char** words) {
    QGuiApplication::setApplicationName(QStringLiteral("ostrevo-orbel"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Ostrevo Vanto"));
    QGuiApplication::setApplicationVersion(QString::fromStdString(appVersion()));
    QGuiApplication::setOrganizationName(QStringLiteral("ostrevo-orbel"));
    QGuiApplication::setDesktopFileName(QStringLiteral("ostrevo-orbel"));
    const auto before = qInstallMessageHandler(tellNoDisplay);
    auto application = std::make_unique<QGuiApplication>(count, words);
    qInstallMessageHandler(before);
    return application;
}

} // namespace

int runApplication(int& count, char** words) {
    const auto application = makeQtApplication(count, words);
    QQuickStyle::setStyle(QStringLiteral("Basic"));

    AppEnvironment environment = AppEnvironment::ofThisUser();
    environment.settings = std::make_shared<QSettings>();
    environment.desktop = std::make_shared<LiveDesktop>();
    AppModel model(std::move(environment));

    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral(":/qt/qml"));
    engine.setInitialProperties({{QStringLiteral("app"), QVariant::fromValue(&model)}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/OstrevoOrbel/Views/Main.qml")));
    if (engine.rootObjects().isEmpty()) {
        say("The window could not be loaded");
        return ExitStatus::incomplete;
    }
    return QGuiApplication::exec();
}

} // namespace orbel
