import QtQuick
import OstrevoOrbel

/// One item of a session: what it was, what became of it, and its way back.
Item {
    id: item

    required property string title
    required property string detail
    required property string reason
    required property string size
    /// Empty until the disk has been asked.
    required property string stage
    required property int kind
    required property bool possible
    required property bool ready
    required property bool narrow

    readonly property var words: ({ inTrash: qsTr("In the Trash"), putBack: qsTr("Put back"), gone: qsTr("Gone"),
        occupied: qsTr("Place occupied"), skipped: qsTr("Skipped") })
    readonly property var glyphs: ({ inTrash: Theme.icons.trash, putBack: Theme.icons.putBack,
        gone: Theme.icons.close, occupied: Theme.icons.warn, skipped: Theme.icons.info })
    readonly property var tones: ({ inTrash: Badge.Accent, putBack: Badge.Ok, occupied: Badge.Warn })
    /// An item that is in the Trash and cannot go back shows its button all the same, with the reason beside it.
    readonly property bool offers: stage === "inTrash" || stage === "occupied"

    signal putBackWanted()

    Accessible.description: reason
    Accessible.name: [title, size, detail, words[stage] ?? ""].filter(words => words !== "").join(", ")
    Accessible.role: Accessible.ListItem
    implicitHeight: Math.max(Theme.journalRowHeight, column.height + 8)

    KindChip {
        id: chip

        anchors.verticalCenter: parent.verticalCenter
        kind: item.kind
        x: 16
    }
    Column {
        id: column

        anchors.left: chip.right
        anchors.leftMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: item.narrow || reasonText.text === "" ? bytes.x - x - 12 : (bytes.x - x) / 2 - 12

        ThemedText {
            elide: Text.ElideMiddle
            text: item.title
            width: parent.width
        }
        ThemedText {
            color: Theme.text2
            elide: Text.ElideMiddle
            role: ThemedText.Small
            text: item.detail
            width: parent.width
        }
        ThemedText {
            color: Theme.text2
            role: ThemedText.Small
            text: item.reason
            visible: item.narrow && item.reason !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
    }
    ThemedText {
        id: reasonText

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.text2
        maximumLineCount: 2
        objectName: item.objectName + ".reason"
        role: ThemedText.Small
        text: item.reason
        visible: !item.narrow
        width: bytes.x - x - 12
        wrapMode: Text.Wrap
        x: column.x + (bytes.x - column.x) / 2
    }
    ThemedText {
        id: bytes

        anchors.right: stateCell.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideNone
        horizontalAlignment: Text.AlignRight
        text: item.size
        width: Math.max(implicitWidth, Theme.px(72))
    }
    Item {
        id: stateCell

        anchors.right: buttonCell.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        height: badge.height
        width: Theme.px(item.narrow ? 120 : 168)

        Badge {
            id: badge

            iconPath: item.glyphs[item.stage] ?? ""
            objectName: item.objectName + ".state"
            text: item.words[item.stage] ?? ""
            tone: item.tones[item.stage] ?? Badge.Plain
            visible: item.stage !== ""
            width: Math.min(implicitWidth, parent.width)
        }
    }
    Item {
        id: buttonCell

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        height: button.height
        width: Theme.px(76)

        PushButton {
            id: button

            anchors.right: parent.right
            controlHeight: Theme.smallButtonHeight
            enabled: item.possible && item.ready
            focusPolicy: Qt.NoFocus
            objectName: item.objectName + ".putBack"
            text: qsTr("Put Back")
            visible: item.offers

            onClicked: item.putBackWanted()
        }
    }
}
