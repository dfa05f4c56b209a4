pragma ComponentBehavior: Bound

import QtQuick
import OstrevoOrbel

/// Large files that were not used for long.
ScreenFrame {
    id: view

    readonly property LargeOldFlow large: app.largeOld
    readonly property alias measured: state.measured
    readonly property bool listed: measured && table.count > 0
    /// Whether the field shows where there is little room.
    property bool finding: false
    readonly property int usedWidth: Theme.px(narrow ? 132 : 176)

    function find(): void {
        finding = true;
        field.forceActiveFocus(Qt.ShortcutFocusReason);
        field.selectAll();
    }

    firstFocus: (listed ? table : state.visible ? state : null) as Item
    objectName: "large"
    scope: narrow && measured && large.known ? [large.shownCount, large.shownSize].join(" · ") : app.scan.scopeText
    status: listed ? table.status : ""
    title: qsTr("Large and Old")

    actions: [
        PushButton {
            iconOnly: true
            iconPath: Theme.icons.search
            objectName: "large.find"
            text: qsTr("Find")
            visible: view.narrow && view.measured

            onClicked: view.find()
        },
        PushButton {
            Spoken.name: qsTr("Measure again")
            enabled: !view.app.scan.running
            iconOnly: view.narrow
            iconPath: Theme.icons.rescan
            objectName: "large.measure"
            text: qsTr("Measure Again")
            visible: !view.app.scan.idle && !view.app.scan.foreign

            onClicked: view.app.scan.measureAgain()
        }
    ]

    bar: Column {
        visible: view.measured
        width: view.width

        FilterBar {
            width: parent.width

            Row {
                id: chips

                anchors.left: parent.left
                anchors.leftMargin: view.padding
                anchors.verticalCenter: parent.verticalCenter
                spacing: 8

                ChipMenu {
                    about: qsTr("Size")
                    choice: view.large.size
                    choices: view.large.sizes
                    narrow: view.narrow
                    objectName: "large.size"
                    set: true

                    onChosen: choice => view.large.size = choice
                }
                ChipMenu {
                    about: qsTr("Unused for")
                    choice: view.large.age
                    choices: view.large.ages
                    narrow: view.narrow
                    objectName: "large.age"
                    set: choice !== 0

                    onChosen: choice => view.large.age = choice
                }
                ChipMenu {
                    about: qsTr("Kind")
                    choice: view.large.kind
                    choices: view.large.kinds
                    narrow: view.narrow
                    objectName: "large.kind"
                    set: choice !== 0

                    onChosen: choice => view.large.kind = choice
                }
            }
            EntryField {
                id: field

                anchors.left: chips.right
                anchors.leftMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                fieldRadius: height / 2
                found: view.large.running ? "" : [view.large.shownCount, view.large.shownSize].join(", ")
                objectName: "large.text"
                placeholderText: qsTr("Name or folder contains")
                visible: !view.narrow || view.finding || text !== ""
                width: Math.min(Theme.px(240), parent.width - 2 * view.padding - chips.width - 8
                    - (view.narrow ? 0 : figures.width + 16))

                Keys.onDownPressed: if (view.listed) table.forceActiveFocus(Qt.TabFocusReason)
                onActiveFocusChanged: if (!activeFocus) view.finding = false
                onTextChanged: view.large.text = text
            }
            Sentence {
                id: figures

                anchors.right: parent.right
                anchors.rightMargin: view.padding
                anchors.verticalCenter: parent.verticalCenter
                visible: !view.narrow

                ThemedText {
                    bold: true
                    elide: Text.ElideNone
                    objectName: "large.count"
                    text: view.large.running ? "" : view.large.shownCount
                }
                ThemedText {
                    color: Theme.text2
                    elide: Text.ElideNone
                    text: view.large.running ? qsTr("Looking…") : " · " + view.large.shownSize
                    visible: view.large.running || view.large.known
                }
            }
        }
        Banner {
            action: qsTr("Measure Again")
            explanation: qsTr("Only files that were measured are listed.")
            height: visible ? implicitHeight : 0
            objectName: "large.partial"
            radius: 0
            statement: qsTr("Scan cancelled — partial")
            visible: view.app.scan.partial
            width: parent.width

            onTriggered: view.app.scan.measureAgain()
        }
    }

    foot: TickBar {
        narrow: view.narrow
        objectName: "large.tickBar"
        ticks: view.large.ticks
        width: view.width

        onReviewed: view.app.moves.review(view.large.ticks)
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
        visible: view.measured
    }
    Item {
        id: sheet

        anchors.horizontalCenter: parent.horizontalCenter
        height: parent.height
        visible: view.listed
        width: Math.min(parent.width, Theme.tableWidth)

        TableHead {
            id: head

            firstX: view.padding + Theme.px(20) + gap + (menu.ticks ? Theme.tick + gap : 0)
            inset: view.padding
            width: parent.width

            component Cell: HeadCell {
                required property int column

                height: head.height
                objectName: "large.head." + column
                order: view.large.column !== column ? HeadCell.None
                    : view.large.descending ? HeadCell.Descending : HeadCell.Ascending

                onClicked: view.large.sortBy(column)
            }

            first: Cell {
                column: LargeOldFlow.Name
                text: qsTr("Name and folder")
                width: Math.min(implicitWidth, parent.width)
            }
            cells: [
                Cell {
                    column: LargeOldFlow.Kind
                    text: qsTr("Kind")
                    visible: !view.narrow
                    width: Theme.px(132)
                },
                Cell {
                    column: LargeOldFlow.LastUsed
                    text: qsTr("Last used")
                    width: view.usedWidth
                },
                Item {
                    height: parent.height
                    width: Theme.px(92)

                    Cell {
                        alignment: Text.AlignRight
                        anchors.right: parent.right
                        column: LargeOldFlow.Size
                        text: view.narrow ? qsTr("Size") : qsTr("Size on disk")
                        width: Math.max(implicitWidth, parent.width)
                    }
                }
            ]
        }
        ItemTable {
            id: table

            Accessible.name: qsTr("Large and old files")
            anchors.bottom: parent.bottom
            anchors.top: head.bottom
            arrangement: [view.large.column, view.large.descending, view.large.size, view.large.age, view.large.kind,
                view.large.text]
            menu: menu
            model: view.large.rows
            objectName: "large.table"
            opacity: view.large.running ? 0.55 : 1
            width: parent.width

            delegate: LargeRow {
                inset: view.padding
                narrow: view.narrow
                ticks: menu.ticks
                usedWidth: view.usedWidth
            }

            onActivated: row => view.app.actions.showOnMap(table.itemAt(row).key)
            onAllWanted: ticked => {
                if (ticked)
                    view.large.tickAll();
                else
                    view.large.ticks.clear();
            }
            onTickWanted: row => view.large.toggleTick(table.itemAt(row).node)
        }
    }
    ListState {
        id: state

        readonly property bool nothingThere: view.large.countText === "0"

        action: !nothingThere ? qsTr("Clear") : view.large.age !== 0 ? qsTr("Show Files of Any Age") : ""
        anchors.fill: parent
        app: view.app
        iconPath: Theme.icons.large
        looking: measured && table.count === 0 && (view.large.running || !view.large.known)
            ? qsTr("Reading when large files were last used") : ""
        objectName: "large.empty"
        padding: view.padding
        primary: false
        sentence: nothingThere ? qsTr("No file or package that was measured is that large and that old.")
            : view.large.countText === "1" ? qsTr("One file is hidden by this text.")
            : qsTr("%1 files are hidden by this text.").arg(view.large.countText)
        statement: nothingThere ? qsTr("Nothing here with these filters")
            : qsTr("No name or folder contains “%1”").arg(view.large.text)
        unmeasured: qsTr("Measure the disk to list large files that were not used for long.")
        visible: !view.listed

        onTriggered: {
            if (nothingThere)
                view.large.age = 0;
            else
                field.clear();
        }
    }
    ItemMenu {
        id: menu

        actions: view.app.actions
        elsewhere: view.app.scan.foreign
        objectName: "large.menu"
    }

    Shortcut {
        enabled: view.visible && view.measured
        sequence: "Ctrl+F"

        onActivated: view.find()
    }
}
