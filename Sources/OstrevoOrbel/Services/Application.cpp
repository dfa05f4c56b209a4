#include "Services/Application.h"

#include "AppModel/AppModel.h"
#include "Commands/CommandOutput.h"
#include "Commands/Request.h"
#include "Launch/LaunchOptions.h"
#include "Models/IconAddress.h"
#include "Platform/Process.h"
#include "Services/AfterScan.h"
#include "Services/AppIcons.h"
#include "Services/AppQuitter.h"
#include "Services/AutostartLoginItem.h"
#include "Services/LiveDesktop.h"
#include "Services/LiveNotifier.h"
#include "Services/SingleInstance.h"
#include "Services/StallWatch.h"
#include "Services/SystemAppearance.h"
#include "Services/TrayItem.h"
#include "Services/WindowPlace.h"
#include "Util/AppVersion.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <QGuiApplication>
#include <QIcon>
#include <QLocale>
#include <QPalette>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QTimer>

namespace orbel {

namespace {

/// The larger of the two sizes in which an icon is shown, on a dense display.
constexpr int iconPixels = 112;

const QString viewsUrl = QStringLiteral("qrc:/qt/qml/OstrevoOrbel/Views/");

/// Qt ends the process when it finds no display, after many lines of its own. Instead of them the user gets
/// one.
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
    // Qt takes the direction from its own translations, which are not installed everywhere, or from -reverse.
    if (QLocale().textDirection() == Qt::RightToLeft)
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/qt/qml/OstrevoOrbel/Views/Icons/tray.svg")));
    return application;
}

QString runtimeFolder() {
    const auto folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return folder.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::CacheLocation) : folder;
}

/// The model, its window, and what ties them to the desktop. Lives while the event loop runs.
class RunningApplication final : public QObject {
public:
    RunningApplication(std::shared_ptr<LiveDiagnostics> diagnostics, const QDBusConnection& bus)
        : diagnostics_(std::move(diagnostics)),
          notifier_(std::make_shared<LiveNotifier>(bus)),
          appearance_(std::make_shared<SystemAppearance>(
              bus, QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))),
          tray_(std::make_shared<TrayItem>(bus)),
          model_(environment()) {}

    /// False when the window could not be loaded.
    bool open() {
        model_.appearance()->overrideWith(valueAfter(platform::processArguments(), "--appearance"));
        connect(model_.appearance(), &AppearanceSettings::darkChanged, this, [this] { colourFrame(); });
        colourFrame();
        engine_.addImportPath(QStringLiteral(":/qt/qml"));
        AppIcons::findThemes(model_.scan()->home());
        engine_.addImageProvider(iconProvider, new AppIcons); // the engine owns it
        // What a script measures or photographs is the same on every screen, and nothing to remember.
        const bool isPlaced = SingleInstance::appliesTo(model_.options());
        auto properties = isPlaced ? WindowPlace::properties(*settings_) : QVariantMap();
        properties.insert(QStringLiteral("app"), QVariant::fromValue(&model_));
        engine_.setInitialProperties(properties);
        engine_.load(QUrl(viewsUrl + QStringLiteral("Main.qml")));
        window_ = engine_.rootObjects().isEmpty()
                      ? nullptr
                      : qobject_cast<QQuickWindow*>(engine_.rootObjects().constFirst());
        if (window_ == nullptr)
            return false;
        if (isPlaced)
            place_ = std::make_unique<WindowPlace>(*window_, *settings_);
        showTray();
        connect(notifier_.get(), &LiveNotifier::opened, this, [this] { bringToFront(); });
        connect(window_, &QWindow::activeChanged, this, [this] {
            if (window_->isActive())
                notifier_->clearBadge();
        });
        connect(qApp, &QGuiApplication::lastWindowClosed, this, [this] { lastWindowClosed(); });
        afterScan_ = std::make_unique<AfterScan>(model_, *window_, QCoreApplication::exit);
        if (diagnostics_)
            watch();
        return true;
    }

    void serve(SingleInstance& instance) {
        connect(&instance, &SingleInstance::requested, this, [this](const InstanceRequest& request) {
            if (request.activationToken) // Qt shows it to the desktop, and forgets it
                qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(*request.activationToken));
            bringToFront();
            if (request.screen)
                model_.setScreen(*request.screen);
            if (request.app) {
                model_.setScreen(request.screen.value_or(Screen::uninstall));
                model_.apps()->selectNamed(*request.app);
            }
            if (request.scanPath)
                model_.scan()->startScan(*request.scanPath);
            else if (request.openScanPath)
                model_.kept()->open(*request.openScanPath);
        });
        connect(&instance, &SingleInstance::quitRequested, qApp, &QCoreApplication::quit);
    }

private:
    AppEnvironment environment() const {
        auto environment = AppEnvironment::ofThisUser();
        environment.settings = settings_;
        environment.desktop = std::make_shared<LiveDesktop>();
        environment.notifier = notifier_;
        environment.tray = tray_;
        environment.loginItem = AutostartLoginItem::ofThisUser();
        environment.appearance = appearance_;
        environment.diagnostics = diagnostics_;
        environment.askToQuit = [](const std::vector<platform::RunningProgram>& running) {
            return AppQuitter::quit(running, QDBusConnection::sessionBus());
        };
        return environment;
    }

    /// Shown while there is something to do without the window.
    void showTray() {
        connect(tray_.get(), &TrayItem::activated, this, [this] { bringToFront(); });
        const auto update = [this] { tray_->setWanted(model_.alert()->isEnabled()); };
        connect(model_.alert(), &AlertSettings::changed, this, update);
        update();
    }

    /// Under Wayland, Qt draws the frame and its title where the desktop leaves that to the program.
    void colourFrame() {
        const QColor ground(model_.appearance()->isDark() ? 0xFF131819 : 0xFFF2F5F5); // Theme.window
        QGuiApplication::setPalette(QPalette(ground, ground));
        if (window_ == nullptr || !QGuiApplication::platformName().startsWith(QLatin1String("wayland"))
            || window_->frameMargins().isNull())
            return;
        // Qt's frame takes its colours when it is made.
        window_->setFlag(Qt::FramelessWindowHint, true);
        window_->setFlag(Qt::FramelessWindowHint, false);
    }

    void bringToFront() { WindowPlace::bringToFront(*window_); }

    /// The application goes on only where something shows that it does.
    void lastWindowClosed() {
        if (tray_->isShown())
            return;
        if (!model_.alert()->isEnabled()) {
            QCoreApplication::quit();
            return;
        }
        notifier_->post({.title = "Ostrevo Vanto is closed",
                         .body = "Free space is not checked until it is opened again."});
        // Nobody sees the application any more; the message only has to leave it.
        QTimer::singleShot(std::chrono::milliseconds(500), qApp, &QCoreApplication::quit);
    }

    /// What comes before the first frame is start-up, which has a mark of its own.
    void watch() {
        const auto begin = [this] {
            diagnostics_->mark("windowShown");
            stallWatch_ = std::make_unique<StallWatch>(diagnostics_);
        };
        connect(window_, &QQuickWindow::frameSwapped, this, begin,
                static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    }

    std::shared_ptr<LiveDiagnostics> diagnostics_;
    std::shared_ptr<QSettings> settings_ = std::make_shared<QSettings>();
    std::shared_ptr<LiveNotifier> notifier_;
    std::shared_ptr<SystemAppearance> appearance_;
    std::shared_ptr<TrayItem> tray_;
    AppModel model_;
    QQmlApplicationEngine engine_;
    QQuickWindow* window_ = nullptr; ///< the engine's
    std::unique_ptr<WindowPlace> place_;
    std::unique_ptr<AfterScan> afterScan_;
    std::unique_ptr<StallWatch> stallWatch_;
};

int runWindow(const LaunchOptions& options, std::shared_ptr<LiveDiagnostics> diagnostics) {
    const auto bus = QDBusConnection::sessionBus();
    SingleInstance instance(bus, bus.isConnected() ? QString() : runtimeFolder());
    if (SingleInstance::appliesTo(options) && !instance.claim(InstanceRequest::of(options)))
        return ExitStatus::done;
    RunningApplication application(std::move(diagnostics), bus);
    if (!application.open()) {
        say("The window could not be loaded");
        return ExitStatus::incomplete;
    }
    application.serve(instance);
    return QGuiApplication::exec();
}

} // namespace

int runApplication(int& count, char** words) {
    const auto& options = LaunchOptions::current();
    std::shared_ptr<LiveDiagnostics> diagnostics;
    if (options.diagnosticsPath)
        diagnostics = std::make_shared<LiveDiagnostics>(*options.diagnosticsPath);
    [[maybe_unused]] const auto application = makeQtApplication(count, words);
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    int status = runWindow(options, diagnostics);
    if (diagnostics && !diagnostics->write()) {
        say("The diagnostics could not be written to " + options.diagnosticsPath.value_or(""));
        status = ExitStatus::incomplete;
    }
    // A scan that was stopped may still be on its way out; it must not find what it uses torn down.
    std::fflush(nullptr);
    std::_Exit(status);
}

} // namespace orbel
