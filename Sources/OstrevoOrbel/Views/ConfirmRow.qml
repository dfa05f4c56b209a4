import QtQuick
import OstrevoOrbel

/// An item of the confirmation with its whole path, or, while it moves, with what became of it.
ItemRow {
    id: row

    required property bool moving
    required property bool narrow

    readonly property string stage: model.stage
    readonly property bool isOver: stage === "moved" || stage === "skipped"
    readonly property string stageWords: stage === "checking" ? qsTr("Checking…")
        : stage === "waiting" ? qsTr("Waiting") : stage === "moved" ? qsTr("In the Trash") : qsTr("Skipped")

    Accessible.description: note
    gap: Theme.px(14)
    inset: 24
    lineHeight: Math.max(Theme.px(moving ? 48 : 52), namesHeight + 24)
    lineSpacing: 4
    name: model.path
    nameColor: moving && stage === "waiting" ? Theme.text2 : Theme.ink
    nameGap: 14
    nameShown: PathLines.broken(name, nameFont, nameWidth)
    // For what a line of whole names measures more than its names.
    nameWrap: Text.WrapAnywhere
    opens: 0
    words: (moving ? [name, stageWords, size] : [name, model.kindName, qsTr("count %1").arg(model.entries), size]).join(", ")

    below: Badge {
        anchors.left: parent.left
        iconPath: Theme.icons.warn
        text: row.note
        tone: Badge.Warn
        visible: row.note !== "" && !row.moving
        width: Math.min(implicitWidth, parent.width)
    }
    cells: [
        ThemedText {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text2
            text: row.model.kindName
            visible: !row.moving && !row.narrow
            width: Theme.px(110)
        },
        Item {
            height: parent.height
            visible: row.moving
            width: Theme.px(120) + row.gap

            SmallText {
                anchors.verticalCenter: parent.verticalCenter
                bold: row.stage === "checking"
                color: row.stage === "checking" ? Theme.ink : Theme.text3
                text: row.stageWords
                visible: !row.isOver
                width: parent.width
            }
            Badge {
                anchors.verticalCenter: parent.verticalCenter
                iconPath: row.stage === "moved" ? Theme.icons.trash : Theme.icons.warn
                text: row.stageWords
                tone: row.stage === "moved" ? Badge.Accent : Badge.Warn
                visible: row.isOver
            }
        },
        ItemCell {
            color: Theme.text2
            columnWidth: Theme.px(72)
            text: row.model.entries
            visible: !row.moving
        },
        ItemCell {
            columnWidth: Theme.px(72)
            text: row.size
        }
    ]
}
