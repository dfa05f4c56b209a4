import QtQuick
import OstrevoOrbel

/// The head of a session's card: when it was, what it moved, and the way back for all of it; or an item in it: what it
/// was, what became of it, and its way back.
ItemRow {
    id: row

    required property bool ready
    required property bool narrow
    required property int padding

    readonly property bool folded: model.folded
    readonly property bool possible: model.possible
    /// Of an item; empty until the disk has been asked.
    readonly property string stage: head ? "" : model.stage
    readonly property string reason: model.reason ?? ""
    readonly property string remark: model.remark ?? ""
    readonly property var stages: ({
        inTrash: { words: qsTr("In the Trash"), icon: Theme.icons.trash, tone: Badge.Accent },
        putBack: { words: qsTr("Put back"), icon: Theme.icons.putBack, tone: Badge.Ok },
        gone: { words: qsTr("Gone"), icon: Theme.icons.close, tone: Badge.Plain },
        occupied: { words: qsTr("Place occupied"), icon: Theme.icons.warn, tone: Badge.Warn },
        skipped: { words: qsTr("Skipped"), icon: Theme.icons.info, tone: Badge.Plain }
    })

    signal putBackWanted()

    Accessible.description: head ? remark : reason
    Spoken.expandable: head
    Spoken.expanded: !folded
    above: !head ? 0 : index === 0 ? 16 : 12
    beside: padding
    carded: true
    facts: detail
    gap: 12
    head: model.head
    iconWidth: head ? Theme.icon - 2 : Theme.px(20)
    last: model.last
    lineHeight: head ? Math.max(Theme.journalHeadHeight, namesHeight + 12)
        : Math.max(Theme.journalRowHeight, namesHeight + 8)
    nameBold: head
    objectName: (head ? "journal.session." : "journal.item.") + index
    opens: 0
    selected: !head && table?.selectedRow === index
    showsKind: !head
    words: [name, size, detail, stages[stage]?.words ?? ""].filter(words => words !== "").join(", ")

    icon: Icon {
        anchors.left: parent.left
        anchors.leftMargin: -2
        anchors.verticalCenter: parent.verticalCenter
        path: row.folded ? Theme.icons.forward : Theme.icons.down
        visible: row.head
    }
    below: SmallText {
        text: row.reason
        visible: row.narrow && text !== ""
        width: parent.width
        wrapMode: Text.Wrap
    }
    cells: [
        SmallText {
            id: reasonText

            anchors.verticalCenter: parent.verticalCenter
            maximumLineCount: 2
            objectName: row.objectName + ".reason"
            text: row.reason
            visible: !row.narrow && text !== ""
            // Half of what the other cells leave.
            width: (row.bodyWidth - row.nameX - row.inset - bytes.width - stateCell.width - buttonCell.width) / 2
                - 2 * row.gap
            wrapMode: Text.Wrap

            WholeText {
                shown: reasonText
            }
        },
        ItemCell {
            id: bytes

            columnWidth: Theme.px(72)
            text: row.size
            visible: !row.head
        },
        Item {
            id: stateCell

            height: parent.height
            visible: !row.head
            width: Theme.px(row.narrow ? 120 : 168)

            Badge {
                anchors.verticalCenter: parent.verticalCenter
                iconPath: row.stages[row.stage]?.icon ?? ""
                objectName: row.objectName + ".state"
                text: row.stages[row.stage]?.words ?? ""
                tone: row.stages[row.stage]?.tone ?? Badge.Plain
                visible: text !== ""
                width: Math.min(implicitWidth, parent.width)
            }
        },
        ItemCell {
            color: Theme.text2
            objectName: row.objectName + ".remark"
            role: ThemedText.Small
            text: row.narrow ? "" : row.remark
            visible: row.head
        },
        Item {
            id: buttonCell

            height: parent.height
            width: row.head ? button.width : Theme.px(76)

            PushButton {
                id: button

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                controlHeight: row.head ? Theme.controlHeight : Theme.smallButtonHeight
                enabled: row.possible && row.ready
                focusPolicy: Qt.NoFocus
                iconPath: row.head ? Theme.icons.putBack : ""
                // Ctrl+Z puts the newest session back.
                keys: row.head && row.index === 0 && row.possible && !row.narrow ? qsTr("Ctrl Z") : ""
                objectName: row.objectName + ".putBack"
                text: row.model.action ?? qsTr("Put Back")
                // An item that is in the Trash and cannot go back shows it all the same, with the reason beside it.
                visible: row.head || row.stage === "inTrash" || row.stage === "occupied"

                onClicked: row.putBackWanted()
            }
        }
    ]
}
