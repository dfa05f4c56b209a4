#include "Models/IconAddress.h"

#include <QByteArray>

namespace orbel {

namespace {

constexpr auto encoding = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;

} // namespace

QString iconAddress(const std::string& icon) {
    if (icon.empty())
        return {};
    return QStringLiteral("image://%1/%2")
        .arg(iconProvider, QString::fromLatin1(QByteArray::fromStdString(icon).toBase64(encoding)));
}

std::string iconAt(const QString& id) {
    return QByteArray::fromBase64(id.toLatin1(), encoding).toStdString();
}

} // namespace orbel
