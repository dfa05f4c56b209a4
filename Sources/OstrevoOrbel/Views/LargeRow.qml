import QtQuick
import OstrevoOrbel

/// A row of the large and old files.
ItemRow {
    id: row

    required property bool narrow
    required property int usedWidth

    readonly property int node: model.node
    readonly property var remarks: [model.openIn, refusal, refused ? "" : note].filter(remark => remark !== "")

    Accessible.description: remarks.join(", ")
    detail: narrow && remarks.length > 0 ? remarks.join(" · ") : model.folder
    detailElide: narrow && remarks.length > 0 ? Text.ElideRight : Text.ElideMiddle
    facts: [model.kindName, size].join(" · ")
    objectName: "large.row." + name
    refusal: ticks ? model.refusal : ""
    status: [model.path, model.kindName, size].join(" · ")
    tickName: "large.tick." + name
    words: qsTr("%1, %2, %3, in %4, last used %5").arg(name).arg(model.kindName).arg(size).arg(model.folder)
        .arg(model.lastUsed)

    cells: [
        Row {
            id: badges

            // What the name leaves, and half of its column at least.
            readonly property int room: row.width - row.inset - row.nameX - row.usedWidth - Theme.px(132)
                - Theme.px(92) - 3 * row.gap
            readonly property int most: Math.max(room / 2, room - row.gap - row.nameNeed)
            readonly property int each: Math.floor((most - spacing * (row.remarks.length - 1))
                / Math.max(1, row.remarks.length))

            anchors.verticalCenter: parent.verticalCenter
            spacing: 8
            visible: !row.narrow && row.remarks.length > 0

            Badge {
                iconPath: Theme.icons.warn
                text: row.model.openIn
                tone: Badge.Warn
                visible: text !== ""
                width: Math.min(implicitWidth, badges.each)
            }
            Badge {
                iconPath: row.refused ? Theme.icons.lock : Theme.icons.info
                text: row.refused ? row.refusal : row.note
                visible: text !== ""
                width: Math.min(implicitWidth, badges.each)
            }
        },
        ThemedText {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text2
            text: row.model.kindName
            visible: !row.narrow
            width: Theme.px(132)
        },
        Column {
            anchors.verticalCenter: parent.verticalCenter
            width: row.usedWidth

            ThemedText {
                text: row.model.lastUsed
                width: parent.width
            }
            SmallText {
                text: row.model.record
                width: parent.width
            }
        },
        ItemCell {
            columnWidth: Theme.px(92)
            text: row.size
        }
    ]
}
