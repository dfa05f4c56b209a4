import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A filter: what it is about, and its value in bold once it is set. Opens a menu, or goes away where it is closable.
T.AbstractButton {
    id: chip

    property string value: ""
    /// How wide the value may be; 0 for as wide as it is.
    property int mostValue: 0
    /// Whether it narrows what is shown.
    property bool set: false
    property bool closable: false
    /// A kind's raw value to show as a glyph; -1 for none.
    property int kind: -1

    Spoken.name: [text, value].filter(word => word !== "").join(" ")
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitHeight: Theme.controlHeight
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    leftPadding: 12
    rightPadding: 12

    ButtonKeys.enterClicks: true

    background: Rectangle {
        readonly property color ground: chip.set ? Theme.accentSoft : chip.hovered ? Theme.hover : Theme.surface

        border.color: chip.set ? Theme.accent : Theme.control
        color: chip.down ? Theme.pressed(ground) : ground
        radius: height / 2

        FocusRing {
            controlRadius: parent.radius
            visible: chip.visualFocus
        }
    }
    contentItem: Row {
        spacing: 6

        KindChip {
            anchors.verticalCenter: parent.verticalCenter
            kind: Math.max(0, chip.kind)
            size: Theme.px(18)
            visible: chip.kind >= 0
        }
        ThemedText {
            anchors.verticalCenter: parent.verticalCenter
            color: chip.value === "" ? Theme.ink : Theme.text2
            text: chip.text
            visible: text !== ""
        }
        ThemedText {
            anchors.verticalCenter: parent.verticalCenter
            bold: chip.set
            text: chip.value
            visible: text !== ""
            width: chip.mostValue > 0 ? Math.min(implicitWidth, chip.mostValue) : implicitWidth
        }
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            size: Theme.px(12)
            path: chip.closable ? Theme.icons.close : Theme.icons.down
            stroke: 1.8
        }
    }
}
