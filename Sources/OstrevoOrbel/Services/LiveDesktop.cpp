#include "Services/LiveDesktop.h"

#include "Models/Wording.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"

#include <chrono>
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

} // namespace

void LiveDesktop::openUrl(const QUrl& url, std::function<void()> failed) {
    const auto opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (opener.isEmpty()) {
        if (!QDesktopServices::openUrl(url))
            failed();
        return;
    }
    // Only its exit status tells that there was no program. It may stay as long as what it has opened, and
    // outlives this application: the process ends without taking down its objects.
    auto* const process = new QProcess(qApp);
    process->setProgram(opener);
    process->setArguments({QString::fromUtf8(url.toEncoded())});
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
