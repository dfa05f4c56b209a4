import QtQuick
import OstrevoOrbel

/// A state in a few words.
Rectangle {
    id: badge

    enum Tone { Plain, Accent, Ok, Warn, Error }

    property int tone: Badge.Plain
    property string iconPath: ""
    property alias text: label.text

    readonly property var texts: [Theme.text2, Theme.accent, Theme.ok, Theme.warn, Theme.error]
    readonly property var grounds: ["transparent", Theme.accentSoft, Theme.okSoft, Theme.warnSoft, Theme.errorSoft]
    readonly property var edges: [Theme.line, Theme.accentLine, Theme.okSoft, Theme.warnLine, Theme.errorLine]

    border.color: badge.edges[badge.tone]
    color: badge.grounds[badge.tone]
    implicitHeight: Theme.badgeHeight
    implicitWidth: label.implicitWidth + (icon.visible ? icon.width + 5 : 0) + 16
    radius: 4

    Icon {
        id: icon

        anchors.left: parent.left
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        color: badge.texts[badge.tone]
        size: Theme.px(12)
        path: badge.iconPath
        stroke: 1.6
        visible: badge.iconPath !== ""
    }
    ThemedText {
        id: label

        anchors.left: icon.visible ? icon.right : parent.left
        anchors.leftMargin: icon.visible ? 5 : 8
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        color: badge.texts[badge.tone]
        role: ThemedText.Tile
    }
    WholeText {
        shown: label
        text: RefusalAdvice.after(badge.text)
    }
}
