import QtQuick
import OstrevoOrbel

/// All applications, to choose one from.
FocusScope {
    id: pane

    required property AppsFlow flow
    property int padding: 16
    readonly property alias currentRow: table.currentRow

    /// An application was chosen to be looked at, where the list alone is in sight.
    signal opened()

    function follow(): void {
        table.currentRow = pane.flow.selectedRow;
        table.selectedRow = pane.flow.selectedRow;
    }
    function openMenu(row: int, item: Item, x: real, y: real): void {
        const shown = item as AppRow;
        menu.item = row;
        menu.itemName = shown.name;
        menu.itemFacts = [shown.source, shown.size].join(" · ");
        menu.popup(item, x, y);
    }

    Component.onCompleted: pane.follow()

    Connections {
        target: pane.flow

        function onChanged(): void {
            if (table.selectedRow !== pane.flow.selectedRow)
                pane.follow();
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    TableHead {
        id: head

        anchors.left: parent.left
        anchors.right: parent.right

        HeadCell {
            anchors.left: parent.left
            anchors.leftMargin: pane.padding
            objectName: "uninstall.byName"
            order: pane.flow.list.bySize ? HeadCell.None
                : pane.flow.list.descending ? HeadCell.Descending : HeadCell.Ascending
            text: qsTr("App")

            onClicked: pane.flow.sortBy(false)
        }
        HeadCell {
            alignment: Text.AlignRight
            anchors.right: parent.right
            anchors.rightMargin: 16
            objectName: "uninstall.bySize"
            order: !pane.flow.list.bySize ? HeadCell.None
                : pane.flow.list.descending ? HeadCell.Descending : HeadCell.Ascending
            text: qsTr("Size on disk")

            onClicked: pane.flow.sortBy(true)
        }
    }
    RowTable {
        id: table

        Accessible.name: qsTr("Apps")
        Accessible.role: Accessible.List
        anchors.bottom: foot.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        find: (text, row) => pane.flow.list.findFrom(text, row)
        focus: true
        model: pane.flow.list
        objectName: "uninstall.apps"

        onActivated: pane.opened()
        onCopyWanted: row => pane.flow.copyApp(row)
        onMenuWanted: (row, item, x, y) => pane.openMenu(row, item, x, y)
        onSelectedRowChanged: pane.flow.select(selectedRow)

        delegate: AppRow {
            focused: table.showsFocus && ListView.isCurrentItem
            padding: pane.padding
            selected: table.selectedRow === index
            width: ListView.view.width

            onChosen: table.choose(index)
            onMenuWanted: (x, y) => pane.openMenu(index, this, x, y)
            onOpened: pane.opened()
        }
    }
    EmptyState {
        action: qsTr("Show All")
        anchors.centerIn: table
        height: implicitHeight
        iconPath: Theme.icons.search
        objectName: "uninstall.noMatch"
        primary: false
        statement: qsTr("No app matches “%1”").arg(pane.flow.findText)
        visible: pane.flow.loaded && !pane.flow.anyShown
        width: parent.width - 2 * pane.padding

        onTriggered: pane.flow.findText = ""
    }
    Item {
        id: foot

        anchors.bottom: parent.bottom
        height: Theme.tableHeadHeight
        width: parent.width

        Rectangle {
            color: Theme.line
            height: 1
            width: parent.width
        }
        ThemedText {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            anchors.left: parent.left
            anchors.leftMargin: pane.padding
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text2
            objectName: "uninstall.summary"
            role: ThemedText.Small
            text: pane.flow.loading ? qsTr("%1 · reading again…").arg(pane.flow.shownText) : pane.flow.shownText
        }
    }

    ItemMenu {
        id: menu

        objectName: "uninstall.appMenu"
        openable: false
        tickable: false
        zoomable: false

        onCopyWanted: row => pane.flow.copyApp(row)
        onShowWanted: row => pane.flow.showApp(row)
    }
}
