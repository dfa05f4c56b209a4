import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A glyph that is a button, with no ground of its own. Its text is the tooltip and the accessible name.
T.AbstractButton {
    id: button

    property string iconPath: ""

    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitHeight: Theme.smallButtonHeight
    implicitWidth: Theme.smallButtonHeight

    ButtonKeys.enterClicks: true

    background: Rectangle {
        color: button.down ? Theme.pressed(Theme.hover) : button.hovered ? Theme.hover : "transparent"
        radius: Theme.controlRadius

        FocusRing {
            visible: button.visualFocus
        }
    }
    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            color: button.enabled ? Theme.ink : Theme.text3
            opacity: button.enabled ? 1 : 0.6
            path: button.iconPath
        }
    }

    Hint {
        text: button.text
        visible: button.hovered || button.visualFocus
    }
}
