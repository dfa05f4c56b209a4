pragma ComponentBehavior: Bound

import QtQuick
import OstrevoOrbel

/// All that changed since an earlier scan: a page of the overview.
ScreenFrame {
    id: view

    readonly property ChangesFlow changes: app.changes
    readonly property bool compared: app.compare.scan >= 0
    readonly property bool listed: table.count > 0
    /// Whether the field shows where there is little room.
    property bool finding: false
    readonly property int changeWidth: Theme.px(narrow ? 92 : 104)
    readonly property int figureWidth: Theme.px(96)

    function find(): void {
        finding = true;
        field.forceActiveFocus(Qt.ShortcutFocusReason);
        field.selectAll();
    }
    /// What is gone is shown by the folder that held it.
    function showOnMap(row: var): void {
        app.actions.showOnMap(row.model.gone ? row.model.folderKey : row.key);
    }
    function goBack(): void {
        app.screen = "overview";
    }

    firstFocus: (listed ? table : state.visible ? state : null) as Item
    objectName: "changes"
    scope: app.scan.scopeText
    status: listed ? table.status : ""
    title: qsTr("All Changes")

    Binding {
        property: "shown"
        target: view.changes
        value: view.visible
    }

    actions: [
        SinceMenu {
            app: view.app
            mostValue: Theme.px(view.narrow ? 150 : 260)
            objectName: "changes.since"
        },
        PushButton {
            iconOnly: true
            iconPath: Theme.icons.search
            objectName: "changes.find"
            text: qsTr("Find")
            visible: view.narrow && view.compared

            onClicked: view.find()
        }
    ]

    bar: FilterBar {
        width: view.width

        IconButton {
            id: back

            anchors.left: parent.left
            anchors.leftMargin: view.padding - 8
            anchors.verticalCenter: parent.verticalCenter
            iconPath: Theme.icons.back
            objectName: "changes.back"
            text: qsTr("Back to the overview")

            onClicked: view.goBack()
        }
        Row {
            id: chips

            anchors.left: back.right
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8
            visible: view.compared

            ChipMenu {
                about: qsTr("Change")
                choice: view.changes.kind
                choices: view.changes.kinds
                narrow: view.narrow && set
                objectName: "changes.kind"
                set: choice !== 0

                onChosen: choice => view.changes.kind = choice
            }
            ChipMenu {
                about: qsTr("Show")
                choice: view.changes.items
                choices: view.changes.itemChoices
                narrow: view.narrow
                objectName: "changes.items"
                set: choice !== 0

                onChosen: choice => view.changes.items = choice
            }
        }
        EntryField {
            id: field

            anchors.left: chips.right
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            fieldRadius: height / 2
            found: view.changes.running ? "" : view.changes.shownCount
            objectName: "changes.text"
            placeholderText: qsTr("Name or folder contains")
            visible: view.compared && (!view.narrow || view.finding || text !== "")
            width: Math.min(Theme.px(240), parent.width - view.padding - x)

            Keys.onDownPressed: if (view.listed) table.forceActiveFocus(Qt.TabFocusReason)
            onActiveFocusChanged: if (!activeFocus) view.finding = false
            onTextChanged: view.changes.text = text
        }
    }

    foot: Rectangle {
        color: Theme.sunk
        height: visible ? Theme.px(40) : 0
        visible: view.changes.known
        width: view.width

        Hairline {
            edge: Qt.TopEdge
        }
        Sentence {
            anchors.left: parent.left
            anchors.leftMargin: view.padding
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8

            ThemedText {
                color: Theme.text2
                elide: Text.ElideNone
                objectName: "changes.count"
                text: view.changes.shownCount
            }
            ThemedText {
                bold: true
                elide: Text.ElideNone
                objectName: "changes.net"
                text: view.changes.shownNet
            }
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        height: parent.height
        visible: view.listed
        width: Math.min(parent.width, Theme.tableWidth)

        TableHead {
            id: head

            firstX: view.padding
            inset: view.padding
            width: parent.width

            component Cell: HeadCell {
                required property int column

                height: head.height
                objectName: "changes.head." + column
                order: view.changes.column !== column ? HeadCell.None
                    : view.changes.descending ? HeadCell.Descending : HeadCell.Ascending

                onClicked: view.changes.sortBy(column)
            }
            component Figure: Item {
                id: figure

                required property int column
                property alias text: cell.text

                height: parent?.height ?? 0
                width: view.figureWidth

                Cell {
                    id: cell

                    alignment: Text.AlignRight
                    anchors.right: parent.right
                    column: figure.column
                    width: Math.max(implicitWidth, parent.width)
                }
            }

            first: [
                Item {
                    height: parent.height
                    width: view.changeWidth + head.gap

                    Cell {
                        column: ChangesFlow.Change
                        text: qsTr("Change")
                        width: Math.min(implicitWidth, parent.width)
                    }
                },
                Cell {
                    column: ChangesFlow.Name
                    text: qsTr("Name and folder")
                    width: Math.min(implicitWidth, parent.width - view.changeWidth - head.gap)
                }
            ]
            cells: [
                Figure {
                    column: ChangesFlow.Before
                    text: qsTr("Before")
                    visible: !view.narrow
                },
                Figure {
                    column: ChangesFlow.After
                    text: qsTr("After")
                    visible: !view.narrow
                },
                Figure {
                    column: ChangesFlow.Difference
                    text: qsTr("Difference")
                }
            ]
        }
        ItemTable {
            id: table

            Accessible.name: qsTr("Changes")
            anchors.bottom: parent.bottom
            anchors.top: head.bottom
            arrangement: [view.app.compare.scan, view.changes.column, view.changes.descending, view.changes.kind,
                view.changes.items, view.changes.text]
            menu: menu
            model: view.changes.rows
            objectName: "changes.table"
            opacity: view.changes.running ? 0.55 : 1
            width: parent.width

            delegate: ChangeRow {
                changeWidth: view.changeWidth
                figureWidth: view.figureWidth
                inset: view.padding
                narrow: view.narrow
            }

            onActivated: row => view.showOnMap(table.itemAt(row))
        }
    }
    ListState {
        id: state

        readonly property bool hidden: view.changes.known && !view.changes.unchanged

        action: hidden ? qsTr("Clear") : ""
        anchors.fill: parent
        app: view.app
        iconPath: Theme.icons.large
        looking: measured && view.changes.running && !view.changes.known ? qsTr("Comparing both scans") : ""
        objectName: "changes.empty"
        padding: view.padding
        primary: false
        sentence: hidden ? qsTr("The filters hide every change.")
            : view.changes.unchanged ? qsTr("Every file and folder takes as much as it did.")
            : qsTr("Changes compare two complete scans of the same folder.")
        statement: hidden ? qsTr("Nothing here with these filters")
            : view.changes.unchanged ? qsTr("Nothing changed") : qsTr("No comparison yet")
        unmeasured: qsTr("Measure the disk to see what changed.")
        visible: !view.listed

        onTriggered: {
            field.clear();
            view.changes.clearFilter();
        }
    }
    ItemMenu {
        id: menu

        property bool gone: false
        property string folderKey: ""

        function show(row: var): void {
            gone = row.model.gone;
            folderKey = row.model.folderKey;
            showItem(row);
        }

        actions: view.app.actions
        elsewhere: view.app.scan.foreign
        mapKey: shownKey
        objectName: "changes.menu"
        openable: !gone
        shownKey: gone ? folderKey : key
        tickable: false
    }

    Shortcut {
        enabled: view.visible && view.compared
        sequence: "Ctrl+F"

        onActivated: view.find()
    }
    Shortcut {
        enabled: view.visible && !view.app.scan.running && !view.app.rescan.running
        sequences: ["Esc", Theme.mirrored ? "Alt+Right" : "Alt+Left"]

        onActivated: view.goBack()
    }
}
