import QtQuick
import OstrevoOrbel

/// An application in the list of all.
Item {
    id: row

    required property int index
    required property string name
    required property string identity
    required property string picture
    required property string initial
    required property string source
    required property string size
    property bool selected: false
    property bool focused: false
    property int padding: 16

    signal chosen()
    signal opened()
    signal menuWanted(x: real, y: real)

    Accessible.name: [name, source, size].join(", ")
    Accessible.role: Accessible.ListItem
    Accessible.description: identity
    Accessible.selectable: true
    Accessible.selected: selected
    implicitHeight: Theme.rowHeight

    Accessible.onPressAction: row.chosen()

    RowGround {
        anchors.fill: parent
        focused: row.focused
        hovered: pointer.containsMouse
        selected: row.selected
    }
    AppIcon {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        initial: row.initial
        picture: row.picture
        x: row.padding
    }
    Column {
        anchors.left: icon.right
        anchors.leftMargin: 12
        anchors.right: badge.left
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter

        ThemedText {
            text: row.name
            width: parent.width
        }
        ThemedText {
            color: Theme.text2
            elide: Text.ElideMiddle
            role: ThemedText.Small
            text: row.identity
            width: parent.width
        }
    }
    Badge {
        id: badge

        anchors.right: bytes.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        text: row.source
        visible: text !== ""
        width: Math.min(implicitWidth, row.width * 0.34)
    }
    ThemedText {
        id: bytes

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideNone
        horizontalAlignment: Text.AlignRight
        text: row.size
        width: Math.max(implicitWidth, Theme.px(62))
    }
    MouseArea {
        id: pointer

        acceptedButtons: Qt.LeftButton | Qt.RightButton
        anchors.fill: parent
        hoverEnabled: true

        onClicked: mouse => {
            if (mouse.button === Qt.LeftButton)
                row.opened();
        }
        onPressed: mouse => {
            row.chosen();
            if (mouse.button === Qt.RightButton)
                row.menuWanted(mouse.x, mouse.y);
        }
    }
}
