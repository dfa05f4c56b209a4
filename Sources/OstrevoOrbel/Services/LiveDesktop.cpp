#include "Services/LiveDesktop.h"

#include "Models/Wording.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <QClipboard>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <utility>

#include <unistd.h>

namespace orbel {

namespace {

QString urlText(const std::string& path) {
    return QString::fromStdString(fileUrl(path));
}

/// The escapes carry bytes that are no text, so the URL is not taken apart into text and put together again.
QUrl urlOf(const std::string& path) {
    return QUrl::fromEncoded(QByteArray::fromStdString(fileUrl(path)), QUrl::StrictMode);
}

/// A program that ends this long after it was started has opened something, however it ends.
constexpr auto soonEnded = std::chrono::seconds(10);

QString words(const char* text) {
    return QCoreApplication::translate("LiveDesktop", text);
}

/// Starts what may stay as long as what it has opened, and outlives this application: the process
/// ends without taking down its objects. `failed` is called when it cannot be started, or soon ends
/// with a failure.
void start(QProcess* process, const std::function<void()>& failed) {
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    const auto started = std::chrono::steady_clock::now();
    QObject::connect(process, &QProcess::finished, qApp,
                     [process, started, failed](int status, QProcess::ExitStatus /*how*/) {
                         if (status != 0 && std::chrono::steady_clock::now() - started < soonEnded)
                             failed();
                         process->deleteLater();
                     });
    QObject::connect(process, &QProcess::errorOccurred, qApp,
                     [process, failed](QProcess::ProcessError error) {
                         if (error != QProcess::FailedToStart)
                             return;
                         failed();
                         process->deleteLater();
                     });
    process->start();
}

/// By what the desktop says, then by the distribution, then those of the desktops and others.
constexpr std::array terminals{"xdg-terminal-exec",
                               "x-terminal-emulator",
                               "kgx",
                               "gnome-terminal",
                               "konsole",
                               "xfce4-terminal",
                               "mate-terminal",
                               "qterminal",
                               "lxterminal",
                               "tilix",
                               "terminator",
                               "foot",
                               "alacritty",
                               "kitty",
                               "xterm"};

/// The one that is found first.
QString findTerminal() {
    for (const auto* const name : terminals) {
        if (auto program = QStandardPaths::findExecutable(QLatin1String(name)); !program.isEmpty())
            return program;
    }
    return {};
}

/// Starts a terminal whose working directory is the folder: its path is part of no command. The path is what
/// it is on the disk, which need not be text.
void startTerminal(const QString& program, const std::string& path, const std::function<void()>& failed) {
    auto* const process = new QProcess(qApp);
    process->setProgram(program);
    process->setChildProcessModifier([path, above = std::string(parentPath(path))] {
        const bool isThere = ::chdir(path.c_str()) == 0 || (errno == ENOTDIR && ::chdir(above.c_str()) == 0);
        if (!isThere)
            ::_exit(EXIT_FAILURE);
    });
    start(process, failed);
}

} // namespace

void LiveDesktop::openUrl(const QUrl& url, const std::function<void()>& failed) {
    const auto opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (opener.isEmpty()) {
        if (!QDesktopServices::openUrl(url))
            failed();
        return;
    }
    // Only its exit status tells that there was no program.
    auto* const process = new QProcess(qApp);
    process->setProgram(opener);
    process->setArguments({QString::fromUtf8(url.toEncoded())});
    start(process, failed);
}

void LiveDesktop::open(const std::string& path) {
    openUrl(urlOf(path),
            [this, path] { reportFailure(words("No program of this desktop opens %1.").arg(textOf(path))); });
}

void LiveDesktop::showInFileManager(const std::string& path) {
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{urlText(path)} << QString();
    auto* const answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), qApp);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [this, answer, path] {
        if (answer->isError())
            openUrl(urlOf(std::string(parentPath(path))), [this, path] {
                reportFailure(words("No file manager answers. The item is %1.").arg(textOf(path)));
            });
        answer->deleteLater();
    });
}

const QString& LiveDesktop::terminal() {
    if (!terminal_)
        terminal_ = findTerminal();
    return *terminal_;
}

bool LiveDesktop::hasTerminal() {
    return !terminal().isEmpty();
}

void LiveDesktop::openTerminal(const std::string& path) {
    const auto failed = [this, path] {
        reportFailure(words("No terminal could be opened in %1.").arg(textOf(path)));
    };
    const auto usual = terminal();
    if (usual.isEmpty()) {
        failed();
        return;
    }
    const auto settings = QStandardPaths::findExecutable(QStringLiteral("gsettings"));
    if (settings.isEmpty() || usual.endsWith(QLatin1String(terminals.front()))) {
        startTerminal(usual, path, failed);
        return;
    }
    // The user's choice on desktops that keep it there; where they do not, the question fails.
    auto* const question = new QProcess(qApp);
    const auto answered = [question, path, failed, usual] {
        const auto name =
            QString::fromUtf8(question->readAllStandardOutput()).trimmed().remove(QLatin1Char('\''));
        const auto chosen = name.isEmpty() ? QString() : QStandardPaths::findExecutable(name);
        startTerminal(chosen.isEmpty() ? usual : chosen, path, failed);
        question->deleteLater();
    };
    QObject::connect(question, &QProcess::finished, qApp, answered);
    QObject::connect(question, &QProcess::errorOccurred, qApp, [answered](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            answered();
    });
    question->start(settings,
                    {QStringLiteral("get"), QStringLiteral("org.gnome.desktop.default-applications.terminal"),
                     QStringLiteral("exec")});
}

void LiveDesktop::openTrash(const std::string& itemsFolder) {
    openUrl(QUrl(QStringLiteral("trash:///")), [this, itemsFolder] {
        openUrl(urlOf(itemsFolder), [this, itemsFolder] {
            reportFailure(words("No program of this desktop opens the Trash. Its items are in %1.")
                              .arg(textOf(itemsFolder)));
        });
    });
}

void LiveDesktop::openAddress(const QString& address) {
    openUrl(QUrl(address),
            [this, address] { reportFailure(words("No program of this desktop opens %1.").arg(address)); });
}

void LiveDesktop::copyText(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

} // namespace orbel
