pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Dialogs
import OstrevoOrbel

/// Files that are the same byte for byte, in groups: which copy of each stays, and which go.
ScreenFrame {
    id: screen

    readonly property DuplicatesFlow flow: app.duplicates
    readonly property bool here: !app.scan.foreign
    readonly property bool hasList: here && flow.searched && !flow.running && table.count > 0

    firstFocus: (flow.running ? stop : hasList ? table : nothingToShow) as Item
    objectName: "duplicates"
    scope: flow.scopeText
    status: flow.running ? qsTr("Searching for duplicates…") : hasList ? table.status : ""
    title: qsTr("Duplicates")

    actions: [
        EntryField {
            id: field

            findable: true
            found: screen.flow.groupsText
            keys: screen.narrow ? "" : qsTr("Ctrl F")
            objectName: "duplicates.find"
            placeholderText: qsTr("Name or folder contains")
            visible: screen.here && screen.flow.searched && !screen.flow.running
            width: screen.narrow ? Theme.px(180) : Theme.px(260)

            Keys.onDownPressed: table.forceActiveFocus(Qt.TabFocusReason)
            onTextChanged: screen.flow.filter = text
        },
        PushButton {
            hint: qsTr("Ticks every copy in every group shown, except the one that is kept")
            iconOnly: screen.narrow
            iconPath: Theme.icons.check
            objectName: "duplicates.tickOthers"
            text: qsTr("Select All Except Kept")
            visible: screen.hasList

            onClicked: screen.flow.tickAllOthers()
        },
        PushButton {
            iconOnly: screen.narrow
            iconPath: Theme.icons.rescan
            objectName: "duplicates.search"
            text: qsTr("Search Again")
            visible: screen.here && screen.flow.searched && !screen.flow.running && screen.app.scan.measuredAny

            onClicked: screen.flow.search()
        },
        PushButton {
            id: stop

            enabled: !screen.flow.stopping
            iconPath: Theme.icons.stop
            keys: qsTr("Esc")
            objectName: "duplicates.stop"
            ringAlways: true
            text: screen.flow.stopping ? qsTr("Stopping…") : qsTr("Stop")
            visible: screen.flow.running

            onClicked: screen.flow.stop()
        }
    ]

    bar: Column {
        width: screen.width

        DuplicatesBar {
            flow: screen.flow
            height: visible ? implicitHeight : 0
            middling: screen.middling
            narrow: screen.narrow
            padding: screen.padding
            visible: screen.here && screen.app.scan.measuredAny && !screen.flow.running || screen.hasList
            width: parent.width

            onFolderWanted: folderDialog.open()
        }
        Banner {
            readonly property bool stale: screen.flow.stale
            readonly property bool partial: screen.flow.partial

            action: screen.app.scan.measuredAny ? qsTr("Search Again") : ""
            explanation: stale ? qsTr("Each copy is proved again before it moves, but newer files are missing here.")
                : partial ? qsTr("Every group that is listed was compared to the last byte; there may be more.")
                : qsTr("Search again to find those of %1 or more.").arg(screen.flow.minimumText)
            height: visible ? implicitHeight : 0
            objectName: "duplicates.banner"
            radius: 0
            statement: stale ? qsTr("Measured again since this search.") : partial ? qsTr("Search stopped — partial.")
                : qsTr("The search began with larger files.")
            visible: screen.here && screen.flow.searched && !screen.flow.running
                && (stale || partial || screen.flow.tooFew)
            width: parent.width

            onTriggered: screen.flow.search()
        }
    }

    foot: TickBar {
        count: screen.flow.tickedCount
        narrow: screen.narrow
        objectName: "duplicates.tickBar"
        remark: screen.flow.tickedRemark
        reviewText: screen.flow.reviewText
        reviewable: !screen.flow.reviewing && !screen.app.scan.running
        statement: screen.flow.tickedText
        sum: screen.flow.tickedFrees
        width: screen.width

        onCleared: screen.flow.clearTicks()
        onReviewed: screen.flow.review()
    }

    ItemTable {
        id: table

        /// Which of a copy's two controls the keys act on: its tick, or the mark that keeps it.
        property bool keepFocused: false
        readonly property DuplicateRow current: (contentItem as ListView).currentItem as DuplicateRow

        function menuOf(row: Item): var {
            return (row as DuplicateRow).head ? groupMenu : copyMenu;
        }

        Accessible.name: qsTr("Groups of identical files")
        anchors.fill: parent
        menu: copyMenu
        model: screen.flow.groups
        objectName: "duplicates.table"
        part: (keepFocused && current && !current.head && !current.kept ? current.keep : current) as Item
        visible: screen.hasList

        delegate: DuplicateRow {
            closing: index === table.count - 1
            keepFocused: table.keepFocused
            narrow: screen.narrow
            padding: screen.padding

            onFoldWanted: screen.flow.setFolded(index, !folded)
            onKeepWanted: {
                table.keepFocused = true;
                screen.flow.keep(index);
            }
            onTickWanted: table.keepFocused = false
        }

        onActivated: row => {
            const shown = itemAt(row);
            if (shown.head)
                screen.flow.setFolded(row, !shown.folded);
            else
                screen.app.actions.showOnMap(shown.key);
        }
        onAllWanted: ticked => {
            if (ticked)
                screen.flow.tickAllOthers();
            else
                screen.flow.clearTicks();
        }
        onTickWanted: row => {
            const shown = itemAt(row);
            if (!shown.head && (keepFocused || shown.kept))
                screen.flow.keep(row);
            else
                screen.flow.toggleTick(row);
        }
        onTurned: (row, onward) => {
            const shown = itemAt(row);
            if (shown.head)
                screen.flow.setFolded(row, !onward);
            else if (onward || keepFocused && !shown.kept)
                keepFocused = onward;
            else
                currentIndex = selectedRow = screen.flow.headOf(row);
        }
    }
    DuplicatesSearching {
        anchors.centerIn: parent
        flow: screen.flow
        visible: screen.flow.running
        width: Math.min(Theme.px(520), parent.width - 2 * screen.padding)
    }
    ListState {
        id: nothingToShow

        readonly property bool filtered: screen.flow.searched && screen.flow.countText !== "0"

        action: screen.flow.outsideHome ? "" : !screen.flow.searched ? qsTr("Find Duplicates")
            : filtered && screen.flow.filter !== "" ? qsTr("Show All Groups") : ""
        anchors.fill: parent
        app: screen.app
        iconPath: Theme.icons.duplicates
        needsDisk: true
        objectName: "duplicates.empty"
        primary: !filtered
        sentence: screen.flow.outsideHome ? qsTr("%1 is not in the home folder, and duplicates are searched only there.").arg(screen.app.scan.root)
            : !screen.flow.searched ? qsTr("Files of equal size in the home folder are read and compared to the last byte. That can take a while, and changes nothing.")
            : filtered ? qsTr("No group has a copy with such a name or folder, and files of %1 or more.").arg(screen.flow.minimumText)
            : qsTr("No two files of %1 or more in the home folder are the same in every byte.").arg(screen.flow.minimumText)
        statement: screen.flow.outsideHome ? qsTr("Nothing to search here")
            : !screen.flow.searched ? qsTr("Not searched yet") : filtered ? qsTr("No group matches")
            : qsTr("No duplicates found")
        unmeasured: qsTr("Files of equal size are known once the disk is measured.")
        visible: !screen.flow.running && !screen.hasList
        waiting: qsTr("Duplicates can be searched when everything has been measured.")

        onTriggered: {
            if (filtered)
                field.clear();
            else
                screen.flow.search();
        }
    }
    ItemMenu {
        id: copyMenu

        readonly property bool kept: refusal === keptWords
        readonly property string keptWords: qsTr("This copy stays")

        actions: screen.app.actions
        objectName: "duplicates.menu"

        onAboutToShow: table.keepFocused = false

        MenuEntry {
            iconPath: copyMenu.kept ? Theme.icons.check : ""
            objectName: "duplicates.menu.keep"
            text: qsTr("Keep This Copy")

            onTriggered: screen.flow.keep(table.rowOf(copyMenu.key))
        }
    }
    ActionMenu {
        id: groupMenu

        property int row: -1
        property bool ticked: false
        property bool folded: false

        function show(head: var): void {
            row = head.index;
            itemName = head.name;
            itemFacts = head.facts;
            ticked = head.tick === Qt.Checked;
            folded = head.folded;
        }

        objectName: "duplicates.groupMenu"

        MenuEntry {
            keys: groupMenu.folded !== Theme.mirrored ? "→" : "←"
            objectName: "duplicates.groupMenu.fold"
            text: groupMenu.folded ? qsTr("Unfold") : qsTr("Fold")

            onTriggered: screen.flow.setFolded(groupMenu.row, !groupMenu.folded)
        }
        MenuEntry {
            iconPath: Theme.icons.up
            objectName: "duplicates.groupMenu.foldAll"
            text: qsTr("Fold All Groups")

            onTriggered: screen.flow.setAllFolded(true)
        }
        MenuEntry {
            iconPath: Theme.icons.down
            objectName: "duplicates.groupMenu.unfoldAll"
            text: qsTr("Unfold All Groups")

            onTriggered: screen.flow.setAllFolded(false)
        }
        MenuLine {
        }
        MenuEntry {
            iconPath: groupMenu.ticked ? Theme.icons.close : Theme.icons.check
            keys: qsTr("Space")
            objectName: "duplicates.groupMenu.tick"
            text: groupMenu.ticked ? qsTr("Untick This Group") : qsTr("Select All Except Kept")

            onTriggered: screen.flow.toggleTick(groupMenu.row)
        }
        MenuLine {
        }
        MenuEntry {
            iconPath: Theme.icons.list
            keys: qsTr("Ctrl A")
            objectName: "duplicates.groupMenu.all"
            text: qsTr("Select All")

            onTriggered: screen.flow.tickAllOthers()
        }
        MenuEntry {
            iconPath: Theme.icons.close
            keys: qsTr("Ctrl Shift A")
            objectName: "duplicates.groupMenu.none"
            text: qsTr("Clear Ticks")

            onTriggered: screen.flow.clearTicks()
        }
    }
    FolderDialog {
        id: folderDialog

        acceptLabel: qsTr("Choose")
        currentFolder: screen.app.homeFolder
        title: qsTr("Keep copies in this folder first")

        onAccepted: screen.flow.keepFolderFirst(selectedFolder)
    }

    Shortcut {
        enabled: screen.visible && screen.flow.running
        sequence: "Esc"

        onActivated: screen.flow.stop()
    }
}
