#include "Map/MapColors.h"
#include "Views/PathLines.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <QColor>
#include <QCoreApplication>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtTest/QTest>

namespace orbel::test {

namespace {

/// A window with a few components in it, and nothing else.
class ComponentScene {
public:
    /// `body` is QML that stands in the window, with the module's names known.
    explicit ComponentScene(const QByteArray& body) {
        engine_.addImportPath(QStringLiteral(":/qt/qml"));
        QQmlComponent component(&engine_);
        component.setData("import QtQuick\nimport OstrevoOrbel\n"
                          "Window { visible: true; width: 600; height: 400; property string told\n"
                              + body + "\n}",
                          QUrl());
        window_.reset(qobject_cast<QQuickWindow*>(component.create()));
        EXPECT_TRUE(window_ != nullptr) << component.errorString().toStdString();
        window_->requestActivate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    }

    QVariant value(const QString& expression) {
        QQmlExpression asked(QQmlEngine::contextForObject(window_.get()), window_.get(), expression);
        const auto answer = asked.evaluate();
        EXPECT_FALSE(asked.hasError()) << asked.error().toString().toStdString();
        return answer;
    }

    QString told() { return window_->property("told").toString(); }
    void press(Qt::Key key) { QTest::keyClick(window_.get(), key); }
    /// One event of a key; `isRepeated`: one that the desktop makes while the key is held.
    void send(QEvent::Type type, Qt::Key key, bool isRepeated = false) {
        QKeyEvent event(type, key, Qt::NoModifier, QString(), isRepeated);
        QCoreApplication::sendEvent(window_.get(), &event);
    }
    /// The key goes down, stays there for a while, and comes up.
    void hold(Qt::Key key) {
        send(QEvent::KeyPress, key);
        for (int i = 0; i < 3; ++i) {
            send(QEvent::KeyRelease, key, true);
            send(QEvent::KeyPress, key, true);
        }
        send(QEvent::KeyRelease, key);
    }
    /// What it told since this was last asked.
    QString heard() {
        const auto words = told().trimmed();
        window_->setProperty("told", QString());
        return words;
    }

    void hover(const QString& id) {
        auto* const item = value(id).value<QQuickItem*>();
        QTest::mouseMove(window_.get(), item->mapToScene({item->width() / 2, item->height() / 2}).toPoint());
    }
    void click(const QString& id) {
        auto* const item = value(id).value<QQuickItem*>();
        const auto centre = item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
        QTest::mouseClick(window_.get(), Qt::LeftButton, Qt::NoModifier, centre);
    }

private:
    QQmlEngine engine_;
    std::unique_ptr<QQuickWindow> window_;
};

/// The relative luminance of WCAG.
double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

} // namespace

TEST(WindowTheme, TextCanBeReadOnEveryGround) {
    ComponentScene scene("");
    const auto color = [&](const QString& name) {
        return scene.value(QStringLiteral("Theme.") + name).value<QColor>();
    };
    const auto expectReadable = [&](const QString& text, const QString& ground, double least) {
        EXPECT_GE(contrast(color(text), color(ground)), least)
            << text.toStdString() << " on " << ground.toStdString();
    };
    for (const auto* dark : {"false", "true"}) {
        scene.value(QStringLiteral("Theme.dark = ") + QLatin1String(dark));
        SCOPED_TRACE(dark);
        for (const auto* ground : {"window", "side", "surface", "sunk", "hover", "accentSoft",
                                   "map.frames[0]", "map.frames[1]", "map.frames[2]"})
            for (const auto* text : {"ink", "text2", "text3"})
                expectReadable(QLatin1String(text), QLatin1String(ground), 4.6);
        for (const auto& [text, ground] : {std::pair{"accentText", "accent"},
                                           {"accentText", "accentHover"},
                                           {"commitText", "commit"},
                                           {"commitText", "commitHover"},
                                           {"accent", "surface"},
                                           {"accent", "accentSoft"},
                                           {"warn", "warnSoft"},
                                           {"error", "errorSoft"},
                                           {"ok", "okSoft"},
                                           {"surface", "ink"}})
            expectReadable(QLatin1String(text), QLatin1String(ground), 4.5);
        for (std::size_t kind = 0; kind < allContentKinds.size(); ++kind)
            expectReadable(QStringLiteral("kindLabels[%1]").arg(kind),
                           QStringLiteral("kindFills[%1]").arg(kind), 4.5);
        // Borders that tell where a control is.
        expectReadable(QStringLiteral("control"), QStringLiteral("surface"), 3);
    }
}

// The colours were chosen together and measured against each other: each is as it was chosen.
TEST(WindowTheme, HasTheColoursThatWereChosen) {
    struct Token {
        const char* name;
        QRgb light;
        QRgb dark;
    };
    static constexpr Token tokens[]{
        {"window", 0xF2F5F5, 0x131819},
        {"side", 0xE8EDED, 0x0D1112},
        {"surface", 0xFFFFFF, 0x1A2021},
        {"sunk", 0xF7F9F9, 0x161C1D},
        {"hover", 0xEDF2F2, 0x222A2B},
        {"line", 0xD3DBDB, 0x313B3C},
        {"lineSoft", 0xE4E9E9, 0x262F30},
        {"control", 0x758280, 0x72807F},
        {"scrim", 0x6B0E1817, 0x9E030606},
        {"ink", 0x15211F, 0xE7EDEC},
        {"text2", 0x465453, 0xB0BCBB},
        {"text3", 0x586665, 0x93A19F},
        {"accent", 0x0B6170, 0x62BFCB},
        {"accentHover", 0x0E7384, 0x7ACDD7},
        {"accentText", 0xFFFFFF, 0x06252A},
        {"accentSoft", 0xDDECEE, 0x163438},
        {"accentLine", 0x9CC4CB, 0x2C6169},
        {"commit", 0x15211F, 0xE7EDEC},
        {"commitHover", 0x2C3B38, 0xFFFFFF},
        {"commitText", 0xFFFFFF, 0x12191A},
        {"warn", 0x7A4E00, 0xE9BD68},
        {"warnSoft", 0xFBF0D6, 0x2E2612},
        {"warnLine", 0xE5CC92, 0x5D4C21},
        {"error", 0x9B2C1F, 0xF2988A},
        {"errorSoft", 0xFBE8E4, 0x351D19},
        {"errorLine", 0xE3B3AA, 0x693830},
        {"ok", 0x1B6443, 0x7CCBA2},
        {"okSoft", 0xE0F0E7, 0x15301F},
        {"mapGround", 0xFFFFFF, 0x101516},
        {"mapEdge", 0xB3BFBE, 0x3E4A4B},
        {"map.frames[0]", 0xDCE3E3, 0x2B3435},
        {"map.frames[1]", 0xE7ECEC, 0x232B2C},
        {"map.frames[2]", 0xF0F3F3, 0x1D2425},
        {"hatch", 0xB9C4C4, 0x3D4849},
        {"hatchGround", 0xE6EBEB, 0x1C2324},
    };
    ComponentScene scene("");
    for (const bool isDark : {false, true}) {
        scene.value(QStringLiteral("Theme.dark = ") + QVariant(isDark).toString());
        for (const auto& token : tokens) {
            const auto shown =
                scene.value(QStringLiteral("Theme.") + QLatin1String(token.name)).value<QColor>().rgba();
            const auto chosen = isDark ? token.dark : token.light;
            const bool isOpaque = chosen <= 0xFFFFFF;
            EXPECT_EQ(shown, isOpaque ? chosen | 0xFF000000 : chosen)
                << token.name << (isDark ? " dark" : "");
        }
        // What the map draws in the colours of screens.
        for (const bool isContrastHigh : {true, false}) {
            scene.value(QStringLiteral("Theme.highContrast = ") + QVariant(isContrastHigh).toString());
            const auto& map = MapColors::of(isDark, isContrastHigh);
            for (const auto& [drawn, name] : {std::pair{map.ink, "ink"},
                                              {map.secondInk, "text2"},
                                              {map.line, "line"},
                                              {map.surface, "surface"},
                                              {map.tickMark, "commitText"}})
                EXPECT_EQ(scene.value(QStringLiteral("Theme.") + QLatin1String(name)).value<QColor>(),
                          QColor::fromRgb(drawn))
                    << name << (isContrastHigh ? " with high contrast" : "");
        }
    }
}

TEST(WindowTheme, EveryIconIsAPathThatDraws) {
    ComponentScene scene("PathIcon { id: icon; width: 32; height: 32; color: 'black' }");
    for (std::size_t kind = 0; kind < allContentKinds.size(); ++kind) {
        scene.value(QStringLiteral("icon.path = Theme.kindIcons[%1]").arg(kind));
        EXPECT_FALSE(scene.value(QStringLiteral("icon.path")).toString().isEmpty());
    }
    scene.value(
        QStringLiteral("{ for (const name in Theme.icons) if (typeof Theme.icons[name] === 'string' && "
                       "name !== 'objectName' && !Theme.icons[name].startsWith('M')) told += name; }"));
    EXPECT_EQ(scene.told().toStdString(), "");
}

TEST(WindowComponents, ARefusedItemCannotBeTicked) {
    ComponentScene scene(
        "Tick { id: free; onToggled: told += 'free ' }"
        "Tick { id: refused; x: 100; refusal: 'Protected: ~/Pictures'; onToggled: told += 'refused ' }");
    scene.click(QStringLiteral("free"));
    scene.click(QStringLiteral("refused"));
    EXPECT_EQ(scene.told(), QStringLiteral("free "));
    EXPECT_TRUE(scene.value(QStringLiteral("free.checked")).toBool());
    scene.value(QStringLiteral("refused.forceActiveFocus()"));
    scene.press(Qt::Key_Space);
    EXPECT_FALSE(scene.value(QStringLiteral("refused.checked")).toBool());
}

TEST(WindowComponents, ButtonsTakeTheMouseAndTheKeysUnlessDisabled) {
    ComponentScene scene("PushButton { id: button; text: 'Go'; onClicked: told += 'x' }"
                         "LinkButton { id: link; x: 200; text: 'There'; onClicked: told += 'l' }");
    scene.click(QStringLiteral("button"));
    scene.press(Qt::Key_Return);
    scene.press(Qt::Key_Space);
    EXPECT_EQ(scene.told(), QStringLiteral("xxx"));
    scene.click(QStringLiteral("link"));
    scene.press(Qt::Key_Enter);
    EXPECT_EQ(scene.told(), QStringLiteral("xxxll"));
    scene.value(QStringLiteral("button.enabled = false"));
    scene.click(QStringLiteral("button"));
    EXPECT_EQ(scene.told(), QStringLiteral("xxxll"));
}

TEST(WindowComponents, KeysClickTheSameOnEveryDesktop) {
    ComponentScene scene(
        "Item { Keys.onPressed: event => { if (event.key !== Qt.Key_Tab) told += 'around ' }\n"
        "  PushButton { id: button; text: 'Go'; onClicked: told += 'click ' }\n"
        "  IconButton { id: icon; onClicked: told += 'click ' }\n"
        "  LinkButton { id: link; onClicked: told += 'click ' }\n"
        "  Chip { id: chip; onClicked: told += 'click ' }\n"
        "  NavItem { id: nav; onClicked: told += 'click ' }\n"
        "  HeadCell { id: head; onClicked: told += 'click ' }\n"
        "  ToggleSwitch { id: toggle; onToggled: told += 'click ' }\n"
        "  MenuEntry { id: entry; onTriggered: told += 'click ' }\n"
        "  PushButton { id: commit; ButtonKeys.enterClicks: false; onClicked: told += 'click ' }\n"
        "  Tick { id: tick; onToggled: told += 'click ' }\n"
        "  KeepRadio { id: keep; autoExclusive: false; onToggled: told += 'click ' } }\n"
        "DropDown { id: box; model: ['one', 'two'] }");
    const auto clicks = [&](const char* id, bool enterClicks) {
        SCOPED_TRACE(id);
        scene.value(QLatin1String(id) + QStringLiteral(".forceActiveFocus(Qt.TabFocusReason)"));
        const std::string onEnter = enterClicks ? "click" : "around";
        for (const auto& [key, expected] : {std::pair{Qt::Key_Space, std::string("click")},
                                            {Qt::Key_Return, onEnter},
                                            {Qt::Key_Enter, onEnter},
                                            {Qt::Key_Select, onEnter}}) {
            SCOPED_TRACE(key);
            scene.press(key);
            EXPECT_EQ(scene.heard().toStdString(), expected);
            if (expected == "click") {
                scene.hold(key);
                EXPECT_EQ(scene.heard().toStdString(), expected) << "once, however long it is held";
            }
            scene.send(QEvent::KeyPress, key, true);
            scene.send(QEvent::KeyRelease, key, true);
            scene.send(QEvent::KeyRelease, key);
            EXPECT_FALSE(scene.heard().contains(QLatin1String("click"))) << "it went down elsewhere";
        }
    };
    for (const auto* id : {"button", "icon", "link", "chip", "nav", "head", "toggle", "entry"})
        clicks(id, true);
    for (const auto* id : {"commit", "tick", "keep"})
        clicks(id, false);

    scene.value(QStringLiteral("box.forceActiveFocus(Qt.TabFocusReason)"));
    for (const auto key : {Qt::Key_Space, Qt::Key_Return}) {
        scene.press(key);
        EXPECT_TRUE(scene.value(QStringLiteral("box.popup.visible")).toBool());
        scene.press(Qt::Key_Down);
        scene.press(key);
        EXPECT_FALSE(scene.value(QStringLiteral("box.popup.visible")).toBool());
    }
}

TEST(WindowComponents, ListsAndChoicesMoveByArrows) {
    ComponentScene scene(
        "ItemTable { id: list; width: 200; height: 108; model: 20; onActivated: index => told += index + ' ';"
        "  delegate: Item { required property int index; width: 200; height: 36 } }"
        "Segmented { id: choice; y: 200; options: ['Newest', 'Oldest']; onChosen: index => current = index "
        "}");
    scene.value(QStringLiteral("list.forceActiveFocus()"));
    for (const auto& [key, row] : {std::pair{Qt::Key_Down, 1},
                                   {Qt::Key_End, 19},
                                   {Qt::Key_Down, 19},
                                   {Qt::Key_PageUp, 17},
                                   {Qt::Key_Home, 0},
                                   {Qt::Key_Up, 0}}) {
        scene.press(key);
        EXPECT_EQ(scene.value(QStringLiteral("list.currentIndex")).toInt(), row);
    }
    scene.press(Qt::Key_Down);
    scene.press(Qt::Key_Return);
    scene.hold(Qt::Key_Enter);
    EXPECT_EQ(scene.told(), QStringLiteral("1 1 "));
    scene.press(Qt::Key_Tab);
    EXPECT_TRUE(scene.value(QStringLiteral("choice.visualFocus")).toBool());
    scene.press(Qt::Key_Right);
    scene.press(Qt::Key_Right);
    EXPECT_EQ(scene.value(QStringLiteral("choice.current")).toInt(), 1);
}

TEST(WindowComponents, EscapeEmptiesAFieldBeforeItDoesAnythingElse) {
    ComponentScene scene("Item { focus: true; Keys.onEscapePressed: told += 'out ';"
                         "  EntryField { id: field; placeholderText: 'Find'; focus: true } }");
    scene.value(QStringLiteral("field.forceActiveFocus()"));
    scene.press(Qt::Key_A);
    EXPECT_EQ(scene.value(QStringLiteral("field.text")).toString(), QStringLiteral("a"));
    scene.press(Qt::Key_Escape);
    EXPECT_EQ(scene.value(QStringLiteral("field.text")).toString(), QString());
    EXPECT_EQ(scene.told(), QString());
    scene.press(Qt::Key_Escape);
    EXPECT_EQ(scene.told(), QStringLiteral("out "));
}

TEST(WindowComponents, WordsThatAreCutAreWholeInATooltip) {
    ComponentScene scene("Badge { id: cut; width: 80; text: 'Protected: system location /usr' }"
                         "Badge { id: whole; y: 200; text: 'Protected' }");
    const auto isSaidWhole = [&] {
        std::vector<QQuickItem*> open{scene.value(QStringLiteral("contentItem")).value<QQuickItem*>()};
        while (!open.empty()) {
            auto* const item = open.back();
            open.pop_back();
            if (item->isVisible() && item->property("text").toString().startsWith(QLatin1String("Protected:"))
                && item->property("truncated").isValid() && !item->property("truncated").toBool())
                return true;
            const auto children = item->childItems();
            open.insert(open.end(), children.begin(), children.end());
        }
        return false;
    };
    scene.hover(QStringLiteral("whole"));
    EXPECT_FALSE(isSaidWhole());
    scene.hover(QStringLiteral("cut"));
    EXPECT_TRUE(QTest::qWaitFor(isSaidWhole));
}

TEST(WindowComponents, PathsBreakAfterSlashesAndNamesOnlyWhereTheyAreLongerThanALine) {
    const QFont font(QStringLiteral("Noto Sans"));
    const QFontMetricsF metrics(font);
    const auto width = metrics.horizontalAdvance(QStringLiteral("/home/mira/film club"));
    const auto linesOf = [&](const QString& path) {
        const auto lines = PathLines::broken(path, font, width).split(QChar(QChar::LineSeparator));
        EXPECT_EQ(lines.join(QString()), path);
        for (const auto& line : lines)
            EXPECT_LE(metrics.horizontalAdvance(line), width) << line.toStdString();
        return lines;
    };
    EXPECT_EQ(linesOf(QStringLiteral("/home/mira")).size(), 1);
    for (const auto& line :
         linesOf(QStringLiteral("/home/mira/film club/a b c/2025-11-22/d e f.mkv")).mid(0, 2))
        EXPECT_TRUE(line.endsWith(QLatin1Char('/'))) << line.toStdString();
    const auto lines = linesOf(QStringLiteral("/home/a-name-that-is-longer-than-any-line-of-these/b"));
    EXPECT_EQ(lines.front(), QStringLiteral("/home/"));
    EXPECT_GE(lines.size(), 4);
    EXPECT_EQ(PathLines::broken(QString(), font, width), QString());
}

TEST(WindowComponents, NamesFromTheDiskAreShownAsTheyAre) {
    ComponentScene scene("ThemedText { id: text; text: '<b>bold</b>.txt' }");
    const auto plain = scene.value(QStringLiteral("text.implicitWidth")).toDouble();
    scene.value(QStringLiteral("text.text = 'bold.txt'"));
    EXPECT_GT(plain, scene.value(QStringLiteral("text.implicitWidth")).toDouble());
}

} // namespace orbel::test
