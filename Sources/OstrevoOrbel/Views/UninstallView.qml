import QtQuick
import OstrevoOrbel

/// Apps, and what they leave behind: the list of all beside what would go with the one that is selected.
ScreenFrame {
    id: screen

    required property AppModel app
    readonly property AppsFlow flow: app.apps
    readonly property bool hasApps: flow.loaded && flow.countText !== "0"
    /// Where there is no room for both: whether the selected app is shown in place of the list.
    property bool detailOpen: false
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

    firstFocus: !flow.loaded ? loading : !hasApps ? nothing : list.visible ? list : detail
    objectName: "uninstall"
    scope: flow.loaded ? qsTr("%1 on this computer").arg(flow.summary) : qsTr("Apps and their leftovers")
    status: detail.activeFocus ? detail.status : ""
    title: qsTr("Uninstall")

    actions: [
        EntryField {
            id: find

            enabled: screen.hasApps
            keys: qsTr("Ctrl F")
            objectName: "uninstall.find"
            placeholderText: qsTr("Find an app")
            text: screen.flow.findText
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
    // What had the focus while there was no list.
    onHasAppsChanged: if (screen.activeFocus && !find.activeFocus) Qt.callLater(screen.takeFocus, Qt.TabFocusReason)
    onNarrowChanged: if (!narrow) detailOpen = false

    LoadingState {
        id: loading

        anchors.left: parent.left
        anchors.leftMargin: screen.padding
        anchors.top: parent.top
        anchors.topMargin: screen.padding
        objectName: "uninstall.loading"
        statement: qsTr("Reading which apps are installed")
        visible: !screen.flow.loaded
    }
    EmptyState {
        id: nothing

        action: qsTr("Read Again")
        anchors.centerIn: parent
        focus: true
        height: implicitHeight
        iconPath: Theme.icons.uninstall
        objectName: "uninstall.empty"
        sentence: qsTr("No launcher of an app could be found in the places where this desktop keeps them.")
        statement: qsTr("No apps were found")
        visible: screen.flow.loaded && !screen.hasApps
        width: parent.width - 2 * screen.padding

        onTriggered: screen.flow.readAgain()
    }
    AppsPane {
        id: list

        anchors.bottom: parent.bottom
        anchors.top: parent.top
        flow: screen.flow
        focus: true
        padding: 16
        visible: screen.hasApps && (!screen.narrow || !screen.detailOpen)
        width: screen.narrow ? parent.width : Theme.px(380)

        onOpened: screen.showDetail()
    }
    Rectangle {
        anchors.left: list.right
        color: Theme.line
        height: parent.height
        visible: list.visible && detail.visible
        width: 1
        z: 1
    }
    AppDetail {
        id: detail

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

    Shortcut {
        enabled: screen.visible && screen.hasApps
        sequence: "Ctrl+F"

        onActivated: {
            find.forceActiveFocus(Qt.ShortcutFocusReason);
            find.selectAll();
        }
    }
    Shortcut {
        enabled: screen.visible && screen.flow.ticks.count > 0
        sequence: "Del"

        onActivated: screen.app.moves.review(screen.flow.ticks)
    }
}
