import QtQuick
import OstrevoOrbel

/// The head of a group of copies, or one of its copies: a part of the group's card.
ItemRow {
    id: row

    required property bool narrow
    /// Whether the keys act on the mark that keeps the copy, not on its tick.
    required property bool keepFocused
    /// Whether nothing comes after it.
    required property bool closing
    required property int padding

    readonly property bool kept: model.kept
    readonly property bool folded: model.folded
    readonly property string remark: refusal || note
    /// The mark that keeps it.
    readonly property alias keep: keep

    signal foldWanted()
    signal keepWanted()

    Accessible.checkable: head || showsTick && !refused
    Accessible.description: remark
    Spoken.expandable: head
    Spoken.expanded: !folded
    above: !head ? 0 : index === 0 ? 16 : 12
    beside: Math.round(Math.max(padding, (width - Theme.tableWidth) / 2))
    carded: true
    facts: head ? model.copies : [model.path, size].join(" · ")
    head: model.head
    iconWidth: head ? Theme.px(9) - inset + chevron.width + 4 + chip.width : Theme.px(74)
    itemName: model.name
    last: model.lastOfGroup
    lineHeight: (head ? Theme.groupHeadHeight : Theme.copyRowHeight) + (last ? 1 : 0)
    name: head ? model.name : model.path
    nameBold: head
    nameGap: head ? 12 : 14
    nameReserve: head ? copies.implicitWidth + 12 : 0
    opens: head ? 2 : 0
    showsKind: false
    showsTick: !head && !kept
    status: (head || kept ? qsTr("%1  ·  the copy that is kept")
        : qsTr("%1  ·  identical to the kept copy, byte for byte")).arg(model.path)
    tickGap: 12
    tickName: "duplicates.tick." + index
    tickRefusal: kept ? qsTr("This copy stays") : refusal
    ticks: !head
    under: closing ? 16 : 0

    icon: [
        IconButton {
            id: chevron

            anchors.left: parent.left
            anchors.leftMargin: Theme.px(9) - row.inset
            anchors.verticalCenter: parent.verticalCenter
            focusPolicy: Qt.NoFocus
            iconPath: row.folded ? Theme.icons.forward : Theme.icons.down
            objectName: "duplicates.fold." + row.index
            text: row.folded ? qsTr("Unfold") : qsTr("Fold")
            visible: row.head

            onClicked: {
                row.table.choose(row.index);
                row.foldWanted();
            }
        },
        KindChip {
            id: chip

            anchors.left: chevron.right
            anchors.leftMargin: 4
            anchors.verticalCenter: parent.verticalCenter
            kind: row.kind
            visible: row.head
        },
        KeepRadio {
            id: keep

            Spoken.name: qsTr("Keep %1").arg(row.name)
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            autoExclusive: false
            checked: row.kept
            focusPolicy: Qt.NoFocus
            objectName: "duplicates.keep." + row.index
            text: row.kept || !row.refused ? qsTr("Keep") : qsTr("Stays")
            visible: !row.head

            onClicked: {
                // A click has set it; what is kept is told by the list.
                checked = Qt.binding(() => row.kept);
                row.table.choose(row.index);
                row.keepWanted();
            }
        }
    ]
    cells: [
        Badge {
            id: badge

            anchors.verticalCenter: parent.verticalCenter
            iconPath: row.refused ? Theme.icons.lock : Theme.icons.info
            text: row.remark
            visible: row.remark !== ""
            width: Math.min(implicitWidth, row.bodyWidth * 0.4)
        },
        ItemCell {
            color: Theme.text2
            columnWidth: Theme.px(176)
            role: ThemedText.Small
            text: row.model.changed
            visible: !row.head && (!row.narrow || !badge.visible)
        },
        ItemCell {
            bold: row.head
            columnWidth: row.head ? 0 : Theme.px(72)
            text: row.head ? row.model.frees : row.size
        }
    ]

    ThemedText {
        id: copies

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.text2
        text: row.model.copies
        visible: row.head
        x: Theme.along(row.nameX + Math.min(row.nameNeed, row.nameWidth) + 12, width, parent.width)
    }
    // What the keys act on.
    FocusRing {
        readonly property bool onKeep: row.keepFocused || row.kept

        anchors.fill: undefined
        controlRadius: onKeep ? height / 2 : Theme.tickRadius
        height: Theme.tick + 8
        visible: row.focused && !row.head
        width: height
        x: Theme.along((onKeep ? row.iconX : row.inset) - 4, width, parent.width)
        y: Math.round((parent.height - height) / 2)
    }
}
