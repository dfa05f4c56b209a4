import QtQuick
import OstrevoOrbel

/// A row of the map's list.
Item {
    id: row

    required property int node
    required property string name
    required property int kind
    required property string kindName
    required property string size
    required property real fraction
    required property string share
    property bool selected: false
    property bool focused: false

    signal chosen()
    signal opened()
    signal menuWanted(x: real, y: real)

    Accessible.name: [name, kindName, size, share].join(", ")
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: selected
    implicitHeight: Theme.px(37)

    Accessible.onPressAction: row.chosen()

    RowGround {
        anchors.fill: parent
        focused: row.focused
        hovered: pointer.containsMouse
        selected: row.selected
    }
    KindChip {
        id: chip

        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        kind: row.kind
    }
    ThemedText {
        id: label

        anchors.bottom: bar.top
        anchors.bottomMargin: 2
        anchors.left: chip.right
        anchors.leftMargin: 10
        anchors.right: bytes.left
        anchors.rightMargin: 14
        elide: Text.ElideMiddle
        text: row.name
    }
    SizeBar {
        id: bar

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 7
        anchors.left: label.left
        anchors.right: label.right
        fill: Theme.control
        height: 3
        share: row.fraction
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

        onDoubleClicked: mouse => {
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
