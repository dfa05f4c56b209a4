#include "PrivateBus.h"
#include "Support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <QDir>
#include <QImage>
#include <QProcess>
#include <QQuickWindow>
#include <QtEndian>
#include <QTest>

namespace orbel::test {
namespace {

constexpr int displayPatience = 60'000; ///< milliseconds; a sanitized program on a busy machine is slow
// The light theme's colours of what the tests look for.
constexpr QRgb sideColour = 0xFFE8EDED; ///< the sidebar and the status line: two edges of the window each
constexpr QRgb darkSideColour = 0xFF0D1112;
constexpr QRgb controlColour = 0xFF758280; ///< the border of a menu
constexpr QRgb surfaceColour = 0xFFFFFFFF; ///< white is a sheet alone: the rest is dimmed below it
constexpr QRgb videoColour = 0xFFD5B4F9;   ///< a film, on the map
constexpr QRgb coverColour = 0xFFFF0000;   ///< another program's window
constexpr int sidebarWidth = 212;
constexpr int listWidth = 344;

/// The screen that Tests/Window/on-display has made, with its pointer and keyboard.
struct Display {
    QString platform = qEnvironmentVariable("QT_QPA_PLATFORM");

    /// Reads the X window dump that the server keeps of its screen.
    static QImage picture() {
        std::ifstream file(qgetenv("ORBEL_SCREEN").toStdString(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        const auto field = [&](std::size_t index) {
            return bytes.size() < 4 * index + 4 ? 0 : qFromBigEndian<quint32>(bytes.data() + 4 * index);
        };
        enum : std::size_t { headerSize = 0, width = 4, height = 5, bytesPerLine = 12, colourCount = 19 };
        constexpr std::size_t colourSize = 12;
        const auto start = field(headerSize) + field(colourCount) * colourSize;
        if (bytes.size() < start + std::size_t{field(height)} * field(bytesPerLine) || field(height) == 0)
            return {};
        return QImage(reinterpret_cast<const uchar*>(bytes.data() + start), static_cast<int>(field(width)),
                      static_cast<int>(field(height)), static_cast<int>(field(bytesPerLine)),
                      QImage::Format_RGB32)
            .copy();
    }

    static void act(const QString& words) {
        EXPECT_EQ(QProcess::execute(QStringLiteral("xdotool"), words.split(QLatin1Char(' '))), 0)
            << words.toStdString();
    }
    static void click(const QPoint& place, int button) {
        act(QStringLiteral("mousemove %1 %2 click %3").arg(place.x()).arg(place.y()).arg(button));
    }

    void keep(const QString& name) const {
        const QDir folder(QStringLiteral(ORBEL_SNAPSHOTS));
        EXPECT_TRUE(folder.mkpath(QStringLiteral(".")));
        EXPECT_TRUE(picture().save(folder.filePath(QStringLiteral("display-") + platform + QLatin1Char('-')
                                                   + name + QStringLiteral(".png"))));
    }
};

/// The smallest rectangle around all that has a colour, and had another one `before` if that is given.
QRect boxOf(const QImage& picture, QRgb colour, const QRect& within, const QImage& before = {}) {
    QRect box;
    const auto area = within & picture.rect();
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = area.left(); x <= area.right(); ++x)
            if ((line[x] | 0xFF000000U) == colour && (before.isNull() || before.pixel(x, y) != colour))
                box |= QRect(x, y, 1, 1);
    }
    return box;
}

std::string boxText(const QRect& box) {
    return QStringLiteral("%1,%2 %3x%4")
        .arg(box.x())
        .arg(box.y())
        .arg(box.width())
        .arg(box.height())
        .toStdString();
}

class WindowOnADisplay : public testing::Test {
protected:
    WindowOnADisplay() {
        folder_.file("data/film.mkv", 4'000'000);
        environment_.insert(QStringLiteral("HOME"), QString::fromStdString(folder_.path()));
        environment_.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus_.address());
        environment_.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
        for (const auto* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CURRENT_DESKTOP",
                                 "__EGL_VENDOR_LIBRARY_FILENAMES"})
            environment_.remove(QLatin1String(name));
        setUp(program_);
    }
    ~WindowOnADisplay() override {
        program_.kill();
        program_.waitForFinished();
    }

    void setUp(QProcess& process) const {
        process.setProcessEnvironment(environment_);
        process.setProgram(QStringLiteral(ORBEL_WINDOW_PROGRAM));
    }

    void open() {
        program_.setArguments({QStringLiteral("--appearance"), QStringLiteral("light"),
                               QStringLiteral("--scan"), QString::fromStdString(folder_.path("data")),
                               QStringLiteral("--open"), QStringLiteral("map")});
        program_.start();
        ASSERT_TRUE(sees([&] {
            return boxOf(Display::picture(), sideColour, everywhere).size() == QSize(1440, 900);
        })) << "no window: "
            << program_.readAllStandardError().toStdString();
        window_ = boxOf(Display::picture(), sideColour, everywhere);
    }

    /// What the platform's plugin is called among what the program has loaded.
    bool hasLoaded(const std::string& plugin) const {
        std::ifstream file("/proc/" + std::to_string(program_.processId()) + "/maps");
        return std::string(std::istreambuf_iterator<char>(file), {}).find(plugin) != std::string::npos;
    }

    /// Waits until the screen shows what is looked for; keeps a picture of what it shows instead.
    bool sees(const std::function<bool()>& met) const {
        constexpr int interval = 50;
        for (int waited = 0; waited < displayPatience; waited += interval) {
            if (met())
                return true;
            QTest::qWait(interval);
        }
        display_.keep(QStringLiteral("failed"));
        return false;
    }

    QRect screenArea() const { return window_.adjusted(sidebarWidth + 4, 0, 0, 0); }
    /// The one tile of the map, once it is shown.
    QRect tile() const {
        const auto picture = Display::picture();
        const auto box = boxOf(picture, videoColour, screenArea().adjusted(0, 0, -listWidth - 8, -72));
        const bool isTile =
            box.width() > 500 && box.height() > 500 && picture.pixel(box.center()) == videoColour;
        return isTile ? box : QRect();
    }

    /// Opens the menu of what is at a place, looks where it is, and closes it with Esc.
    void expectMenu(const QPoint& place, const QString& picture) {
        const auto before = Display::picture();
        const auto menu = [&] { return boxOf(Display::picture(), controlColour, screenArea(), before); };
        Display::click(place, 3);
        ASSERT_TRUE(sees([&] { return menu().width() > 200 && menu().height() > 100; })) << boxText(menu());
        EXPECT_TRUE(menu().adjusted(-8, -8, 8, 8).contains(place)) << boxText(menu());
        EXPECT_LT(menu().width(), 300);
        EXPECT_TRUE(window_.contains(menu().adjusted(-1, -1, 1, 1))) << boxText(menu());
        display_.keep(picture);
        Display::act(QStringLiteral("key Escape"));
        EXPECT_TRUE(sees([&] { return menu().isNull(); })) << boxText(menu());
    }

    static constexpr QRect everywhere{0, 0, 10'000, 10'000};
    Display display_;
    TemporaryFolder folder_;
    PrivateBus bus_;
    QProcessEnvironment environment_ = QProcessEnvironment::systemEnvironment();
    QProcess program_;
    QRect window_; ///< on the screen, without what a desktop draws around it
};

TEST_F(WindowOnADisplay, AnswersKeysAndPointerAndASecondStart) {
    ASSERT_NO_FATAL_FAILURE(open());
    const bool isWayland = display_.platform == QLatin1String("wayland");
    EXPECT_EQ(hasLoaded("/libqwayland-"), isWayland);
    EXPECT_EQ(hasLoaded("/libqxcb.so"), !isWayland);

    ASSERT_TRUE(sees([&] { return !tile().isNull(); }));
    const auto film = tile();
    // A click is what gives a window the keyboard everywhere. What was measured until then has the focus.
    Display::click(window_.topLeft() + QPoint(40, window_.height() / 2), 1);
    const auto before = Display::picture();
    Display::act(QStringLiteral("key Down shift+F10"));
    EXPECT_TRUE(sees([&] { return boxOf(Display::picture(), controlColour, film, before).width() > 200; }))
        << "no menu by the keyboard";
    Display::act(QStringLiteral("key Escape"));
    ASSERT_TRUE(sees([&] { return boxOf(Display::picture(), controlColour, film, before).isNull(); }));
    Display::click(film.center(), 1);
    ASSERT_NO_FATAL_FAILURE(expectMenu(film.center(), QStringLiteral("menu")));
    ASSERT_NO_FATAL_FAILURE(expectMenu(film.bottomRight() - QPoint(20, 20), QStringLiteral("menu-below")));
    const auto row = boxOf(Display::picture(), videoColour,
                           screenArea().adjusted(film.right() - screenArea().left() + 4, 0, 0, -300));
    ASSERT_NO_FATAL_FAILURE(
        expectMenu({window_.right() - 12, row.center().y()}, QStringLiteral("menu-beside")));

    // The pointer, which is white in part, away from the edges. The keys come one right after the other.
    Display::act(
        QStringLiteral("mousemove %1 %2 key space Delete").arg(film.center().x()).arg(window_.center().y()));
    QRect sheet;
    EXPECT_TRUE(sees([&] {
        sheet = boxOf(Display::picture(), surfaceColour, window_);
        return sheet.width() > 700 && sheet.width() < 800
               && (sheet.center() - window_.center()).manhattanLength() <= 2;
    })) << boxText(sheet);
    display_.keep(QStringLiteral("sheet"));
    Display::act(QStringLiteral("key Escape"));
    EXPECT_TRUE(sees([&] { return boxOf(Display::picture(), sideColour, everywhere) == window_; }));
    EXPECT_TRUE(std::filesystem::exists(folder_.path("data/film.mkv")));

    QQuickWindow other;
    other.setColor(QColor::fromRgb(coverColour));
    other.setGeometry({{0, 0}, Display::picture().size()});
    other.show();
    EXPECT_TRUE(sees([&] { return boxOf(Display::picture(), sideColour, everywhere).isNull(); }));
    QProcess second;
    setUp(second);
    second.setArguments({QStringLiteral("--open"), QStringLiteral("journal")});
    second.start();
    EXPECT_TRUE(second.waitForFinished(displayPatience));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(second.readAllStandardError().toStdString(), "");
    if (isWayland)
        other.close(); // Weston has no activation protocol: no program can raise its window
    EXPECT_TRUE(sees([&] { return boxOf(Display::picture(), sideColour, everywhere) == window_; }))
        << "not in front, or a second window";
    other.close();
    EXPECT_TRUE(sees([&] { return boxOf(Display::picture(), videoColour, window_).isNull(); }))
        << "not the journal";
    display_.keep(QStringLiteral("journal"));

    // In the settings, from the desktop's own choice to light to dark. Weston leaves the frame
    // to the program.
    Display::act(QStringLiteral("key ctrl+comma Right Right"));
    EXPECT_TRUE(sees([&] { return boxOf(Display::picture(), darkSideColour, everywhere) == window_; }));
    if (isWayland) {
        EXPECT_LT(Display::picture().pixelColor(window_.topLeft() + QPoint(60, -16)).lightness(), 60);
    }
    display_.keep(QStringLiteral("dark"));

    const auto quit =
        QStringLiteral("call --address %1 --dest org.ostrevo.Orbel --object-path /org/ostrevo/Orbel "
                       "--method org.freedesktop.Application.ActivateAction quit [] {}");
    EXPECT_EQ(QProcess::execute(QStringLiteral("gdbus"), quit.arg(bus_.address()).split(QLatin1Char(' '))),
              0);
    EXPECT_TRUE(program_.waitForFinished(displayPatience));
    EXPECT_EQ(program_.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program_.exitCode(), 0);
    EXPECT_EQ(program_.readAllStandardError().toStdString(), "");
}

} // namespace
} // namespace orbel::test
