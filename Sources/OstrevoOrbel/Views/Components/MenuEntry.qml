import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// One thing that a menu offers.
T.MenuItem {
    id: entry

    property string iconPath: ""
    property string keys: ""
    /// Why it cannot be chosen; empty when it can.
    property string refusal: ""

    Accessible.description: refusal
    ButtonKeys.enterClicks: true
    enabled: refusal === ""
    height: visible ? implicitHeight : 0
    implicitHeight: Theme.menuItemHeight
    implicitWidth: Theme.menuWidth - 10
    leftPadding: 10
    rightPadding: 10

    background: Rectangle {
        color: entry.highlighted ? Theme.accentSoft : "transparent"
        radius: Theme.menuItemRadius
    }
    contentItem: Item {
        Icon {
            id: icon

            anchors.verticalCenter: parent.verticalCenter
            color: entry.enabled ? Theme.ink : Theme.text3
            path: !entry.enabled && entry.refusal !== "" ? Theme.icons.lock
                : entry.checkable ? entry.checked ? Theme.icons.check : "" : entry.iconPath
            visible: entry.checkable || entry.iconPath !== "" || entry.refusal !== ""
        }
        ThemedText {
            anchors.left: icon.visible ? icon.right : parent.left
            anchors.leftMargin: icon.visible ? 10 : 0
            anchors.right: shortcut.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            color: entry.enabled ? Theme.ink : Theme.text3
            text: entry.text
        }
        SmallText {
            id: shortcut

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text3
            text: entry.keys
        }
    }

    HoverHandler {
        id: pointer
    }
    Hint {
        text: entry.refusal
        visible: entry.refusal !== "" && pointer.hovered
    }
}
