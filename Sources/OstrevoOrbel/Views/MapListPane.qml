pragma ComponentBehavior: Bound

import QtQuick
import OstrevoOrbel

/// What lies in the map's folder as a list whose folders open in place, and below it the facts of what is selected.
/// Columns that have no room are left out; the edge towards the map can be dragged.
FocusScope {
    id: pane

    required property MapModel map
    required property ItemActions actions
    readonly property MapListFlow flow: map.list
    /// How wide it is unless the user wants it otherwise, and how wide it may be.
    property int usualWidth: 0
    property int mostWidth: 0

    signal zoomWanted(node: int)
    signal upWanted()
    signal menuWanted(node: int, item: Item, x: real, y: real)
    signal copyWanted(key: string, whole: bool)
    signal tickWanted(node: int)
    signal allWanted(ticked: bool)

    /// Takes pixels; the usual width when none.
    function widen(wanted: int): void {
        pane.flow.width = Math.round(Math.min(wanted, pane.mostWidth) / Theme.fontScale);
    }

    width: Math.min(Math.max(flow.width > 0 ? Theme.px(flow.width) : usualWidth, Theme.px(220)), mostWidth)

    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Backspace && event.modifiers === Qt.NoModifier;
        if (event.accepted)
            pane.upWanted();
    }

    MapListColumns {
        id: metrics

        ticks: pane.map.ticking.possible
        width: pane.width
    }
    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    // Where it lies over the map, nothing reaches the map through it.
    MouseArea {
        acceptedButtons: Qt.AllButtons
        anchors.fill: parent
        hoverEnabled: true

        onWheel: wheel => wheel.accepted = true
    }
    Hairline {
        edge: Qt.LeftEdge
        z: 1
    }
    TableHead {
        id: head

        anchors.left: parent.left
        anchors.right: parent.right
        firstX: metrics.nameX
        gap: metrics.gap
        inset: metrics.inset

        component Cell: HeadCell {
            required property int column

            height: head.height
            objectName: "map.list.head." + column
            order: pane.flow.column !== column ? HeadCell.None
                : pane.flow.descending ? HeadCell.Descending : HeadCell.Ascending

            onClicked: pane.flow.sortBy(column)
        }
        // The words of a head may be wider than its figures.
        component FigureCell: Item {
            id: slot

            property alias column: cell.column
            property alias text: cell.text

            height: parent?.height ?? 0

            Cell {
                id: cell

                alignment: Text.AlignRight
                anchors.right: parent.right
                column: 0
                width: Math.max(implicitWidth, slot.width)
            }
        }

        first: Cell {
            column: MapListFlow.Name
            text: qsTr("Name")
            width: Math.min(implicitWidth, parent.width)
        }
        cells: [
            FigureCell {
                column: MapListFlow.Size
                text: metrics.showsShare ? qsTr("Size") : qsTr("Size on disk")
                width: metrics.sizeWidth
            },
            FigureCell {
                column: MapListFlow.Share
                text: qsTr("Share")
                visible: metrics.showsShare
                width: metrics.shareWidth
            },
            FigureCell {
                column: MapListFlow.Items
                text: qsTr("Items")
                visible: metrics.showsItems
                width: metrics.itemsWidth
            },
            FigureCell {
                column: MapListFlow.Changed
                text: qsTr("Changed")
                visible: metrics.showsChanged
                width: metrics.changedWidth
            }
        ]
    }
    ItemTable {
        id: table

        /// How far the rows were scrolled before they came anew.
        property real formerTop: 0

        /// Rows that come anew are seen where the former ones were; those of another folder, or in another order, from
        /// the top, or where the selection is.
        function follow(keepsPlace: bool): void {
            const view = contentItem as ListView;
            table.currentIndex = pane.map.holdingRow;
            view.forceLayout();
            if (keepsPlace)
                view.contentY = Math.max(0, Math.min(formerTop, view.contentHeight - view.height));
            else
                view.positionViewAtIndex(Math.max(0, table.currentIndex), ListView.Contain);
        }

        Accessible.name: qsTr("Items in %1").arg(pane.map.focusName)
        Spoken.role: Accessible.Tree
        anchors.bottom: summary.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        focus: true
        keepsPlaces: false
        model: pane.flow.rows
        objectName: "map.list"
        opacity: pane.flow.running ? 0.55 : 1
        tickable: pane.map.ticking.possible

        delegate: MapListRow {
            id: row

            columns: metrics
            map: pane.map

            onOpenWanted: pane.flow.setOpen(row.index, !row.open)
        }

        onActivated: row => pane.zoomWanted(pane.flow.rows.nodeAt(row))
        onAllWanted: ticked => pane.allWanted(ticked)
        onCopyWanted: (row, whole) => pane.copyWanted(row.key, whole)
        onMenuWanted: (row, x, y) => pane.menuWanted((row as MapListRow).node, table, x, y)
        onSelectedRowChanged: if (selectedRow !== pane.map.selectedRow) pane.map.selectRow(selectedRow)
        onTickWanted: row => pane.tickWanted(pane.flow.rows.nodeAt(row))
        // As in every tree: on into the folder, back to the one around it.
        onTurned: (row, onward) => {
            const rows = pane.flow.rows;
            if (rows.folds(row) && rows.isOpen(row) !== onward)
                pane.flow.setOpen(row, onward);
            else if (onward && rows.isOpen(row))
                table.move(row + 1, true);
            else if (!onward && rows.rowAbove(row) >= 0)
                table.move(rows.rowAbove(row), true);
        }
    }
    Connections {
        target: pane.flow.rows

        function onModelAboutToBeReset(): void {
            table.formerTop = (table.contentItem as ListView).contentY;
        }
    }
    Connections {
        target: pane.flow

        function onArranged(keepsPlace: bool): void {
            table.follow(keepsPlace);
        }
    }
    // What is selected on the map may lie deeper than a row: the row that holds it has the focus then.
    Connections {
        target: pane.map

        function onSelectedRowChanged(): void {
            table.selectedRow = pane.map.selectedRow;
        }
        function onSelectionChanged(): void {
            table.currentIndex = pane.map.holdingRow;
        }
    }
    Item {
        id: summary

        anchors.bottom: facts.top
        height: Theme.tableHeadHeight
        width: parent.width

        Hairline {
            edge: Qt.TopEdge
            soft: true
        }
        SmallText {
            anchors.left: parent.left
            anchors.leftMargin: 16
            anchors.right: allColumns.visible ? allColumns.left : parent.right
            anchors.rightMargin: allColumns.visible ? 4 : 16
            anchors.verticalCenter: parent.verticalCenter
            objectName: "map.summary"
            text: pane.map.listSummary
        }
        IconButton {
            id: allColumns

            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            iconPath: Theme.icons.columns
            objectName: "map.list.columns"
            text: metrics.showsChanged ? qsTr("Fewer columns") : qsTr("All columns")
            visible: metrics.showsChanged ? pane.flow.width > 0 : pane.mostWidth >= metrics.needForAll

            onClicked: pane.widen(metrics.showsChanged ? 0 : metrics.needForAll + Theme.px(60))
        }
    }
    MapInspector {
        id: facts

        actions: pane.actions
        anchors.bottom: parent.bottom
        map: pane.map
        width: parent.width
    }
    // The edge towards the map.
    MouseArea {
        id: edge

        property bool dragged: false
        property real from: 0
        property int widthFrom: 0

        Accessible.name: qsTr("Width of the list")
        Accessible.role: Accessible.Splitter
        anchors.horizontalCenter: parent.left
        cursorShape: Qt.SplitHCursor
        height: parent.height
        objectName: "map.list.edge"
        preventStealing: true
        width: 9
        z: 2

        onDoubleClicked: {
            dragged = false;
            pane.widen(0);
        }
        onPositionChanged: mouse => {
            const wide = (from - mapToItem(null, mouse.x, 0).x) * (Theme.mirrored ? -1 : 1);
            if (dragged && wide !== 0)
                pane.widen(Math.max(Theme.px(220), widthFrom + wide));
        }
        onPressed: mouse => {
            dragged = true;
            from = mapToItem(null, mouse.x, 0).x;
            widthFrom = pane.width;
        }
    }
}
