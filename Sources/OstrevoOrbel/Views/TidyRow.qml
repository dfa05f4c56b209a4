import QtQuick
import OstrevoOrbel

/// A row of a tidy list: its path over what is to be known of it, and a badge.
Item {
    id: row

    required property int index
    required property string path
    required property string detail
    required property string badge
    required property bool warn
    required property bool ticked
    required property string refusal
    required property string words
    /// Of the list, for the names of its parts.
    property string name: ""
    property string iconPath: ""
    property bool selected: false
    property bool focused: false

    readonly property alias hovered: pointer.containsMouse

    signal chosen()
    signal tickWanted()
    signal menuWanted(x: real, y: real)

    Accessible.checkable: refusal === ""
    Accessible.checked: ticked
    Accessible.description: refusal
    Accessible.name: words
    Accessible.role: Accessible.Row
    Accessible.selectable: true
    Accessible.selected: selected
    height: Theme.tallRowHeight

    Accessible.onPressAction: row.chosen()
    Accessible.onToggleAction: row.tickWanted()

    RowGround {
        anchors.fill: parent
        focused: row.focused
        hovered: row.hovered
        selected: row.selected
    }
    Tick {
        id: box

        Accessible.name: qsTr("Tick %1").arg(row.path)
        anchors.verticalCenter: parent.verticalCenter
        checkState: row.ticked ? Qt.Checked : Qt.Unchecked
        focusPolicy: Qt.NoFocus
        height: parent.height
        nextCheckState: () => row.ticked ? Qt.Checked : Qt.Unchecked
        objectName: [row.name, "tick", row.index].join(".")
        refusal: row.refusal
        x: 4
        z: 1

        onClicked: row.tickWanted()
    }
    KindChip {
        id: chip

        anchors.left: box.right
        anchors.verticalCenter: parent.verticalCenter
        kind: 0
        visible: row.iconPath === Theme.icons.folders
    }
    PathIcon {
        anchors.centerIn: chip
        color: Theme.text2
        height: Theme.icon
        path: row.iconPath
        visible: !chip.visible
        width: height
    }
    Column {
        anchors.left: chip.right
        anchors.leftMargin: 12
        anchors.right: badge.visible ? badge.left : parent.right
        anchors.rightMargin: badge.visible ? 12 : Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter

        ThemedText {
            color: row.refusal !== "" ? Theme.text2 : Theme.ink
            elide: Text.ElideMiddle
            text: row.path
            width: parent.width
        }
        ThemedText {
            color: Theme.text2
            role: ThemedText.Small
            text: row.detail
            width: parent.width
        }
    }
    Badge {
        id: badge

        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        text: row.badge
        tone: row.warn ? Badge.Warn : Badge.Plain
        visible: row.badge !== ""
        width: Math.min(implicitWidth, parent.width * 0.45)
    }
    MouseArea {
        id: pointer

        acceptedButtons: Qt.LeftButton | Qt.RightButton
        anchors.fill: parent
        hoverEnabled: true

        onPressed: mouse => {
            row.chosen();
            if (mouse.button === Qt.RightButton)
                row.menuWanted(mouse.x, mouse.y);
        }
    }
}
