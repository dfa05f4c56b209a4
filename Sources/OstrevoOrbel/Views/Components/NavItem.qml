import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A way to a screen in the sidebar; on the narrow rail only its icon shows.
T.AbstractButton {
    id: nav

    property string iconPath: ""
    property string count: ""
    property bool current: false
    property bool rail: false

    Accessible.description: count
    Spoken.role: Accessible.PageTab
    checked: current
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    implicitHeight: rail ? Theme.px(40) : Theme.navItemHeight
    leftPadding: rail ? 0 : 8
    rightPadding: rail ? 0 : 8

    ButtonKeys.enterClicks: true

    background: Rectangle {
        border.color: nav.current ? Theme.line : "transparent"
        color: nav.current ? Theme.surface : nav.down ? Theme.pressed(Theme.hover)
            : nav.hovered ? Theme.hover : "transparent"
        radius: Theme.controlRadius

        FocusRing {
            anchors.margins: -3
            visible: nav.visualFocus
        }
    }
    contentItem: Item {
        Icon {
            id: icon

            anchors.verticalCenter: parent.verticalCenter
            color: nav.current ? Theme.accent : Theme.text2
            path: nav.iconPath
            // An anchor that is taken off would leave it where it was.
            x: nav.rail ? Math.round((parent.width - width) / 2) : Theme.along(0, width, parent.width)
        }
        ThemedText {
            anchors.left: icon.right
            anchors.leftMargin: 10
            anchors.right: countText.left
            anchors.rightMargin: 6
            anchors.verticalCenter: parent.verticalCenter
            bold: nav.current
            color: nav.current ? Theme.ink : Theme.text2
            text: nav.text
            visible: !nav.rail
        }
        SmallText {
            id: countText

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            bold: nav.current
            color: Theme.text3
            text: nav.count
            visible: !nav.rail
        }
    }

    Hint {
        text: nav.text
        visible: nav.rail && (nav.hovered || nav.visualFocus)
        x: Theme.along(nav.width + 6, width, nav.width)
        y: Math.round((nav.height - height) / 2)
    }
}
