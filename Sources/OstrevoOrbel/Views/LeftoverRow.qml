import QtQuick
import OstrevoOrbel

/// Something that goes with an application, and why.
Item {
    id: row

    required property int index
    required property string title
    required property string detail
    required property int kind
    required property string size
    required property int tick
    required property string refusal
    required property string note
    required property bool listed
    property bool selected: false
    property bool focused: false
    property bool narrow: false
    property int padding: 24

    readonly property string remark: refusal || note
    /// Beside the size where there is room, else in place of the second line.
    readonly property bool showsBadge: listed && remark !== "" && !narrow

    signal chosen()
    signal menuWanted(x: real, y: real)
    signal tickWanted()

    Accessible.name: listed ? [title, size, detail].filter(text => text !== "").join(", ") : title
    Accessible.role: Accessible.ListItem
    Accessible.checkable: listed && refusal === ""
    Accessible.checked: tick === Qt.Checked
    Accessible.description: [refusal, note].filter(text => text !== "").join(". ")
    Accessible.selectable: listed
    Accessible.selected: selected
    implicitHeight: Theme.tallRowHeight

    Accessible.onPressAction: row.chosen()

    RowGround {
        anchors.fill: parent
        focused: row.focused
        hovered: pointer.containsMouse && row.listed
        selected: row.selected && row.listed
    }
    Tick {
        id: box

        anchors.verticalCenter: parent.verticalCenter
        checkState: row.tick
        focusPolicy: Qt.NoFocus
        height: parent.height
        nextCheckState: () => row.tick
        objectName: "uninstall.tick." + row.title
        refusal: row.refusal
        visible: row.listed
        x: row.padding - 12
        z: 1

        Accessible.name: row.title

        onClicked: row.tickWanted()
    }
    KindChip {
        id: chip

        anchors.left: box.right
        anchors.leftMargin: 1
        anchors.verticalCenter: parent.verticalCenter
        kind: row.kind
        visible: row.listed
    }
    Column {
        anchors.left: row.listed ? chip.right : parent.left
        anchors.leftMargin: row.listed ? 14 : row.padding
        anchors.right: row.showsBadge ? badge.left : bytes.left
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter

        ThemedText {
            color: row.refusal !== "" || !row.listed ? Theme.text2 : Theme.ink
            elide: Text.ElideMiddle
            text: row.title
            width: parent.width
        }
        ThemedText {
            color: Theme.text2
            elide: Text.ElideMiddle
            role: ThemedText.Small
            text: !row.narrow ? row.detail : row.refusal !== "" ? row.refusal
                : [row.note, row.detail].filter(words => words !== "").join(" · ")
            visible: text !== ""
            width: parent.width
        }
    }
    Badge {
        id: badge

        anchors.right: bytes.left
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        iconPath: row.refusal !== "" ? Theme.icons.lock : Theme.icons.info
        text: row.remark
        visible: row.showsBadge
        width: visible ? Math.min(implicitWidth, row.width * 0.42) : 0
    }
    ThemedText {
        id: bytes

        anchors.right: parent.right
        anchors.rightMargin: row.padding
        anchors.verticalCenter: parent.verticalCenter
        color: row.refusal !== "" ? Theme.text2 : Theme.ink
        elide: Text.ElideNone
        horizontalAlignment: Text.AlignRight
        text: row.size
        visible: row.listed
        width: Math.max(implicitWidth, Theme.px(62))
    }
    MouseArea {
        id: pointer

        acceptedButtons: Qt.LeftButton | Qt.RightButton
        anchors.fill: parent
        hoverEnabled: true

        onPressed: mouse => {
            row.chosen();
            if (mouse.button === Qt.RightButton && row.listed)
                row.menuWanted(mouse.x, mouse.y);
        }
    }
}
