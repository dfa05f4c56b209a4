import QtQuick
import QtQuick.Window
import OstrevoOrbel

/// Every move, and the way back.
ScreenFrame {
    id: view

    readonly property JournalFlow journal: app.journal
    readonly property bool filled: journal.state === "filled"
    readonly property bool windowActive: Window.active

    /// Another program may have written to the journal, or emptied the Trash, while the screen was not shown.
    function lookAgain(): void {
        if (visible)
            journal.refresh();
    }
    firstFocus: (filled ? table : state) as Item
    objectName: "journal"
    scope: qsTr("Everything moved and put back · kept on this computer")
    status: journal.status
    title: qsTr("Journal")

    Component.onCompleted: lookAgain()
    onVisibleChanged: lookAgain()
    onWindowActiveChanged: if (windowActive) lookAgain()

    actions: [
        EntryField {
            id: field

            enabled: view.filled || view.journal.state === "noMatch"
            findable: true
            found: state.noMatch ? state.statement : ""
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

            onClicked: exportDialog.ask()
        }
    ]

    bar: PutBackStrip {
        height: visible ? implicitHeight : 0
        objectName: "journal.strip"
        putBack: view.app.putBack
        visible: putBack.statement !== ""
        width: view.width
    }

    ItemTable {
        id: table

        Accessible.name: view.title
        anchors.fill: parent
        menu: menu
        model: view.journal.list
        objectName: "journal.table"
        visible: view.filled

        // A footer of Qt 6.4 cannot be what is bound to its context, so nothing in this file is.
        // qmllint disable unqualified
        delegate: JournalRow {
            narrow: view.narrow
            padding: Math.max(view.padding, (table.width - Theme.tableWidth) / 2)
            ready: view.app.putBack.ready

            onPutBackWanted: view.journal.putBack(index)
            onTapped: if (head) view.journal.setFolded(index, !folded)
        }
        footer: Item {
            height: words.height + 32
            width: table.width

            SmallText {
                id: words

                anchors.centerIn: parent
                color: Theme.text3
                horizontalAlignment: Text.AlignHCenter
                text: qsTr("Put back never overwrites anything. An item whose place is taken stays in the Trash.")
                width: parent.width - 2 * view.padding
                wrapMode: Text.Wrap
            }
        }
        // qmllint enable unqualified

        onActivated: row => view.journal.putBack(row)
        onTickWanted: row => {
            const shown = itemAt(row);
            if (shown.head)
                view.journal.setFolded(row, !shown.folded);
        }
        onTurned: (row, onward) => view.journal.setFolded(row, !onward)
    }
    ListState {
        id: state

        readonly property bool noMatch: view.journal.state === "noMatch"

        action: failed ? qsTr("Try Again") : noMatch ? qsTr("Show All") : ""
        anchors.fill: parent
        failed: view.journal.state === "failed"
        focus: true
        iconPath: failed ? Theme.icons.warn : noMatch ? Theme.icons.search : Theme.icons.journal
        looking: view.journal.state === "loading" ? qsTr("Reading the journal") : ""
        objectName: "journal.empty"
        padding: view.padding
        primary: !noMatch
        sentence: failed ? view.journal.failure
            : noMatch ? qsTr("No title and no path contains “%1”.").arg(view.journal.search)
            : qsTr("Every move to the Trash will be listed here, and can be put back from here.")
        statement: failed ? qsTr("The journal could not be read")
            : noMatch ? qsTr("Nothing found") : qsTr("Nothing has been moved yet")
        visible: !view.filled

        onTriggered: {
            if (failed)
                view.journal.refresh();
            else
                field.clear();
        }
    }
    ItemMenu {
        id: menu

        property int row: -1
        property bool possible: false

        function show(shown: var): void {
            showItem(shown);
            row = shown.index;
            possible = shown.possible;
            // Where it is now: in the Trash, else where it was.
            shownKey = shown.model.place ?? "";
        }

        actions: view.app.actions
        objectName: "journal.menu"
        openable: false
        tickable: false

        MenuLine {
            visible: menu.key !== ""
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
    SaveDialog {
        id: exportDialog

        app: view.app
        proposal: "Vanto journal"
        title: qsTr("Export the journal")

        onAccepted: view.journal.exportJournal(selectedFile)
    }

    Connections {
        target: view.journal.list

        // The number of a row may be another row's by now.
        function onRowsChanged(): void {
            menu.close();
        }
    }
}
