pragma ComponentBehavior: Bound

import QtQuick
import OstrevoOrbel

/// What lies in the map's folder as a list, in the map's order, and below it the facts of what is selected.
FocusScope {
    id: pane

    required property MapModel map

    signal zoomWanted(node: int)
    signal upWanted()
    signal menuWanted(node: int, item: Item, x: real, y: real)
    signal copyWanted(key: string, whole: bool)
    signal tickWanted(node: int)
    signal allWanted(ticked: bool)

    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Backspace && event.modifiers === Qt.NoModifier;
        if (event.accepted)
            pane.upWanted();
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    Hairline {
        edge: Qt.LeftEdge
        z: 1
    }
    TableHead {
        id: head

        anchors.left: parent.left
        anchors.right: parent.right
        firstX: inset + Theme.tick + gap + Theme.px(20) + 10

        first: SmallText {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Name")
        }
        cells: SmallText {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.ink
            text: qsTr("Size on disk") + " ↓"
        }
    }
    ItemTable {
        id: table

        Accessible.name: qsTr("Items in %1").arg(pane.map.focusName)
        anchors.bottom: summary.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        focus: true
        keepsPlaces: false
        model: pane.map.list
        objectName: "map.list"
        tickable: true

        delegate: ItemRow {
            id: row

            readonly property int node: model.node

            key: pane.map.facts(node).key
            lineHeight: Theme.px(37)
            lineSpacing: 2
            nameGap: 10
            selected: pane.map.selection.valid && pane.map.selection.node === node
            tickName: "map.tick." + name
            ticks: true
            words: [name, model.kindName, size, model.share].join(", ")

            below: SizeBar {
                anchors.left: parent.left
                fill: Theme.control
                height: 3
                share: row.model.fraction
                // As long as beside a row without a note.
                width: parent.width + (warning.visible ? warning.width + row.gap : 0)
            }
            cells: [
                // Its words have room in the inspector.
                Icon {
                    id: warning

                    color: Theme.warn
                    size: Theme.px(14)
                    path: Theme.icons.warn
                    visible: row.note !== ""
                    y: Theme.px(9)

                    HoverHandler {
                        id: over
                    }
                    Hint {
                        text: row.note
                        visible: over.hovered
                    }
                },
                ItemCell {
                    columnWidth: Theme.px(62)
                    text: row.size
                }
            ]
        }

        onActivated: row => pane.zoomWanted(table.itemAt(row).node)
        onCopyWanted: (row, whole) => pane.copyWanted(row.key, whole)
        onMenuWanted: (row, x, y) => pane.menuWanted(row.node, table, x, y)
        onSelectedRowChanged: if (selectedRow !== pane.map.selectedRow) pane.map.selectRow(selectedRow)
        onAllWanted: ticked => pane.allWanted(ticked)
        onTickWanted: row => pane.tickWanted(table.itemAt(row).node)
    }
    // What is selected on the map may lie deeper than a row: the row that holds it is marked then.
    Connections {
        target: pane.map

        function onSelectionChanged(): void {
            table.currentIndex = pane.map.selectedRow;
            table.selectedRow = pane.map.selectedRow;
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
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            anchors.left: parent.left
            anchors.leftMargin: 16
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            objectName: "map.summary"
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
