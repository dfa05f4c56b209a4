import QtQuick
import OstrevoOrbel

/// A file or folder that was found by its name.
Item {
    id: row

    required property int index
    required property int node
    required property string name
    required property string folder
    required property int kind
    required property string kindName
    required property string size
    property bool selected: false

    signal chosen()

    Accessible.name: [name, kindName, size].join(", ") + ", " + qsTr("in %1").arg(folder)
    Accessible.role: Accessible.ListItem
    Accessible.selectable: true
    Accessible.selected: selected
    implicitHeight: Theme.rowHeight

    Accessible.onPressAction: row.chosen()

    RowGround {
        anchors.fill: parent
        hovered: pointer.containsMouse
        selected: row.selected
    }
    KindChip {
        id: chip

        anchors.verticalCenter: parent.verticalCenter
        kind: row.kind
        x: 12
    }
    Column {
        anchors.left: chip.right
        anchors.leftMargin: 12
        anchors.right: bytes.left
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter

        ThemedText {
            elide: Text.ElideMiddle
            text: row.name
            width: parent.width
        }
        ThemedText {
            color: Theme.text2
            elide: Text.ElideMiddle
            role: ThemedText.Small
            text: row.folder
            width: parent.width
        }
    }
    ThemedText {
        id: bytes

        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideNone
        text: row.size
    }
    MouseArea {
        id: pointer

        anchors.fill: parent
        hoverEnabled: true

        onClicked: row.chosen()
    }
}
