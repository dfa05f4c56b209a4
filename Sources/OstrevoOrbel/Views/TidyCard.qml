import QtQuick
import OstrevoOrbel

/// A list of what can be tidied away, with the button that leads to its confirmation.
Card {
    id: card

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
    property bool busy: false

    readonly property alias table: table
    readonly property string status: table.currentRow >= 0 ? card.flow.statusOf(card.list, hoveredRow >= 0 ? hoveredRow
        : table.currentRow) : ""
    property int hoveredRow: -1

    signal mapWanted(row: int)

    function takeFocus(reason: int): void {
        (card.list.count > 0 ? table : none).forceActiveFocus(reason);
    }
    function openMenu(row: int, item: Item, x: real, y: real): void {
        const shown = table.itemAt(row) as TidyRow;
        if (!shown)
            return;
        menu.item = row;
        menu.itemName = shown.path;
        menu.itemFacts = shown.detail;
        menu.ticked = shown.ticked;
        menu.refusal = shown.refusal;
        menu.popup(item, x, y);
    }

    clip: true

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

            ThemedText {
                Accessible.name: text
                Accessible.role: Accessible.Heading
                bold: true
                role: ThemedText.Lead
                text: card.heading
                width: parent.width
            }
            ThemedText {
                color: Theme.text2
                objectName: card.objectName + ".found"
                role: ThemedText.Small
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
        Rectangle {
            anchors.bottom: parent.bottom
            color: Theme.line
            height: 1
            width: parent.width
        }
    }
    RowTable {
        id: table

        Accessible.name: card.heading
        anchors.bottom: legend.visible ? legend.top : foot.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        find: (text, row) => card.list.find(text, row)
        model: card.list
        objectName: card.objectName + ".table"
        visible: card.list.count > 0

        delegate: TidyRow {
            focused: table.showsFocus && ListView.isCurrentItem
            iconPath: card.iconPath
            name: card.objectName
            selected: table.selectedRow === index
            width: ListView.view.width

            onChosen: table.choose(index)
            onHoveredChanged: {
                if (hovered)
                    card.hoveredRow = index;
                else if (card.hoveredRow === index)
                    card.hoveredRow = -1;
            }
            onMenuWanted: (x, y) => card.openMenu(index, this, x, y)
            onTickWanted: {
                chosen();
                card.flow.toggleTick(card.list, index);
            }
        }

        onActivated: row => card.mapWanted(row)
        onCopyWanted: row => card.flow.copyPath(card.list, row)
        onMenuWanted: (row, item, x, y) => card.openMenu(row, item, x, y)
        onTickWanted: row => card.flow.toggleTick(card.list, row)
    }
    EmptyState {
        id: none

        anchors.bottom: foot.top
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.top: head.bottom
        iconPath: card.iconPath
        objectName: card.objectName + ".empty"
        sentence: card.list.total > 0 ? qsTr("No path has “%1” in it.").arg(card.flow.filter) : card.nothing
        statement: card.list.total > 0 ? qsTr("No row matches") : card.nothingTitle
        visible: card.list.count === 0 && !card.busy
    }
    LoadingState {
        statement: qsTr("Asking the disk about each…")
        visible: card.list.count === 0 && card.busy
        width: parent.width - 2 * Theme.cardPadding
        x: Theme.cardPadding
        y: head.height + Theme.cardPadding
    }
    ThemedText {
        id: legend

        anchors.bottom: foot.top
        anchors.left: parent.left
        anchors.leftMargin: Theme.cardPadding
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        bottomPadding: 12
        color: Theme.text3
        role: ThemedText.Small
        text: card.legend
        topPadding: 12
        visible: text !== "" && card.list.count > 0
        wrapMode: Text.Wrap
    }
    Rectangle {
        id: foot

        anchors.bottom: parent.bottom
        color: Theme.sunk
        height: Theme.px(60)
        radius: Theme.cardRadius - 1
        width: parent.width

        Rectangle {
            color: parent.color
            height: parent.radius
            width: parent.width
        }
        Rectangle {
            color: Theme.line
            height: 1
            width: parent.width
        }
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

        objectName: card.objectName + ".menu"
        zoomText: qsTr("Show on Map")

        onCopyWanted: row => card.flow.copyPath(card.list, row)
        onOpenWanted: row => card.flow.open(card.list, row)
        onShowWanted: row => card.flow.showInFileManager(card.list, row)
        onTickWanted: row => card.flow.toggleTick(card.list, row)
        onZoomWanted: row => card.mapWanted(row)
    }
}
