import QtQuick
import QtQuick.Dialogs
import QtQuick.Window
import OstrevoOrbel

/// Every move, and the way back.
ScreenFrame {
    id: view

    required property AppModel app
    readonly property JournalFlow journal: app.journal
    readonly property bool filled: journal.state === "filled"
    readonly property bool windowActive: Window.active

    /// Another program may have written to the journal, or emptied the Trash, while nobody looked.
    function lookAgain(): void {
        if (visible)
            journal.refresh();
    }
    function openMenu(row: int, item: Item, x: real, y: real): void {
        const facts = journal.facts(row);
        menu.row = row;
        menu.isItem = facts.item;
        menu.itemName = facts.title;
        menu.itemFacts = facts.detail;
        menu.possible = facts.possible;
        menu.popup(item, x, y);
    }

    firstFocus: filled ? table : state
    objectName: "journal"
    scope: qsTr("Everything moved and put back · kept on this computer")
    status: journal.status
    title: qsTr("Journal")

    Component.onCompleted: lookAgain()
    onFilledChanged: if (activeFocus && !field.activeFocus) takeFocus(Qt.OtherFocusReason)
    onVisibleChanged: lookAgain()
    onWindowActiveChanged: if (windowActive) lookAgain()

    actions: [
        EntryField {
            id: field

            enabled: view.filled || view.journal.state === "noMatch"
            keys: view.narrow ? "" : qsTr("Ctrl F")
            objectName: "journal.find"
            placeholderText: qsTr("Find in the journal")
            text: view.journal.search
            width: Theme.px(view.narrow ? 180 : 240)

            onTextEdited: view.journal.search = text
            onTextChanged: if (text === "") view.journal.search = ""
        },
        PushButton {
            enabled: view.filled || view.journal.state === "noMatch"
            iconOnly: view.narrow
            iconPath: Theme.icons.exporting
            objectName: "journal.export"
            text: qsTr("Export…")

            onClicked: exportDialog.open()
        }
    ]

    bar: PutBackStrip {
        height: visible ? implicitHeight : 0
        objectName: "journal.strip"
        putBack: view.app.putBack
        visible: putBack.statement !== ""
        width: view.width
    }

    RowTable {
        id: table

        Accessible.name: view.title
        anchors.fill: parent
        find: (text, row) => view.journal.find(text, row)
        model: view.journal.list
        objectName: "journal.table"
        visible: view.filled

        delegate: JournalRow {
            app: view.app
            current: ListView.isCurrentItem
            list: table
            narrow: view.narrow
            padding: Math.max(view.padding, (table.width - Theme.tableWidth) / 2)
            width: table.width

            onFoldWanted: view.journal.setFolded(index, !folded)
            onMenuWanted: (x, y) => view.openMenu(index, this, x, y)
            onPutBackWanted: view.journal.putBack(index)
        }
        footer: Item {
            height: words.height + 32
            width: table.width

            ThemedText {
                id: words

                anchors.centerIn: parent
                color: Theme.text3
                horizontalAlignment: Text.AlignHCenter
                role: ThemedText.Small
                text: qsTr("Put back never overwrites anything. An item whose place is taken stays in the Trash.")
                width: parent.width - 2 * view.padding
                wrapMode: Text.Wrap
            }
        }

        onActivated: row => view.journal.putBack(row)
        onCopyWanted: row => view.journal.copyPath(row)
        onMenuWanted: (row, item, x, y) => view.openMenu(row, item, x, y)
        onTickWanted: row => {
            const shown = itemAt(row);
            if (shown && shown.head)
                view.journal.setFolded(row, !shown.folded);
        }
        onTurned: (row, right) => view.journal.setFolded(row, !right)
    }
    LoadingState {
        objectName: "journal.loading"
        statement: qsTr("Reading the journal")
        visible: view.journal.state === "loading"
        width: Math.min(Theme.px(440), view.width - 2 * view.padding)
        x: view.padding
        y: view.padding
    }
    EmptyState {
        id: state

        readonly property bool failedToRead: view.journal.state === "failed"
        readonly property bool noMatch: view.journal.state === "noMatch"

        action: failedToRead ? qsTr("Try Again") : noMatch ? qsTr("Show All") : ""
        anchors.centerIn: parent
        failed: failedToRead
        focus: true
        height: implicitHeight
        iconPath: failedToRead ? Theme.icons.warn : noMatch ? Theme.icons.search : Theme.icons.journal
        objectName: "journal.empty"
        primary: !noMatch
        sentence: failedToRead ? view.journal.failure
            : noMatch ? qsTr("No title and no path contains “%1”.").arg(view.journal.search)
            : qsTr("Every move to the Trash will be listed here, and can be put back from here.")
        statement: failedToRead ? qsTr("The journal could not be read")
            : noMatch ? qsTr("Nothing found") : qsTr("Nothing has been moved yet")
        visible: !view.filled && view.journal.state !== "loading"
        width: parent.width - 2 * view.padding

        onTriggered: {
            if (failedToRead)
                view.journal.refresh();
            else
                field.clear();
        }
    }
    ActionMenu {
        id: menu

        property int row: -1
        property bool isItem: false
        property bool possible: false

        objectName: "journal.menu"

        MenuEntry {
            height: visible ? implicitHeight : 0
            iconPath: Theme.icons.folders
            objectName: "journal.menu.show"
            text: qsTr("Show in File Manager")
            visible: menu.isItem

            onTriggered: view.journal.showInFileManager(menu.row)
        }
        MenuEntry {
            height: visible ? implicitHeight : 0
            iconPath: Theme.icons.copy
            keys: qsTr("Ctrl C")
            objectName: "journal.menu.copy"
            text: qsTr("Copy Path")
            visible: menu.isItem

            onTriggered: view.journal.copyPath(menu.row)
        }
        MenuLine {
            height: visible ? implicitHeight : 0
            visible: menu.isItem
        }
        MenuEntry {
            enabled: menu.possible && view.app.putBack.ready
            iconPath: Theme.icons.putBack
            keys: qsTr("Enter")
            objectName: "journal.menu.putBack"
            text: qsTr("Put Back")

            onTriggered: view.journal.putBack(menu.row)
        }
    }
    FileDialog {
        id: exportDialog

        defaultSuffix: selectedNameFilter.index === 1 ? "json" : "md"
        fileMode: FileDialog.SaveFile
        nameFilters: [qsTr("Markdown (*.md)"), qsTr("JSON (*.json)")]
        title: qsTr("Export the journal")

        onAccepted: view.journal.exportJournal(selectedFile)
    }

    Connections {
        target: view.journal.list

        // The number of a row may be another row's by now.
        function onRowsChanged(): void {
            menu.close();
            if (table.selectedRow >= 0)
                table.selectedRow = table.currentRow;
        }
    }
    Shortcut {
        enabled: view.visible && field.enabled
        sequence: "Ctrl+F"

        onActivated: field.forceActiveFocus(Qt.ShortcutFocusReason)
    }
}
