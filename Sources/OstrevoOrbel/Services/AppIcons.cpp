#include "Services/AppIcons.h"

#include "Models/IconAddress.h"
#include "Util/ReadFile.h"

#include <cstdint>
#include <QBuffer>
#include <QGuiApplication>
#include <QIcon>
#include <QImageReader>
#include <QPointer>
#include <QRegularExpression>
#include <QStandardPaths>

namespace orbel {

namespace {

constexpr std::uint64_t mostFileBytes = 4 * 1024 * 1024;
constexpr int mostPixels = 2048; ///< in each direction; icons are smaller, and so is what they may cost
constexpr int usualPixels = 64;

QImage drawn(const std::string& file, QSize wanted) {
    // A launcher may name a pipe or a huge file, which must not hold up the others.
    const auto content = readRegularFile(file, mostFileBytes);
    if (!content)
        return {};
    QByteArray bytes = QByteArray::fromStdString(*content);
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    const auto own = reader.size();
    if (own.isEmpty() || own.width() > mostPixels || own.height() > mostPixels)
        return {};
    // Those that are lines are drawn at the size at which they are shown.
    if (reader.format().startsWith("svg"))
        reader.setScaledSize(own.scaled(wanted, Qt::KeepAspectRatio));
    auto image = reader.read();
    if (!image.isNull() && (image.width() > wanted.width() || image.height() > wanted.height()))
        image = image.scaled(wanted, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}

/// Only on the main thread.
QImage drawnByTheme(QString icon, QSize wanted) {
    // Some name the file where the name of the icon is asked for.
    static const QRegularExpression ending(QStringLiteral("\\.(png|svg|xpm)$"));
    icon.remove(ending);
    if (icon.contains(QLatin1Char('/')))
        return {};
    return QIcon::fromTheme(icon).pixmap(wanted, 1).toImage();
}

class Picture final : public QQuickImageResponse {
public:
    Picture() { image_.fill(Qt::transparent); }

    QQuickTextureFactory* textureFactory() const override {
        return QQuickTextureFactory::textureFactoryForImage(image_);
    }

    /// Any thread. The picture ends on its own thread, where the engine is connected to it by then.
    void finish(const QImage& image) {
        const auto end = [this, image] {
            if (!image.isNull())
                image_ = image;
            Q_EMIT finished();
        };
        QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
    }

private:
    QImage image_{1, 1, QImage::Format_ARGB32_Premultiplied};
};

} // namespace

void AppIcons::findThemes(const std::string& home) {
    const auto homePath = QString::fromStdString(home);
    QStringList folders{homePath + QStringLiteral("/.icons")};
    auto data = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    data << homePath + QStringLiteral("/.local/share/flatpak/exports/share")
         << QStringLiteral("/var/lib/flatpak/exports/share");
    for (const auto& folder : data)
        folders << folder + QStringLiteral("/icons");
    folders += QIcon::themeSearchPaths();
    folders.removeDuplicates();
    QIcon::setThemeSearchPaths(folders);
    QIcon::setFallbackSearchPaths(folders + QIcon::fallbackSearchPaths()
                                  << QStringLiteral("/usr/share/pixmaps"));
    // The theme that all others stand on, where the desktop names none.
    if (QIcon::themeName().isEmpty())
        QIcon::setThemeName(QStringLiteral("hicolor"));
}

QQuickImageResponse* AppIcons::requestImageResponse(const QString& id, const QSize& requestedSize) {
    auto* const picture = new Picture; // the engine owns it
    const auto icon = iconAt(id);
    const auto wanted = requestedSize.isEmpty() ? QSize(usualPixels, usualPixels) : requestedSize;
    if (icon.starts_with('/')) {
        picture->finish(drawn(icon, wanted));
        return picture;
    }
    // The engine can be gone by then, and the picture with it.
    const auto draw = [picture = QPointer(picture), name = QString::fromStdString(icon), wanted] {
        if (picture)
            picture->finish(drawnByTheme(name, wanted));
    };
    QMetaObject::invokeMethod(qApp, draw, Qt::QueuedConnection);
    return picture;
}

} // namespace orbel
