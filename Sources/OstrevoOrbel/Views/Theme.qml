pragma Singleton

import QtQuick
import OstrevoOrbel

/// The look: every colour, size and duration that the screens use. Lengths are device-independent pixels; those that
/// hold text go through px(), so that they grow with the desktop's font scale.
QtObject {
    id: theme

    /// Whether the dark colours are shown. Set by the window, from the settings and the desktop.
    property bool dark: false
    /// Whether everything happens at once. Set by the window, from the desktop, like the next.
    property bool reducedMotion: false
    /// Whether lines and text stand out more.
    property bool highContrast: false
    /// Whether the window reads from the right to the left. The map and the names on it do not turn.
    readonly property bool mirrored: Application.layoutDirection === Qt.RightToLeft
    /// The desktop’s font scale: 1 at 96 dots per inch, which macOS calls 72.
    property real fontScale: Math.round(100 * scaledProbe.height / plainProbe.height) / 100

    readonly property FontMetrics plainProbe: FontMetrics {
        font.family: theme.family
        font.pixelSize: 100
    }
    readonly property FontMetrics scaledProbe: FontMetrics {
        font.family: theme.family
        font.pointSize: Qt.platform.os === "osx" ? 100 : 75
    }

    /// A length that holds text, at the font scale.
    function px(length: real): int {
        return Math.round(length * fontScale)
    }

    /// Where an item of this width stands that is so far from the edge at which reading begins.
    function along(start: real, width: real, room: real): real {
        return mirrored ? room - width - start : start;
    }

    /// The colour of a control that is held down.
    function pressed(rest: color): color {
        return dark ? Qt.lighter(rest, 1.08) : Qt.darker(rest, 1.08)
    }

    // Grounds and lines.
    readonly property color window: dark ? "#131819" : "#F2F5F5"
    readonly property color side: dark ? "#0D1112" : "#E8EDED"
    readonly property color surface: dark ? "#1A2021" : "#FFFFFF"
    readonly property color sunk: dark ? "#161C1D" : "#F7F9F9"
    readonly property color hover: dark ? "#222A2B" : "#EDF2F2"
    readonly property color line: highContrast ? control : dark ? "#313B3C" : "#D3DBDB"
    readonly property color lineSoft: highContrast ? control : dark ? "#262F30" : "#E4E9E9"
    /// The borders of controls: at least 3:1 on every ground.
    readonly property color control: highContrast ? ink : dark ? "#72807F" : "#758280"
    readonly property color scrim: dark ? "#9E030606" : "#6B0E1817"

    // Text.
    readonly property color ink: highContrast ? dark ? "#FFFFFF" : "#000000" : dark ? "#E7EDEC" : "#15211F"
    readonly property color text2: highContrast ? ink : dark ? "#B0BCBB" : "#465453"
    readonly property color text3: highContrast ? ink : dark ? "#93A19F" : "#586665"

    // Measure, select, focus, put back.
    readonly property color accent: dark ? "#62BFCB" : "#0B6170"
    readonly property color accentHover: dark ? "#7ACDD7" : "#0E7384"
    readonly property color accentText: dark ? "#06252A" : "#FFFFFF"
    readonly property color accentSoft: dark ? "#163438" : "#DDECEE"
    readonly property color accentLine: highContrast ? accent : dark ? "#2C6169" : "#9CC4CB"

    // What will change the disk: ticks and the buttons that lead to a move.
    readonly property color commit: dark ? "#E7EDEC" : "#15211F"
    readonly property color commitHover: dark ? "#FFFFFF" : "#2C3B38"
    readonly property color commitText: dark ? "#12191A" : "#FFFFFF"

    readonly property color warn: dark ? "#E9BD68" : "#7A4E00"
    readonly property color warnSoft: dark ? "#2E2612" : "#FBF0D6"
    readonly property color warnLine: highContrast ? warn : dark ? "#5D4C21" : "#E5CC92"
    readonly property color error: dark ? "#F2988A" : "#9B2C1F"
    readonly property color errorSoft: dark ? "#351D19" : "#FBE8E4"
    readonly property color errorLine: highContrast ? error : dark ? "#693830" : "#E3B3AA"
    readonly property color ok: dark ? "#7CCBA2" : "#1B6443"
    readonly property color okSoft: dark ? "#15301F" : "#E0F0E7"

    // The map.
    readonly property var map: MapPalette.colors(dark, highContrast)
    readonly property color mapGround: map.ground
    readonly property color mapEdge: map.edge
    readonly property color hatch: map.hatch
    readonly property color hatchGround: map.hatchGround

    // Kinds of content, by the raw value of a kind. The fills stay apart for the colour-blind; a glyph or a name
    // always goes with them.
    readonly property var kindFills: map.fills
    readonly property var kindLabels: map.labels
    readonly property var kindIcons: MapPalette.glyphs

    readonly property IconPaths icons: IconPaths {
        mirrored: theme.mirrored
    }

    // Type. The font is taken from the system where it is installed, else from the program.
    readonly property bool fontInstalled: Qt.fontFamilies().includes("Noto Sans")
    readonly property FontLoader regularFace: FontLoader {
        source: theme.fontInstalled ? "" : "Fonts/NotoSans-Regular.ttf"
    }
    readonly property FontLoader boldFace: FontLoader {
        source: theme.fontInstalled ? "" : "Fonts/NotoSans-Bold.ttf"
    }
    readonly property string family: fontInstalled || regularFace.status === FontLoader.Ready
        ? "Noto Sans" : Application.font.family

    readonly property int tileSize: px(11)
    readonly property int tileLine: px(14)
    readonly property int smallSize: px(12)
    readonly property int smallLine: px(16)
    readonly property int bodySize: px(13)
    readonly property int bodyLine: px(18)
    readonly property int leadSize: px(15)
    readonly property int leadLine: px(24)
    readonly property int titleSize: px(20)
    readonly property int titleLine: px(28)
    readonly property int figureSize: px(28)
    readonly property int figureLine: px(36)
    readonly property int displaySize: px(34)
    readonly property int displayLine: px(40)

    // Spacing.
    readonly property int pagePadding: 24
    readonly property int pagePaddingNarrow: 16
    readonly property int cardGap: 16
    readonly property int cardPadding: 16
    readonly property int ledgerPadding: 24

    // Radii.
    readonly property int tickRadius: 4
    readonly property int menuItemRadius: 5
    readonly property int controlRadius: 6
    readonly property int cardRadius: 8
    readonly property int sheetRadius: 12

    // Heights.
    readonly property int controlHeight: px(32)
    readonly property int smallButtonHeight: px(28)
    readonly property int sheetButtonHeight: px(36)
    readonly property int startButtonHeight: px(40)
    readonly property int badgeHeight: px(20)
    readonly property int navItemHeight: px(36)
    readonly property int menuItemHeight: px(30)
    readonly property int tableHeadHeight: px(32)
    readonly property int rowHeight: px(48)
    readonly property int compactRowHeight: px(36)
    readonly property int copyRowHeight: px(40)
    readonly property int journalRowHeight: px(44)
    readonly property int tallRowHeight: px(52)
    readonly property int groupHeadHeight: px(44)
    readonly property int journalHeadHeight: px(52)
    readonly property int breadcrumbBarHeight: px(44)
    readonly property int filterBarHeight: px(56)
    readonly property int legendHeight: px(40)
    readonly property int tickBarHeight: px(56)
    readonly property int bannerHeight: px(40)
    readonly property int stripHeight: px(44)
    readonly property int toolbarHeight: px(60)
    readonly property int statusLineHeight: px(28)
    readonly property int linkCardHeight: px(68)

    // Widths.
    readonly property int tick: px(16)
    readonly property int tickCell: px(40)
    readonly property int icon: px(16)
    readonly property int sidebarWidth: px(212)
    readonly property int railWidth: px(56)
    readonly property int menuWidth: px(256)
    readonly property int sheetWidth: px(760)
    readonly property int settingsWidth: px(720)
    readonly property int contentWidth: px(1440)
    readonly property int tableWidth: px(1760)
    /// Below these window sizes the frame and the screens fold.
    readonly property int narrowBelow: px(1000)
    readonly property int middlingBelow: px(1280)
    readonly property int shortBelow: px(640)

    // Motion, in milliseconds.
    readonly property int zoomTime: reducedMotion ? 0 : 180
    readonly property int sheetTime: reducedMotion ? 0 : 120
    readonly property int tickBarTime: reducedMotion ? 0 : 120
    readonly property int tickTime: reducedMotion ? 0 : 80
    readonly property int pulseTime: reducedMotion ? 0 : 1600
    readonly property int hintDelay: 600
    readonly property int easing: Easing.OutCubic
}
