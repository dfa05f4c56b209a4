#include "Services/AppIcons.h"

#include "Util/ReadFile.h"

#include <cstdint>
#include <QBuffer>
#include <QImageReader>

namespace orbel {

namespace {

constexpr std::uint64_t mostFileBytes = 4 * 1024 * 1024;
constexpr int mostPixels = 2048; ///< in each direction; icons are smaller, and so is what they may cost
constexpr int usualPixels = 64;

constexpr auto idEncoding = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;

QImage drawn(const std::string& file, QSize wanted) {
    // Whatever a launcher names is read: a pipe or a huge file must not hold up the others.
    const auto content = readRegularFile(file, mostFileBytes);
    if (!content)
        return {};
    QByteArray bytes = QByteArray::fromStdString(*content);
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    const auto own = reader.size();
    if (own.isEmpty() || own.width() > mostPixels || own.height() > mostPixels)
        return {};
    if (wanted.isEmpty())
        wanted = {usualPixels, usualPixels};
    // Those that are lines are drawn at the size at which they are shown.
    if (reader.format().startsWith("svg"))
        reader.setScaledSize(own.scaled(wanted, Qt::KeepAspectRatio));
    auto image = reader.read();
    if (!image.isNull() && (image.width() > wanted.width() || image.height() > wanted.height()))
        image = image.scaled(wanted, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}

} // namespace

const QString AppIcons::name = QStringLiteral("appicon");

QString AppIcons::addressOf(const std::string& file) {
    return file.empty() ? QString()
                        : QStringLiteral("image://") + name + QLatin1Char('/')
                              + QString::fromLatin1(QByteArray::fromStdString(file).toBase64(idEncoding));
}

AppIcons::AppIcons()
    : QQuickImageProvider(QQmlImageProviderBase::Image,
                          QQmlImageProviderBase::ForceAsynchronousImageLoading) {}

QImage AppIcons::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    auto image = drawn(QByteArray::fromBase64(id.toLatin1(), idEncoding).toStdString(), requestedSize);
    if (image.isNull()) {
        image = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
    }
    if (size != nullptr)
        *size = image.size();
    return image;
}

} // namespace orbel
