pragma ComponentBehavior: Bound

import QtQuick
import OstrevoOrbel

/// A list of what can be tidied away, with the button that leads to its confirmation.
Card {
    id: card

    required property ItemActions actions
    required property TidyFlow flow
    required property TidyListModel list
    required property string heading
    required property string found
    required property string ticked
    required property string moveText
    /// What stands where nothing was found.
    required property string nothing
    property string nothingTitle: qsTr("Nothing to tidy here")
    /// Said below the rows.
    property string legend: ""
    property string iconPath: ""
    /// What a row is, for the status line; empty where its detail tells it.
    property string itemWord: ""
    /// Rows have a coloured chip of a folder, and a size.
    property bool showsKind: false
    property bool sized: false
    /// Filters of this list alone, between the head and the rows.
    property alias filters: filters.data

    readonly property alias table: table
    readonly property Item firstFocus: (card.list.count > 0 ? table : none) as Item

    clip: true

    onTickedChanged: if (table.activeFocus) heard.say(ticked)

    Announcement {
        id: heard
    }
    Item {
        id: head

        height: Theme.px(64)
        width: parent.width

        Column {
            anchors.left: parent.left
            anchors.leftMargin: Theme.cardPadding
            anchors.right: all.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter

            Heading {
                role: ThemedText.Lead
                text: card.heading
                width: parent.width
            }
            SmallText {
                objectName: card.objectName + ".found"
                text: card.found
                width: parent.width
            }
        }
        PushButton {
            id: all

            readonly property bool unticks: card.list.tickedCount > 0

            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            controlHeight: Theme.smallButtonHeight
            objectName: card.objectName + ".all"
            text: unticks ? qsTr("Tick None") : qsTr("Tick All")
            visible: card.list.tickable > 0 || unticks

            onClicked: card.flow.setAllTicked(card.list, !unticks)
        }
        Hairline {}
    }
    Item {
        id: filters

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        height: children.length > 0 && card.list.total > 0 ? Theme.px(52) : 0
        visible: height > 0
    }
    ItemTable {
        id: table

        Accessible.name: card.heading
        anchors.bottom: legend.visible ? legend.top : foot.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: filters.bottom
        menu: menu
        model: card.list
        objectName: card.objectName + ".table"
        visible: card.list.count > 0

        delegate: ItemRow {
            id: row

            detailElide: Text.ElideRight
            facts: detail
            gap: 12
            kind: 0
            lineHeight: Theme.tallRowHeight
            name: model.path
            showsKind: card.showsKind
            status: [name, card.itemWord || detail, model.size].filter(words => words !== "").join("  ·  ")
            tickName: [card.objectName, "tick", index].join(".")
            ticks: true

            icon: Icon {
                anchors.verticalCenter: parent.verticalCenter
                path: card.iconPath
                visible: !row.showsKind
                x: (row.iconWidth - width) / 2
            }
            cells: [
                Badge {
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.model.badge
                    tone: row.model.warn ? Badge.Warn : Badge.Plain
                    visible: text !== ""
                    width: Math.min(implicitWidth, row.width * (card.sized ? 0.3 : 0.45))
                },
                ItemCell {
                    columnWidth: Theme.px(80)
                    text: row.model.size
                    visible: card.sized
                }
            ]
        }

        onActivated: row => card.actions.showOnMap(table.itemAt(row).key)
        onAllWanted: ticked => card.flow.setAllTicked(card.list, ticked)
        onTickWanted: row => card.flow.toggleTick(card.list, row)
    }
    ListState {
        id: none

        anchors.bottom: foot.top
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.top: filters.bottom
        iconPath: card.iconPath
        looking: card.flow.known ? "" : qsTr("Checking each item…")
        objectName: card.objectName + ".empty"
        padding: Theme.cardPadding
        sentence: card.list.total === 0 ? card.nothing : card.flow.filter === "" ? qsTr("The filters hide every row.")
            : qsTr("No path has “%1” in it.").arg(card.flow.filter)
        statement: card.list.total > 0 ? qsTr("No row matches") : card.nothingTitle
        visible: card.list.count === 0
    }
    SmallText {
        id: legend

        anchors.bottom: foot.top
        anchors.left: parent.left
        anchors.leftMargin: Theme.cardPadding
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        bottomPadding: 12
        color: Theme.text3
        text: card.legend
        topPadding: 12
        visible: text !== "" && card.list.count > 0
        wrapMode: Text.Wrap
    }
    CardFoot {
        id: foot

        anchors.bottom: parent.bottom
        height: Theme.px(60)
        width: parent.width

        ThemedText {
            anchors.left: parent.left
            anchors.leftMargin: Theme.cardPadding
            anchors.right: move.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text2
            objectName: card.objectName + ".ticked"
            text: card.ticked
        }
        PushButton {
            id: move

            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            enabled: card.list.tickedCount > 0
            objectName: card.objectName + ".move"
            text: card.moveText
            variant: PushButton.Commit
            width: Math.min(implicitWidth, parent.width * 0.7)

            onClicked: card.flow.review(card.list)
        }
    }
    ItemMenu {
        id: menu

        actions: card.actions
        objectName: card.objectName + ".menu"
    }
}
