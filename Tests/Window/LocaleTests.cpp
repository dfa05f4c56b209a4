#include "Models/ByteFigure.h"
#include "Models/MapWords.h"
#include "Models/Wording.h"
#include "Snapshots.h"
#include "Support/TreeBuilder.h"
#include "Views/TreemapItem.h"
#include "WindowScene.h"

#include <gtest/gtest.h>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QTest>

namespace orbel::test {

namespace {

const QString hebrewName = QStringLiteral("שלום עולם.mkv");
const QString hebrewShown = QStringLiteral("\u2068שלום עולם.mkv\u2069");
const QString spelledOut = QStringLiteral("photo[U+202E]gpj.exe");

/// A measured folder whose names are not all in one script.
struct ManyScripts : WindowScene {
    ManyScripts() {
        environment.scan = [](const std::string&, const ScanCancellation&, const ScanProgressCallback&,
                              const Exclusions&) {
            TreeBuilder builder("/data");
            const auto folder = builder.folder(0, "תמונות");
            builder.file(folder, "summer.jpg", 4'000'000'000);
            builder.file(0, "שלום עולם.mkv", 9'000'000'000);
            builder.file(0, "photo\u202Egpj.exe", 8'000'000'000);
            builder.file(0, "plain.mkv", 7'000'000'000);
            return ScanResult{.tree = builder.build(), .startedAt = {}, .firstProgress = {}, .duration = 1};
        };
        open();
        app().scan()->startScan("/data");
        EXPECT_TRUE(waitUntil([this] { return app().scan()->scanState() == ScanFlow::ScanState::done; }));
        app().setScreenName(QStringLiteral("map"));
        settle();
    }

    std::vector<QQuickItem*> saying(const QString& words) {
        auto found = texts();
        std::erase_if(found, [&](QQuickItem* text) { return text->property("text").toString() != words; });
        return found;
    }
};

TEST(NamesInTheWindow, StandWhereTheOthersDoAndSpellOutWhatTurnsThemRound) {
    ManyScripts scene;
    double edge = -1;
    for (const auto& name : {hebrewShown, spelledOut, QStringLiteral("plain.mkv")}) {
        const auto texts = scene.saying(name);
        ASSERT_FALSE(texts.empty()) << name.toStdString();
        const auto& text = *texts.front();
        EXPECT_EQ(text.property("effectiveHorizontalAlignment").toInt(), int{Qt::AlignLeft})
            << name.toStdString();
        const double left = text.mapToScene({0, 0}).x();
        edge = edge < 0 ? left : edge;
        EXPECT_EQ(left, edge) << name.toStdString();
    }
    EXPECT_TRUE(scene.app().map()->facts(0).valid);
    EXPECT_EQ(scene.app().map()->facts(0).path, QStringLiteral("/data"));

    keepPicture(scene, QStringLiteral("map-scripts"));

    // What is copied is the name on the disk, and what is typed finds the name as it is typed.
    auto* const list = scene.item(QStringLiteral("map.list"));
    list->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_End);
    QKeyEvent typed(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QStringLiteral("ש"));
    QCoreApplication::sendEvent(&scene.window(), &typed);
    scene.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(scene.requests().copied, QStringLiteral("/data/") + hebrewName);
    scene.press(Qt::Key_Down);
    scene.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(scene.requests().copied, QStringLiteral("/data/photo\u202Egpj.exe"));

    // The menu of that row, the status line, and what a screen reader says of the tile.
    scene.press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_GE(scene.saying(spelledOut).size(), 3U) << "the row, the inspector and the menu's head";
    scene.press(Qt::Key_Escape);
    const auto& map = *qobject_cast<TreemapItem*>(scene.item(QStringLiteral("map.view")));
    QStringList tiles;
    for (int tile = 0; tile < map.tileCount(); ++tile)
        tiles << map.tileName(tile);
    EXPECT_TRUE(tiles.join(QLatin1Char('\n')).contains(hebrewShown));
    EXPECT_TRUE(tiles.join(QLatin1Char('\n')).contains(spelledOut));
}

TEST(NamesInTheWindow, AreAsWideAsTheirLetters) {
    const QFontMetricsF metrics(QFont(QStringLiteral("Noto Sans"), 10));
    EXPECT_NEAR(metrics.horizontalAdvance(hebrewShown), metrics.horizontalAdvance(hebrewName), 0.5);
    const auto path = textOf("/שלום/עולם/a.mkv");
    EXPECT_NEAR(metrics.horizontalAdvance(path),
                metrics.horizontalAdvance(QStringLiteral("/שלום/עולם/a.mkv")), 0.5);
    // A name that is cut short in the middle keeps both of its ends, and what keeps it apart.
    const auto cut =
        metrics.elidedText(hebrewShown, Qt::ElideMiddle, metrics.horizontalAdvance(hebrewName) / 2);
    EXPECT_TRUE(cut.startsWith(QChar(0x2068)) && cut.endsWith(QChar(0x2069))) << cut.toStdString();
}

/// The desktop's locale for as long as this lives.
class Locale {
public:
    explicit Locale(const char* name) { QLocale::setDefault(QLocale(QLatin1String(name))); }
    ~Locale() { QLocale::setDefault(QLocale::c()); }
    Locale(const Locale&) = delete;
    Locale& operator=(const Locale&) = delete;
};

struct Figures {
    const char* locale;
    QString bytes;
    QString count;
    QString seconds;
    QString share;
    QString day;
    QString dayAndClock;
    QString recent;
    QString clock;
};

/// With plain spaces, where newer Qt has narrow ones that do not break ("5:05 PM").
QString plain(QString text) {
    return text.replace(QChar(0x202f), QLatin1Char(' '));
}

/// "17:05" of "on 14 November at 17:05"
QString clockOf(const QString& recent) {
    return recent.section(QStringLiteral(" at "), 1);
}

TEST(Figures, AreWrittenAsTheDesktopsLocaleDoes) {
    // 14 November 2026, 17:05:09 in local time.
    const auto then = std::chrono::sys_seconds(
        std::chrono::seconds(QDateTime(QDate(2026, 11, 14), QTime(17, 5, 9)).toSecsSinceEpoch()));
    const auto now = then + std::chrono::days(3);
    for (const auto& [locale, bytes, count, seconds, share, day, dayAndClock, recent, clock] :
         {Figures{"C", "421.8 GB", "1,284,301", "8.4 s", "1.5 %", "14 November 2026",
                  "14 November 2026 at 17:05", "on 14 November at 17:05", "17:05:09"},
          Figures{"de_DE", "421,8 GB", "1.284.301", "8,4 s", "1,5 %", "14. November 2026",
                  "14. November 2026 at 17:05", "on 14. November at 17:05", "17:05:09"},
          Figures{"en_US", "421.8 GB", "1,284,301", "8.4 s", "1.5 %", "November 14, 2026",
                  "November 14, 2026 at 5:05 PM", "on November 14 at 5:05 PM", "5:05:09 PM"},
          Figures{"es_ES", "421,8 GB", "1.284.301", "8,4 s", "1,5 %", "14 de noviembre de 2026",
                  "14 de noviembre de 2026 at 17:05", "on 14 de noviembre at 17:05", "17:05:09"},
          Figures{"ja_JP", "421.8 GB", "1,284,301", "8.4 s", "1.5 %", "2026年11月14日",
                  "2026年11月14日 at 17:05", "on 11月14日 at 17:05", "17時05分09秒"}}) {
        const Locale desktop(locale);
        EXPECT_EQ(ByteFigure(421'800'000'000).text(), bytes) << locale;
        EXPECT_EQ(ByteFigure(999).text(), QStringLiteral("999 B")) << locale;
        EXPECT_EQ(countText(1'284'301), count) << locale;
        EXPECT_EQ(countText(999), QStringLiteral("999")) << locale;
        EXPECT_EQ(durationText(8.4), seconds) << locale;
        EXPECT_EQ(shareText(15, 1000), share) << locale;
        EXPECT_EQ(dayText(then), day) << locale;
        EXPECT_EQ(plain(dayAndClockText(then)), dayAndClock) << locale;
        EXPECT_EQ(plain(whenText(then, now)), recent) << locale;
        EXPECT_EQ(plain(whenText(then, then + std::chrono::days(1))),
                  QStringLiteral("yesterday at ") + clockOf(recent));
        EXPECT_EQ(plain(whenText(then, then + std::chrono::days(365))),
                  QStringLiteral("on %1 at %2").arg(day, clockOf(recent)))
            << "of another year";
        EXPECT_EQ(plain(clockText(then)), clock) << locale;
        EXPECT_EQ(ByteFigure(4'200'000'000).in(QStringLiteral("4.2 GB free.")),
                  ByteFigure(4'200'000'000).text() + QStringLiteral(" free."))
            << locale;
    }
}

TEST(Figures, OnTheScreenFollowTheLocale) {
    const Locale desktop("de_DE");
    WindowScene scene;
    scene.open();
    EXPECT_TRUE(scene.says(QStringLiteral("See where 421,8 GB went")));
    scene.holdScans();
    scene.app().scan()->scanDisk();
    EXPECT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("612.408")); }));
    scene.releaseScans();
}

} // namespace
} // namespace orbel::test
