import QtQuick
import OstrevoOrbel

/// Large files that nobody has used for long.
ScreenFrame {
    id: view

    required property AppModel app
    readonly property LargeOldFlow large: app.largeOld
    readonly property bool measured: app.scan.measuredAny && !app.scan.rootUnreadable
    readonly property bool listed: measured && table.count > 0
    /// Whether the field shows where there is little room.
    property bool finding: false
    /// The row under the pointer, and the one with the focus.
    property string hoveredWords: ""
    property string currentWords: ""
    // Focus and selection keep to their files, wherever these are shown.
    property string focusedFile: ""
    property string selectedFile: ""

    function holdPlaces(): void {
        focusedFile = large.rows.idAt(table.currentRow);
        selectedFile = large.rows.idAt(table.selectedRow);
    }
    function findPlaces(): void {
        const place = large.rows.placeOf(focusedFile);
        table.currentRow = place >= 0 ? place : Math.min(Math.max(0, table.currentRow), table.count - 1);
        table.selectedRow = large.rows.placeOf(selectedFile);
    }

    function find(): void {
        finding = true;
        field.forceActiveFocus(Qt.ShortcutFocusReason);
        field.selectAll();
    }
    function openMenu(row: LargeRow, x: real, y: real): void {
        menu.item = row.node;
        menu.itemName = row.name;
        menu.itemFacts = [row.kindName, row.size].join(" · ");
        menu.refusal = row.refusal;
        menu.ticked = large.isTicked(row.node);
        // Not at the row, which may be another one, or gone, when the list is sorted anew.
        const point = row.mapToItem(table, x, y);
        menu.popup(table, point.x, point.y);
    }
    function rowAt(row: int): LargeRow {
        return table.itemAt(row) as LargeRow;
    }

    firstFocus: listed ? table : state.visible ? state : null
    objectName: "large"
    scope: narrow && measured && large.known ? [large.shownCount, large.shownSize].join(" · ") : app.scan.scopeText
    status: !listed ? "" : hoveredWords !== "" ? hoveredWords : currentWords
    title: qsTr("Large and Old")

    // What had the focus is gone; the keyboard goes on with what there is now.
    onListedChanged: Qt.callLater(() => {
        if (view.activeFocus && !field.activeFocus)
            view.takeFocus(Qt.OtherFocusReason);
    })

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
            Accessible.name: qsTr("Measure again")
            enabled: !view.app.scan.running
            iconOnly: view.narrow
            iconPath: Theme.icons.rescan
            objectName: "large.measure"
            text: qsTr("Measure Again")
            visible: !view.app.scan.idle

            onClicked: view.app.scan.measureAgain()
        }
    ]

    bar: Column {
        visible: view.measured
        width: view.width

        Item {
            height: Theme.filterBarHeight
            width: parent.width

            Row {
                id: chips

                anchors.verticalCenter: parent.verticalCenter
                spacing: 8
                x: view.padding

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
                objectName: "large.text"
                placeholderText: qsTr("Name or folder contains")
                visible: !view.narrow || view.finding || text !== ""
                width: Math.min(Theme.px(240), (view.narrow ? parent.width - view.padding : figures.x - 16)
                    - chips.x - chips.width - 8)

                Keys.onDownPressed: if (view.listed) table.forceActiveFocus(Qt.TabFocusReason)
                onActiveFocusChanged: if (!activeFocus) view.finding = false
                onTextChanged: view.large.text = text
            }
            Row {
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
            Rectangle {
                anchors.bottom: parent.bottom
                color: Theme.line
                height: 1
                width: parent.width
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
    LargeColumns {
        id: layout

        narrow: view.narrow
        padding: view.padding
        width: sheet.width
    }
    Item {
        id: sheet

        anchors.horizontalCenter: parent.horizontalCenter
        height: parent.height
        visible: view.listed
        width: Math.min(parent.width, Theme.tableWidth)

        TableHead {
            id: head

            width: parent.width

            component Cell: HeadCell {
                required property int column

                height: head.height
                objectName: "large.head." + column
                order: view.large.column !== column ? HeadCell.None
                    : view.large.descending ? HeadCell.Descending : HeadCell.Ascending

                onClicked: view.large.sortBy(column)
            }

            Cell {
                column: LargeOldFlow.Name
                text: qsTr("Name and folder")
                width: Math.min(implicitWidth, layout.nameWidth)
                x: layout.nameX
            }
            Cell {
                column: LargeOldFlow.Kind
                text: qsTr("Kind")
                visible: !view.narrow
                width: layout.kindWidth
                x: layout.kindX
            }
            Cell {
                column: LargeOldFlow.LastUsed
                text: qsTr("Last used")
                width: layout.usedWidth
                x: layout.usedX
            }
            Cell {
                alignment: Text.AlignRight
                column: LargeOldFlow.Size
                text: view.narrow ? qsTr("Size") : qsTr("Size on disk")
                width: Math.max(implicitWidth, layout.sizeWidth)
                x: layout.sizeX + layout.sizeWidth - width
            }
        }
        RowTable {
            id: table

            Accessible.name: qsTr("Large and old files")
            anchors.bottom: parent.bottom
            anchors.top: head.bottom
            find: (text, row) => view.large.rows.findName(text, row)
            focus: true
            model: view.large.rows
            objectName: "large.table"
            opacity: view.large.running ? 0.55 : 1
            width: parent.width

            delegate: LargeRow {
                columns: layout
                current: index === table.currentRow
                focused: table.showsFocus && current
                selected: index === table.selectedRow
                width: table.width

                onChosen: table.choose(index)
                onCurrentChanged: if (current) view.currentWords = words
                onHoveredChanged: view.hoveredWords = hovered ? words : ""
                onMenuWanted: (x, y) => view.openMenu(this, x, y)
                onOpened: view.large.showOnMap(node)
                onTickWanted: {
                    chosen();
                    view.large.toggleTick(node);
                }
                onWordsChanged: if (current) view.currentWords = words
            }

            onActivated: row => view.large.showOnMap(view.rowAt(row).node)
            onCopyWanted: row => view.large.copyPath(view.rowAt(row).node)
            onMenuWanted: (row, item, x, y) => view.openMenu(item as LargeRow, x, y)
            onTickWanted: row => view.large.toggleTick(view.rowAt(row).node)
        }
        Connections {
            target: view.large

            function onReplaced(): void {
                menu.close();
            }
        }
        Connections {
            target: view.large.rows

            function onModelAboutToBeReset(): void {
                view.holdPlaces();
            }
            function onModelReset(): void {
                Qt.callLater(view.findPlaces);
            }
            function onRowsAboutToBeRemoved(): void {
                view.holdPlaces();
            }
            function onRowsRemoved(): void {
                Qt.callLater(view.findPlaces);
            }
        }
    }
    LoadingState {
        objectName: "large.loading"
        statement: qsTr("Reading when large files were last used")
        visible: view.measured && table.count === 0 && (view.large.running || !view.large.known)
        width: Math.min(Theme.px(420), parent.width - 2 * view.padding)
        x: view.padding
        y: 20
    }
    EmptyState {
        id: state

        readonly property bool nothingThere: view.measured && view.large.countText === "0"

        action: view.app.scan.running ? qsTr("Stop")
            : view.app.scan.rootUnreadable ? qsTr("Choose Folder…")
            : !view.measured ? qsTr("Measure This Disk")
            : !nothingThere ? qsTr("Clear")
            : view.large.age !== 0 ? qsTr("Show Files of Any Age") : ""
        anchors.fill: parent
        failed: view.app.scan.rootUnreadable
        iconPath: view.app.scan.rootUnreadable ? Theme.icons.warn : Theme.icons.large
        objectName: "large.empty"
        primary: !view.app.scan.running && !view.measured
        sentence: view.app.scan.running ? qsTr("The list appears when everything has been measured.")
            : view.app.scan.rootUnreadable ? qsTr("Nothing in it can be listed.")
            : !view.measured ? qsTr("Measure the disk to list large files that nobody has used for long.")
            : nothingThere ? qsTr("No file or package that was measured is that large and that old.")
            : qsTr("%1 are hidden by this text.").arg(view.large.countText)
        statement: view.app.scan.running ? view.app.scan.scopeText
            : view.app.scan.rootUnreadable ? qsTr("%1 could not be read").arg(view.app.scan.root)
            : !view.measured ? qsTr("Not measured yet")
            : nothingThere ? qsTr("Nothing here with these filters")
            : qsTr("No name or folder contains “%1”").arg(view.large.text)
        visible: !view.listed && !(view.measured && (view.large.running || !view.large.known))

        onTriggered: {
            if (view.app.scan.running)
                view.app.scan.stop();
            else if (view.app.scan.rootUnreadable)
                view.app.chooseFolderAndScan();
            else if (!view.measured)
                view.app.scan.scanDisk();
            else if (!nothingThere)
                field.clear();
            else
                view.large.age = 0;
        }
    }
    ItemMenu {
        id: menu

        objectName: "large.menu"
        zoomText: qsTr("Show on Map")

        onCopyWanted: node => view.large.copyPath(node)
        onOpenWanted: node => view.large.open(node)
        onShowWanted: node => view.large.showInFileManager(node)
        onTickWanted: node => view.large.toggleTick(node)
        onZoomWanted: node => view.large.showOnMap(node)
    }

    Shortcut {
        enabled: view.visible && view.measured
        sequence: "Ctrl+F"

        onActivated: view.find()
    }
    Shortcut {
        enabled: view.visible && view.large.ticks.count > 0
        sequence: "Del"

        onActivated: view.app.moves.review(view.large.ticks)
    }
}
