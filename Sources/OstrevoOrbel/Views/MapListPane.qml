import QtQuick
import OstrevoOrbel

/// What lies in the map's folder as a list, in the map's order, and below it the facts of what is selected.
FocusScope {
    id: pane

    required property MapModel map

    function nodeAt(row: int): int {
        return (table.itemAt(row) as MapListRow).node;
    }

    signal zoomWanted(node: int)
    signal upWanted()
    signal menuWanted(node: int, item: Item, x: real, y: real)
    signal copyWanted(node: int)
    signal tickWanted(node: int)

    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Backspace && event.modifiers === Qt.NoModifier;
        if (event.accepted)
            pane.upWanted();
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    Rectangle {
        color: Theme.line
        height: parent.height
        width: 1
        z: 1
    }
    TableHead {
        id: head

        anchors.left: parent.left
        anchors.right: parent.right

        ThemedText {
            anchors.left: parent.left
            anchors.leftMargin: 6 + Theme.tickCell + Theme.px(20) + 10
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text2
            role: ThemedText.Small
            text: qsTr("Name")
        }
        ThemedText {
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            role: ThemedText.Small
            text: qsTr("Size on disk") + " ↓"
        }
    }
    RowTable {
        id: table

        Accessible.name: qsTr("Items in %1").arg(pane.map.focusName)
        Accessible.role: Accessible.List
        anchors.bottom: summary.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        focus: true
        model: pane.map.list
        objectName: "map.list"

        delegate: MapListRow {
            required property int index

            focused: table.showsFocus && index === table.currentRow
            selected: pane.map.selection.valid && pane.map.selection.node === node
            width: table.width

            onChosen: {
                table.choose(index);
                pane.map.select(node);
            }
            onMenuWanted: (x, y) => pane.menuWanted(node, this, x, y)
            onOpened: pane.zoomWanted(node)
            onTickWanted: {
                chosen();
                pane.tickWanted(node);
            }
        }

        onActivated: row => pane.zoomWanted(pane.nodeAt(row))
        onCopyWanted: row => pane.copyWanted(pane.nodeAt(row))
        onMenuWanted: (row, item, x, y) => pane.menuWanted(pane.nodeAt(row), item, x, y)
        onSelectedRowChanged: if (selectedRow !== pane.map.selectedRow) pane.map.selectRow(selectedRow)
        onTickWanted: row => pane.tickWanted(pane.nodeAt(row))
    }
    // What is selected on the map may lie deeper than a row: the row that holds it is marked then.
    Connections {
        target: pane.map

        function onSelectionChanged(): void {
            table.currentRow = pane.map.selectedRow;
            table.selectedRow = pane.map.selectedRow;
        }
    }
    Item {
        id: summary

        anchors.bottom: facts.top
        height: Theme.tableHeadHeight
        width: parent.width

        Rectangle {
            color: Theme.lineSoft
            height: 1
            width: parent.width
        }
        ThemedText {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            anchors.left: parent.left
            anchors.leftMargin: 16
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text2
            objectName: "map.summary"
            role: ThemedText.Small
            text: pane.map.listSummary
        }
    }
    MapInspector {
        id: facts

        anchors.bottom: parent.bottom
        map: pane.map
        width: parent.width
    }
}
