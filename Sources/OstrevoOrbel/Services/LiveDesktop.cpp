#include "Services/LiveDesktop.h"

#include "Util/FileUrl.h"
#include "Util/PathText.h"

#include <QClipboard>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QUrl>

namespace orbel {

namespace {

QString urlText(const std::string& path) {
    return QString::fromStdString(fileUrl(path));
}

/// The escapes carry bytes that are no text, so the URL is not taken apart into text and put together again.
QUrl urlOf(const std::string& path) {
    return QUrl::fromEncoded(QByteArray::fromStdString(fileUrl(path)), QUrl::StrictMode);
}

} // namespace

void LiveDesktop::open(const std::string& path) {
    QDesktopServices::openUrl(urlOf(path));
}

void LiveDesktop::showInFileManager(const std::string& path) {
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{urlText(path)} << QString();
    auto* const answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), qApp);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, path] {
        if (answer->isError())
            QDesktopServices::openUrl(urlOf(std::string(parentPath(path))));
        answer->deleteLater();
    });
}

void LiveDesktop::openTrash(const std::string& itemsFolder) {
    if (!QDesktopServices::openUrl(QUrl(QStringLiteral("trash:///"))))
        open(itemsFolder);
}

void LiveDesktop::openAddress(const QString& address) {
    QDesktopServices::openUrl(QUrl(address));
}

void LiveDesktop::copyText(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

} // namespace orbel
