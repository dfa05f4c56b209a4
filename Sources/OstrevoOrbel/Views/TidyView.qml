import QtQuick
import OstrevoOrbel

/// What can go without a loss: what programs make again, empty folders, and shortcuts that lead nowhere.
ScreenFrame {
    id: screen

    readonly property TidyFlow flow: app.tidy
    readonly property alias hasLists: unmeasured.measured
    /// Whether there is room for one list at a time.
    readonly property bool tabbed: narrow || height < Theme.px(720)
    /// Until one is chosen, the first list with something in it.
    readonly property int tab: chosenTab >= 0 ? chosenTab : Math.max(0, cards.findIndex(card => card?.list.total > 0))
    property int chosenTab: -1
    readonly property var cards: [rebuildable, folders, shortcuts]
    /// Where there is room for all, it only opens with the focus.
    readonly property TidyCard first: cards[tab] as TidyCard
    readonly property TidyCard active: cards.find(card => card?.table.activeFocus || card?.table.hoveredRow) ?? first

    firstFocus: (hasLists ? first?.firstFocus : unmeasured) as Item
    objectName: "tidy"
    scope: qsTr("Home folder · found by rule, nothing has been moved")
    status: !hasLists ? "" : flow.running ? qsTr("Looking for what can be tidied away…") : active?.table.status ?? ""
    title: qsTr("Tidy")

    actions: [
        EntryField {
            findable: true
            found: [screen.flow.rebuildableText, screen.flow.foldersText, screen.flow.shortcutsText].join(", ")
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
        visible: screen.tabbed && screen.hasLists
        width: screen.width

        Segmented {
            anchors.left: parent.left
            anchors.leftMargin: screen.padding
            anchors.verticalCenter: parent.verticalCenter
            current: screen.tab
            name: qsTr("List")
            objectName: "tidy.tab"
            options: [qsTr("Rebuildable"), qsTr("Empty folders"), qsTr("Broken shortcuts")]

            onChosen: index => screen.chosenTab = index
        }
    }

    FocusScope {
        id: lists

        readonly property int between: Theme.cardGap
        readonly property real sideWidth: screen.tabbed ? width : Math.floor((width - between) * 0.44)
        readonly property real sideHeight: screen.tabbed ? height : Math.floor((height - between) / 2)

        anchors.bottom: parent.bottom
        anchors.bottomMargin: screen.padding
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        anchors.topMargin: screen.padding
        focus: true
        visible: screen.hasLists
        width: Math.min(parent.width - 2 * screen.padding, Theme.tableWidth)

        TidyCard {
            id: rebuildable

            actions: screen.app.actions
            flow: screen.flow
            found: !screen.flow.known ? "" : screen.app.scan.partial ? qsTr("Known only after a complete measurement")
                : screen.flow.rebuildableText
            heading: qsTr("Rebuildable")
            height: parent.height
            iconPath: Theme.icons.rescan
            list: screen.flow.rebuildable
            moveText: screen.flow.moveRebuildableText
            nothing: screen.app.scan.partial ? qsTr("The measurement was stopped, so a folder may hold what has not been seen. Measure again to list what programs make again.")
                : qsTr("Build output, fetched packages and caches are listed here, where it is certain what makes them again.")
            nothingTitle: screen.app.scan.partial ? qsTr("Not known yet") : qsTr("Nothing to tidy here")
            objectName: "tidy.rebuildable"
            showsKind: true
            sized: true
            ticked: screen.flow.rebuildableTicked
            visible: !screen.tabbed || screen.tab === 0
            width: screen.tabbed ? lists.width : lists.width - lists.between - lists.sideWidth
            x: Theme.along(0, width, lists.width)

            filters: Row {
                anchors.left: parent?.left
                anchors.leftMargin: Theme.cardPadding
                anchors.verticalCenter: parent?.verticalCenter
                spacing: 8

                ChipMenu {
                    about: qsTr("Program")
                    choice: screen.flow.program
                    choices: screen.flow.programs
                    objectName: "tidy.program"

                    onChosen: choice => screen.flow.program = choice
                }
                ChipMenu {
                    about: qsTr("Unchanged for")
                    choice: screen.flow.age
                    choices: screen.flow.ages
                    objectName: "tidy.age"

                    onChosen: choice => screen.flow.age = choice
                }
            }
        }
        TidyCard {
            id: folders

            actions: screen.app.actions
            flow: screen.flow
            found: !screen.flow.known ? "" : screen.app.scan.partial ? qsTr("Known only after a complete measurement")
                : screen.flow.foldersText
            heading: qsTr("Empty folders")
            height: lists.sideHeight
            iconPath: Theme.icons.folders
            itemWord: qsTr("empty folder")
            list: screen.flow.folders
            moveText: screen.flow.moveFoldersText
            nothing: screen.app.scan.partial ? qsTr("The measurement was stopped, so a folder may hold what has not been seen. Measure again to list empty ones.")
                : qsTr("No folder in the home folder is empty, except those kept on purpose.")
            nothingTitle: screen.app.scan.partial ? qsTr("Not known yet") : qsTr("Nothing to tidy here")
            objectName: "tidy.folders"
            showsKind: true
            ticked: screen.flow.foldersTicked
            visible: !screen.tabbed || screen.tab === 1
            width: lists.sideWidth
            x: Theme.along(lists.width - width, width, lists.width)
        }
        TidyCard {
            id: shortcuts

            actions: screen.app.actions
            flow: screen.flow
            found: screen.flow.known ? screen.flow.shortcutsText : ""
            heading: qsTr("Broken shortcuts")
            height: lists.sideHeight
            iconPath: Theme.icons.link
            legend: qsTr("Missing: the target is gone. Unknown: it could not be checked. Intentional: made by a program on purpose. Locked items stay where they are.")
            list: screen.flow.shortcuts
            moveText: screen.flow.moveShortcutsText
            nothing: qsTr("Every shortcut in the home folder leads somewhere.")
            objectName: "tidy.shortcuts"
            ticked: screen.flow.shortcutsTicked
            visible: !screen.tabbed || screen.tab === 2
            width: lists.sideWidth
            x: Theme.along(lists.width - width, width, lists.width)
            y: parent.height - height
        }
    }
    ListState {
        id: unmeasured

        anchors.fill: parent
        app: screen.app
        iconPath: Theme.icons.tidy
        needsDisk: true
        objectName: "tidy.empty"
        unmeasured: qsTr("What programs make again, empty folders and broken shortcuts are found in what was measured.")
        visible: !screen.hasLists
        waiting: qsTr("The lists appear when everything has been measured.")
    }

    Shortcut {
        enabled: screen.visible && screen.hasLists
        sequence: "Del"

        onActivated: screen.flow.review((screen.cards.find(card => card?.table.activeFocus) ?? screen.first).list)
    }
}
