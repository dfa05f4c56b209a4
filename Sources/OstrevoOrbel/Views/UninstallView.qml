import QtQuick
import OstrevoOrbel

/// Apps, and what they leave behind: the list of all beside what would go with the one that is selected.
ScreenFrame {
    id: screen

    readonly property AppsFlow flow: app.apps
    readonly property bool here: !app.scan.foreign
    readonly property bool hasApps: here && flow.loaded && flow.anyListed
    /// Where there is no room for both: whether the selected app is shown in place of the list.
    property bool detailOpen: false
    readonly property bool anySelected: flow.selected.valid
    readonly property bool showsDetail: hasApps && (!narrow || detailOpen)

    function showDetail(): void {
        if (!screen.narrow)
            return;
        screen.detailOpen = true;
        detail.forceActiveFocus(Qt.TabFocusReason);
    }
    function showList(): void {
        screen.detailOpen = false;
        list.forceActiveFocus(Qt.TabFocusReason);
    }

    firstFocus: (!here ? elsewhere : !hasApps ? nothing : list.visible ? list.table : detail.table) as Item
    objectName: "uninstall"
    scope: flow.loaded ? qsTr("%1 on this computer").arg(flow.summary) : qsTr("Apps and their leftovers")
    status: detail.activeFocus ? detail.status : ""
    title: qsTr("Uninstall")

    actions: [
        EntryField {
            id: find

            enabled: screen.hasApps
            findable: true
            found: screen.flow.shownText
            keys: qsTr("Ctrl F")
            objectName: "uninstall.find"
            placeholderText: qsTr("Find an app")
            text: screen.flow.findText
            visible: screen.here
            width: screen.narrow ? Theme.px(190) : Theme.px(240)

            Keys.onDownPressed: screen.showList()
            onTextEdited: screen.flow.findText = text
            onTextChanged: if (text === "") screen.flow.findText = ""
        },
        PushButton {
            enabled: !screen.flow.loading
            iconOnly: screen.narrow
            iconPath: Theme.icons.rescan
            objectName: "uninstall.readAgain"
            text: qsTr("Read Again")
            visible: screen.here

            onClicked: screen.flow.readAgain()
        }
    ]

    foot: TickBar {
        narrow: screen.narrow
        objectName: "uninstall.tickBar"
        remark: screen.narrow ? "" : qsTr("for %1").arg(screen.flow.selected.name)
        ticks: screen.flow.ticks
        width: screen.width

        onReviewed: screen.app.moves.review(screen.flow.ticks)
    }

    Component.onCompleted: flow.open()
    // What was looked at has been moved, removed or let stay: nothing is to be seen of it.
    onAnySelectedChanged: {
        if (!anySelected && detailOpen && detail.activeFocus)
            showList();
        else if (!anySelected)
            detailOpen = false;
    }
    onNarrowChanged: if (!narrow) detailOpen = false

    ListState {
        id: nothing

        action: qsTr("Read Again")
        anchors.fill: parent
        focus: true
        iconPath: Theme.icons.uninstall
        looking: screen.flow.loaded ? "" : qsTr("Reading which apps are installed")
        objectName: "uninstall.empty"
        padding: screen.padding
        sentence: qsTr("No launcher of an app could be found in the places where this desktop keeps them.")
        statement: qsTr("No apps were found")
        visible: screen.here && !screen.hasApps

        onTriggered: screen.flow.readAgain()
    }
    ListState {
        id: elsewhere

        anchors.fill: parent
        app: screen.app
        iconPath: Theme.icons.uninstall
        needsDisk: true
        objectName: "uninstall.elsewhere"
        visible: !screen.here
    }
    AppsPane {
        id: list

        actions: screen.app.actions
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.top: parent.top
        flow: screen.flow
        focus: true
        padding: 16
        visible: screen.hasApps && (!screen.narrow || !screen.detailOpen)
        width: screen.narrow ? parent.width : Theme.px(380)

        onOpened: screen.showDetail()
    }
    AppDetail {
        id: detail

        actions: screen.app.actions
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.top: parent.top
        flow: screen.flow
        narrow: screen.narrow
        padding: screen.padding
        visible: screen.showsDetail
        width: screen.narrow ? parent.width : parent.width - list.width

        onBackWanted: screen.showList()
    }
}
