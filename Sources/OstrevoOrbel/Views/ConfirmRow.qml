import QtQuick
import OstrevoOrbel

/// An item of the confirmation with its whole path, or, while it moves, with what became of it.
Item {
    id: row

    required property string path
    required property int kind
    required property string kindName
    required property string entries
    required property string size
    required property string note
    // Not `state`, which every item has.
    required property string stage
    property bool focused: false
    property bool moving: false
    property bool narrow: false

    Accessible.description: note
    Accessible.name: moving ? [path, stageWords.text || badge.text, size].join(", ")
        : [path, kindName, entries, size].join(", ")
    Accessible.role: Accessible.ListItem
    implicitHeight: Math.max(Theme.px(moving ? 48 : 52), column.height + 24)

    RowGround {
        anchors.fill: parent
        focused: row.focused
    }
    KindChip {
        id: chip

        anchors.left: parent.left
        anchors.leftMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        kind: row.kind
    }
    Column {
        id: column

        anchors.left: chip.right
        anchors.leftMargin: 14
        anchors.right: kindLabel.left
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        ThemedText {
            color: row.moving && row.stage === "waiting" ? Theme.text2 : Theme.ink
            text: row.path
            width: parent.width
            wrapMode: Text.WrapAnywhere
        }
        Badge {
            iconPath: Theme.icons.warn
            text: row.note
            tone: Badge.Warn
            visible: row.note !== "" && !row.moving
            width: Math.min(implicitWidth, parent.width)
        }
    }
    Item {
        id: kindLabel

        anchors.right: count.left
        anchors.rightMargin: Theme.px(14)
        height: parent.height
        width: row.moving ? Theme.px(120) : row.narrow ? 0 : Theme.px(110)

        ThemedText {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text2
            text: row.kindName
            visible: !row.moving && !row.narrow
            width: parent.width
        }
        ThemedText {
            id: stageWords

            anchors.verticalCenter: parent.verticalCenter
            bold: row.stage === "checking"
            color: row.stage === "checking" ? Theme.ink : Theme.text3
            role: ThemedText.Small
            text: row.stage === "checking" ? qsTr("Checking…") : row.stage === "waiting" ? qsTr("Waiting") : ""
            visible: row.moving
            width: parent.width
        }
        Badge {
            id: badge

            anchors.verticalCenter: parent.verticalCenter
            iconPath: row.stage === "moved" ? Theme.icons.trash : Theme.icons.warn
            text: row.stage === "moved" ? qsTr("In the Trash") : qsTr("Skipped")
            tone: row.stage === "moved" ? Badge.Accent : Badge.Warn
            visible: row.moving && (row.stage === "moved" || row.stage === "skipped")
        }
    }
    ThemedText {
        id: count

        anchors.right: bytes.left
        anchors.rightMargin: Theme.px(14)
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.text2
        elide: Text.ElideNone
        horizontalAlignment: Text.AlignRight
        text: row.moving ? "" : row.entries
        width: row.moving ? 0 : Math.max(implicitWidth, Theme.px(72))
    }
    ThemedText {
        id: bytes

        anchors.right: parent.right
        anchors.rightMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideNone
        horizontalAlignment: Text.AlignRight
        text: row.size
        width: Math.max(implicitWidth, Theme.px(72))
    }
}
