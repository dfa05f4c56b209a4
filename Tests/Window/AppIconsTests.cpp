#include "Models/IconAddress.h"
#include "Services/AppIcons.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <memory>
#include <QIcon>
#include <QImage>
#include <QQuickTextureFactory>
#include <QSignalSpy>

#include <sys/stat.h>

namespace orbel::test {
namespace {

/// The colour in the middle of an icon; clear when it cannot be drawn.
QColor colorOf(const std::string& icon) {
    AppIcons provider;
    const auto id = iconAddress(icon).section(QLatin1Char('/'), -1);
    const std::unique_ptr<QQuickImageResponse> picture(provider.requestImageResponse(id, {48, 48}));
    QSignalSpy finished(picture.get(), &QQuickImageResponse::finished);
    EXPECT_TRUE(finished.wait()) << icon;
    const std::unique_ptr<QQuickTextureFactory> texture(picture->textureFactory());
    const auto image = texture->image();
    EXPECT_TRUE(image.width() == 48 || image.size() == QSize(1, 1)) << icon;
    return image.pixelColor(image.rect().center());
}

std::string square(const char* color) {
    return R"(<svg xmlns="http://www.w3.org/2000/svg" width="64" height="64"><rect width="64" height="64" fill=")"
           + std::string(color) + R"("/></svg>)";
}

TEST(AppIcons, ComeFromTheThemeFromTheSharedOneFromNoneOrFromAFile) {
    const TemporaryFolder home;
    const std::string_view directory =
        "Directories=apps\n[apps]\nSize=48\nType=Scalable\nMinSize=8\nMaxSize=512\n";
    home.file(".icons/Night/index.theme",
              "[Icon Theme]\nName=Night\nInherits=Day\n" + std::string(directory));
    home.file(".icons/Day/index.theme", "[Icon Theme]\nName=Day\n" + std::string(directory));
    home.file(".icons/hicolor/index.theme", "[Icon Theme]\nName=Hicolor\n" + std::string(directory));
    home.file(".icons/Night/apps/orbel-a.svg", square("red"));
    home.file(".icons/hicolor/apps/orbel-a.svg", square("black"));
    home.file(".icons/Day/apps/orbel-b.svg", square("lime"));
    home.file(".icons/hicolor/apps/orbel-c.svg", square("blue"));
    home.file(".icons/orbel-d.svg", square("yellow"));
    const auto file = home.file("own.svg", square("cyan"));
    home.file(".icons/own.svg", square("black"));
    QIcon::setThemeName(QStringLiteral("Night"));
    AppIcons::findThemes(home.path());
    for (const auto& [icon, color] : {std::pair{"orbel-a", "red"},
                                      {"orbel-a.svg", "red"},
                                      {"orbel-b", "lime"},
                                      {"orbel-c", "blue"},
                                      {"orbel-d", "yellow"},
                                      {file.c_str(), "cyan"}})
        EXPECT_EQ(colorOf(icon), QColor(color)) << icon;
    const auto fifo = home.path("pipe");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    for (const auto& none :
         {std::string("orbel-e"), std::string("../own"), std::string("/nowhere.png"), fifo})
        EXPECT_EQ(colorOf(none).alpha(), 0) << none;
}

} // namespace
} // namespace orbel::test
