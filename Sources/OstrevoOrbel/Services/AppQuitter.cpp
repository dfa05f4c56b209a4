#include "Services/AppQuitter.h"

#include "Util/PathText.h"

#include <algorithm>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

namespace orbel {

namespace {

/// Calls to one application, by the name that it has on the bus. None of them starts a program.
class BusApplication {
public:
    BusApplication(QDBusConnection bus, QString name) : bus_(std::move(bus)), name_(std::move(name)) {}

    bool quitByMenu() const {
        const auto actions = QStringLiteral("org.gtk.Actions");
        const auto quit = QStringLiteral("quit");
        const auto listed = call(objectPath(), actions, QStringLiteral("List"), {});
        if (!listed.arguments().value(0).toStringList().contains(quit))
            return false;
        return isReply(
            call(objectPath(), actions, QStringLiteral("Activate"), {quit, QVariantList(), QVariantMap()}));
    }

    bool quitAsKdeProgram() const {
        return isReply(call(QStringLiteral("/MainApplication"),
                            QStringLiteral("org.qtproject.Qt.QCoreApplication"), QStringLiteral("quit"), {}));
    }

    bool quitAsMediaPlayer() const {
        const auto player = QStringLiteral("org.mpris.MediaPlayer2");
        const auto path = QStringLiteral("/org/mpris/MediaPlayer2");
        if (!name_.startsWith(player))
            return false;
        const auto may = call(path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                              {player, QStringLiteral("CanQuit")});
        return may.arguments().value(0).value<QDBusVariant>().variant().toBool()
               && isReply(call(path, player, QStringLiteral("Quit"), {}));
    }

private:
    /// Where an application of that name has its actions.
    QString objectPath() const {
        auto path = QLatin1Char('/') + name_;
        return path.replace(QLatin1Char('.'), QLatin1Char('/')).replace(QLatin1Char('-'), QLatin1Char('_'));
    }

    static bool isReply(const QDBusMessage& answer) { return answer.type() == QDBusMessage::ReplyMessage; }

    QDBusMessage call(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments) const {
        constexpr int milliseconds = 2000;
        auto message = QDBusMessage::createMethodCall(name_, path, interface, method);
        message.setArguments(arguments);
        message.setAutoStartService(false);
        auto answer = bus_.call(message, QDBus::Block, milliseconds);
        return isReply(answer) ? answer : QDBusMessage();
    }

    QDBusConnection bus_;
    QString name_;
};

} // namespace

std::vector<platform::RunningProgram> AppQuitter::runningApplications(const std::string& bundlePath) {
    const auto bundle = standardizedPath(bundlePath);
    auto programs = platform::runningPrograms();
    std::erase_if(programs, [&](const platform::RunningProgram& program) {
        return std::ranges::none_of(program.paths,
                                    [&](const std::string& path) { return isPathInside(path, bundle); });
    });
    return programs;
}

bool AppQuitter::quit(const std::string& bundlePath, const QDBusConnection& bus) {
    return quit(runningApplications(bundlePath), bus);
}

bool AppQuitter::quit(const std::vector<platform::RunningProgram>& running, const QDBusConnection& bus) {
    if (running.empty() || !bus.isConnected())
        return false;
    std::vector<uint> asked;
    const QStringList names = bus.interface()->registeredServiceNames();
    for (const auto& name : names) {
        if (name.startsWith(QLatin1Char(':')))
            continue;
        const uint process = bus.interface()->servicePid(name);
        const bool isOne = std::ranges::any_of(
            running, [&](const auto& program) { return static_cast<uint>(program.pid) == process; });
        if (!isOne || std::ranges::find(asked, process) != asked.end())
            continue;
        const BusApplication application(bus, name);
        if (application.quitByMenu() || application.quitAsKdeProgram() || application.quitAsMediaPlayer())
            asked.push_back(process);
    }
    return !asked.empty();
}

} // namespace orbel
