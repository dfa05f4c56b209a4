#pragma once

#include <QQuickImageProvider>
#include <string>

namespace orbel {

/// Draws the icons of applications for screens, on the engine's own thread. An icon that cannot be drawn
/// comes as a single clear dot, for which a screen shows a letter.
class AppIcons final : public QQuickImageProvider {
public:
    /// Of the provider in addresses.
    static const QString name;

    /// What an Image shows for a file; empty for none.
    static QString addressOf(const std::string& file);

    AppIcons();
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace orbel
