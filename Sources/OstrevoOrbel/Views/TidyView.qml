import QtQuick
import OstrevoOrbel

/// What only takes up room in lists: empty folders, and shortcuts that lead nowhere.
ScreenFrame {
    id: screen

    readonly property TidyFlow flow: app.tidy
    readonly property alias hasLists: unmeasured.measured
    /// Which of the two is shown where there is no room for both.
    property int tab: 0
    readonly property bool isOnlyShortcuts: flow.folders.total === 0 && flow.shortcuts.total > 0

    firstFocus: (!hasLists ? unmeasured : (narrow ? tab === 1 : isOnlyShortcuts) ? shortcuts.firstFocus
        : folders.firstFocus) as Item
    objectName: "tidy"
    scope: qsTr("Home folder · found by rule, nothing has been moved")
    status: !hasLists ? "" : flow.running ? qsTr("Looking for what can be tidied away…")
        : shortcuts.table.activeFocus || shortcuts.table.hoveredRow ? shortcuts.table.status : folders.table.status
    title: qsTr("Tidy")

    actions: [
        EntryField {
            findable: true
            found: [screen.flow.foldersText, screen.flow.shortcutsText].join(", ")
            keys: screen.narrow ? "" : qsTr("Ctrl F")
            objectName: "tidy.find"
            placeholderText: qsTr("Name or folder contains")
            visible: screen.hasLists
            width: screen.narrow ? Theme.px(200) : Theme.px(260)

            onTextChanged: screen.flow.filter = text
        },
        PushButton {
            enabled: !screen.flow.running
            iconOnly: screen.narrow
            iconPath: Theme.icons.rescan
            objectName: "tidy.again"
            text: qsTr("Look Again")
            visible: screen.hasLists

            onClicked: screen.flow.lookAgain()
        }
    ]

    bar: FilterBar {
        height: visible ? implicitHeight : 0
        visible: screen.narrow && screen.hasLists
        width: screen.width

        Segmented {
            anchors.left: parent.left
            anchors.leftMargin: screen.padding
            anchors.verticalCenter: parent.verticalCenter
            current: screen.tab
            name: qsTr("List")
            objectName: "tidy.tab"
            options: [qsTr("Empty folders"), qsTr("Broken shortcuts")]

            onChosen: index => screen.tab = index
        }
    }

    FocusScope {
        id: lists

        readonly property int between: Theme.cardGap
        readonly property real cardWidth: screen.narrow ? width : Math.floor((width - between) / 2)

        anchors.bottom: parent.bottom
        anchors.bottomMargin: screen.padding
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        anchors.topMargin: screen.padding
        focus: true
        visible: screen.hasLists
        width: Math.min(parent.width - 2 * screen.padding, Theme.tableWidth)

        TidyCard {
            id: folders

            actions: screen.app.actions
            flow: screen.flow
            found: !screen.flow.known ? "" : screen.app.scan.partial ? qsTr("Known only after a complete measurement")
                : screen.flow.foldersText
            heading: qsTr("Empty folders")
            height: parent.height
            iconPath: Theme.icons.folders
            list: screen.flow.folders
            moveText: screen.flow.moveFoldersText
            nothing: screen.app.scan.partial ? qsTr("The measurement was stopped, so a folder may hold what has not been seen. Measure again to list empty ones.")
                : qsTr("No folder in the home folder is empty, except those kept on purpose.")
            nothingTitle: screen.app.scan.partial ? qsTr("Not known yet") : qsTr("Nothing to tidy here")
            objectName: "tidy.folders"
            ticked: screen.flow.foldersTicked
            visible: !screen.narrow || screen.tab === 0
            width: lists.cardWidth
            x: Theme.along(0, width, lists.width)
        }
        TidyCard {
            id: shortcuts

            actions: screen.app.actions
            flow: screen.flow
            found: screen.flow.known ? screen.flow.shortcutsText : ""
            heading: qsTr("Broken shortcuts")
            height: parent.height
            iconPath: Theme.icons.link
            legend: qsTr("Missing: the target is gone. Unknown: it could not be checked. Intentional: made by a program on purpose. Locked items stay where they are.")
            list: screen.flow.shortcuts
            moveText: screen.flow.moveShortcutsText
            nothing: qsTr("Every shortcut in the home folder leads somewhere.")
            objectName: "tidy.shortcuts"
            ticked: screen.flow.shortcutsTicked
            visible: !screen.narrow || screen.tab === 1
            width: lists.cardWidth
            x: Theme.along(lists.width - width, width, lists.width)
        }
    }
    ListState {
        id: unmeasured

        anchors.fill: parent
        app: screen.app
        iconPath: Theme.icons.tidy
        objectName: "tidy.empty"
        unmeasured: qsTr("Empty folders and broken shortcuts are found in what was measured.")
        visible: !screen.hasLists
        waiting: qsTr("The lists appear when everything has been measured.")
    }

    Shortcut {
        enabled: screen.visible && screen.hasLists
        sequence: "Del"

        onActivated: screen.flow.review(shortcuts.table.activeFocus ? screen.flow.shortcuts : screen.flow.folders)
    }
}
