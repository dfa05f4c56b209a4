#pragma once

#include <QQuickAsyncImageProvider>
#include <string>

namespace orbel {

/// Draws the icons of applications for screens. Files are read on the engine's own thread; icons of a theme
/// are drawn on the main thread, one at a time, because Qt reads themes on no other. An icon that cannot be
/// drawn comes as a single clear dot, for which a screen shows a letter.
class AppIcons final : public QQuickAsyncImageProvider {
public:
    /// Makes Qt look for icons where applications put them: with `home`, and those of no theme too. For the
    /// whole process; called once.
    static void findThemes(const std::string& home);

    QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;
};

} // namespace orbel
