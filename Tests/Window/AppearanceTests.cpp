#include "Snapshots.h"
#include "WindowScene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <QColor>
#include <QQmlExpression>

namespace orbel::test {

namespace {

/// A window on a desktop that wants what the test says.
struct WantedLook : WindowScene {
    WantedLook() {
        environment.appearance = desktop;
        open();
    }

    QVariant theme(const char* value) {
        QQmlExpression asked(QQmlEngine::contextForObject(&window()), &window(),
                             QStringLiteral("Theme.") + QLatin1String(value));
        const auto answer = asked.evaluate();
        EXPECT_FALSE(asked.hasError()) << asked.error().toString().toStdString();
        return answer;
    }
    QColor color(const char* token) { return theme(token).value<QColor>(); }
    void tell() {
        Q_EMIT desktop->changed();
        settle();
    }

    std::shared_ptr<FakeAppearance> desktop = std::make_shared<FakeAppearance>();
};

/// By the rule of the Web Content Accessibility Guidelines.
double contrastOf(const QColor& first, const QColor& second) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double part) {
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
               + 0.0722 * linear(color.blueF());
    };
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

TEST(WindowAppearance, MovesNothingWhereTheDesktopWantsItSo) {
    WantedLook scene;
    EXPECT_GT(scene.theme("zoomTime").toInt(), 0);
    scene.desktop->wantsLessMotion = true;
    scene.tell();
    for (const auto* time : {"zoomTime", "sheetTime", "tickBarTime", "tickTime", "pulseTime"})
        EXPECT_EQ(scene.theme(time).toInt(), 0) << time;
    scene.desktop->wantsLessMotion = false;
    scene.tell();
    EXPECT_GT(scene.theme("tickTime").toInt(), 0) << "as soon as the desktop says so";
}

TEST(WindowAppearance, EveryColourStandsOutFromItsGround) {
    WantedLook scene;
    constexpr std::array grounds{"window", "side", "surface", "sunk", "hover", "accentSoft"};
    // Of fields, ticks, buttons and menus; and of what is set, focused, committing or wrong.
    constexpr std::array borders{"control", "accent", "commit", "error"};
    constexpr std::array texts{"ink", "text2", "text3", "accent"};
    for (const bool isContrastHigh : {false, true}) {
        for (const bool isDark : {false, true}) {
            scene.desktop->wantsContrast = isContrastHigh;
            scene.desktop->wantsDark = isDark;
            scene.tell();
            const auto expectContrast = [&](const char* mark, const char* ground, double least) {
                EXPECT_GE(contrastOf(scene.color(mark), scene.color(ground)), least)
                    << mark << " on " << ground << (isDark ? ", dark" : ", light");
            };
            for (const auto* ground : grounds) {
                for (const auto* border : borders)
                    expectContrast(border, ground, 3);
                for (const auto* text : texts)
                    expectContrast(text, ground, isContrastHigh && text != texts.back() ? 7 : 4.5);
                for (const auto* line : {"line", "lineSoft"})
                    expectContrast(line, ground, isContrastHigh ? 3 : 1);
            }
            for (const auto& [text, ground] : {std::pair("accentText", "accent"),
                                               {"accentText", "accentHover"},
                                               {"commitText", "commit"},
                                               {"commitText", "commitHover"},
                                               {"warn", "warnSoft"},
                                               {"error", "errorSoft"},
                                               {"ok", "okSoft"},
                                               {"ink", "warnSoft"},
                                               {"text2", "warnSoft"},
                                               {"text2", "errorSoft"},
                                               {"text2", "okSoft"},
                                               {"text2", "hatchGround"},
                                               {"text2", "mapGround"}})
                expectContrast(text, ground, 4.5);
        }
    }
}

/// Controls with a border, as they are drawn on every screen.
TEST(WindowAppearance, ControlsHaveBordersThatCanBeSeen) {
    WantedLook scene;
    scene.app().scan()->scanDisk();
    ASSERT_TRUE(
        scene.waitUntil([&] { return scene.app().scan()->scanState() == ScanFlow::ScanState::done; }));
    int seen = 0;
    const auto look = [&](auto&& self, const QQuickItem& item) -> void {
        if (!item.isVisible())
            return;
        const auto* const ground = item.property("background").value<QQuickItem*>();
        const auto* const border = ground == nullptr ? nullptr : ground->property("border").value<QObject*>();
        if (border != nullptr && item.isEnabled() && border->property("width").toDouble() > 0) {
            const auto color = border->property("color").value<QColor>();
            const auto fill = ground->property("color").value<QColor>();
            const bool isMark = color.alpha() > 0 && !item.inherits("QQuickPopup")
                                && !item.objectName().startsWith(QLatin1String("sidebar."));
            seen += isMark ? 1 : 0;
            if (isMark && color != fill) {
                EXPECT_GE(contrastOf(color, scene.color("window")), 3) << item.objectName().toStdString();
                EXPECT_GE(contrastOf(color, scene.color("surface")), 3) << item.objectName().toStdString();
            }
        }
        for (const auto* const child : item.childItems())
            self(self, *child);
    };
    for (const auto* screen : {"overview", "map", "large", "duplicates", "uninstall", "tidy", "journal"}) {
        scene.app().setScreenName(QLatin1String(screen));
        scene.settle();
        look(look, *scene.window().contentItem());
    }
    EXPECT_GT(seen, 20);
    scene.desktop->wantsContrast = true;
    scene.tell();
    scene.app().setScreenName(QStringLiteral("large"));
    scene.settle();
    keepPicture(scene, QStringLiteral("large-high-contrast"));
}

} // namespace
} // namespace orbel::test
