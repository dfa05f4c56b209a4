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
    required property int tick
    required property string refusal
    required property string note
    property bool selected: false
    property bool focused: false

    signal chosen()
    signal opened()
    signal menuWanted(x: real, y: real)
    signal tickWanted()

    Accessible.name: [name, kindName, size, share].join(", ")
    Accessible.role: Accessible.ListItem
    Accessible.checkable: refusal === ""
    Accessible.checked: tick === Qt.Checked
    Accessible.description: [refusal, note].filter(text => text !== "").join(". ")
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
    Tick {
        id: box

        anchors.verticalCenter: parent.verticalCenter
        checkState: row.tick
        focusPolicy: Qt.NoFocus
        height: parent.height
        nextCheckState: () => row.tick
        objectName: "map.tick." + row.name
        refusal: row.refusal
        x: 4
        z: 1

        Accessible.name: row.name

        onClicked: row.tickWanted()
    }
    KindChip {
        id: chip

        anchors.left: box.right
        anchors.leftMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        kind: row.kind
    }
    ThemedText {
        id: label

        anchors.bottom: bar.top
        anchors.bottomMargin: 2
        anchors.left: chip.right
        anchors.leftMargin: 10
        anchors.right: warning.visible ? warning.left : bytes.left
        anchors.rightMargin: warning.visible ? 8 : 14
        elide: Text.ElideMiddle
        text: row.name
    }
    SizeBar {
        id: bar

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 7
        anchors.left: label.left
        anchors.right: bytes.left
        anchors.rightMargin: 14
        fill: Theme.control
        height: 3
        share: row.fraction
    }
    // Its words have room in the inspector.
    PathIcon {
        id: warning

        anchors.right: bytes.left
        anchors.rightMargin: 14
        anchors.verticalCenter: label.verticalCenter
        color: Theme.warn
        height: Theme.px(14)
        path: Theme.icons.warn
        visible: row.note !== ""
        width: height
        z: 1

        HoverHandler {
            id: over
        }
        Hint {
            text: row.note
            visible: over.hovered
        }
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
