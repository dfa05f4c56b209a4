import QtQuick
import OstrevoOrbel

/// What became of one item of a batch.
Item {
    id: row

    required property string title
    required property string path
    required property int kind
    required property string size
    required property string note
    required property string stage
    property bool last: false

    readonly property bool skipped: stage === "skipped"
    readonly property string words: skipped ? note : stage === "moved" ? qsTr("In the Trash")
        : stage === "putBack" ? qsTr("Put back") : qsTr("Not put back")

    Accessible.description: skipped ? RefusalAdvice.on(note) : note
    Accessible.name: [title, path, words].concat(size === "" ? [] : [size]).join(", ")
    Accessible.role: Accessible.ListItem
    implicitHeight: Math.max(Theme.rowHeight, column.height + 12)

    RowGround {
        anchors.fill: parent
        separated: !row.last
    }
    KindChip {
        id: chip

        anchors.verticalCenter: parent.verticalCenter
        kind: row.kind
        x: 16
    }
    Column {
        id: column

        anchors.left: chip.right
        anchors.leftMargin: 14
        anchors.right: badge.left
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter

        ThemedText {
            elide: Text.ElideMiddle
            text: row.title
            width: parent.width
        }
        ThemedText {
            color: Theme.text2
            elide: Text.ElideMiddle
            role: ThemedText.Small
            text: row.path
            width: parent.width
        }
        ThemedText {
            color: row.skipped ? Theme.text2 : Theme.warn
            role: ThemedText.Small
            text: row.skipped ? RefusalAdvice.on(row.note) : row.note
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
    Badge {
        id: badge

        anchors.right: bytes.left
        anchors.rightMargin: row.skipped ? 0 : 14
        anchors.verticalCenter: parent.verticalCenter
        iconPath: row.stage === "moved" ? Theme.icons.trash : row.stage === "putBack" ? Theme.icons.putBack
            : Theme.icons.warn
        text: row.words
        tone: row.stage === "moved" ? Badge.Accent : row.stage === "putBack" ? Badge.Ok : Badge.Warn
        width: Math.min(implicitWidth, row.width * 0.6)
    }
    ThemedText {
        id: bytes

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideNone
        horizontalAlignment: Text.AlignRight
        text: row.size
        width: row.skipped ? 0 : Math.max(implicitWidth, Theme.px(92))
    }
}
