import QtQuick
import QtQuick.Window
import OstrevoOrbel

/// What was measured, as a map: every folder and file as large as the space that it takes.
ScreenFrame {
    id: screen

    readonly property MapModel map: app.map
    readonly property alias hasMap: nothingToShow.measured
    readonly property bool wide: Window.width >= Theme.px(1920)
    /// Whether the list lies over the map, where there is no room beside it.
    property bool listOpen: false

    function zoomTo(node: int, from: rect): void {
        zoom.color = treemap.colorOf(node);
        zoom.run(from, Qt.rect(0, 0, treemap.width, treemap.height), true);
        screen.map.show(node);
    }
    function copy(key: string, whole: bool): void {
        if (whole)
            screen.app.actions.copyRow(key, "", "");
        else
            screen.app.actions.copyPath(key);
    }
    function tickAll(ticked: bool): void {
        if (ticked)
            screen.map.ticking.tickAll();
        else
            screen.map.ticking.ticks.clear();
    }
    function goUp(): void {
        if (!screen.map.canGoUp || treemap.held)
            return;
        const left = screen.map.focus;
        screen.map.goUp();
        zoom.color = treemap.colorOf(left);
        zoom.run(Qt.rect(0, 0, treemap.width, treemap.height), treemap.boxOf(left), false);
    }
    function openMenu(node: int, item: Item, x: real, y: real): void {
        const facts = screen.map.facts(node);
        menu.node = node;
        menu.key = facts.key;
        menu.itemName = facts.name;
        menu.itemFacts = [facts.kindName, facts.size].join(" · ");
        menu.zoomable = facts.zoomable;
        menu.isFolder = facts.isFolder;
        menu.ticked = screen.map.ticking.isTicked(node);
        menu.popup(item, x, y);
    }

    firstFocus: hasMap ? treemap : nothingToShow
    objectName: "map"
    scope: app.scan.scopeText
    status: hasMap ? treemap.status : ""
    title: qsTr("Map")

    actions: [
        Chip {
            closable: true
            kind: screen.map.filterKind
            objectName: "map.filter"
            set: true
            text: screen.map.filterText
            visible: screen.hasMap && screen.map.filterText !== ""

            onClicked: screen.map.clearFilter()
        },
        ChipMenu {
            about: qsTr("Colours")
            choice: screen.map.byChange ? 1 : 0
            choices: [qsTr("by kind"), qsTr("by change since %1").arg(screen.app.compare.growth.since)]
            menuWidth: Theme.px(280)
            narrow: screen.narrow
            objectName: "map.colours"
            value: screen.map.byChange ? qsTr("by change") : qsTr("by kind")
            visible: screen.hasMap && screen.app.compare.scan >= 0

            onChosen: choice => screen.map.byChange = choice === 1
        },
        FindButton {
            app: screen.app
            objectName: "map.find"
            reachable: screen.visible && screen.hasMap
            visible: screen.hasMap
        },
        PushButton {
            iconOnly: screen.narrow
            iconPath: Theme.icons.stop
            objectName: "map.stop"
            text: qsTr("Stop")
            visible: screen.app.rescan.running

            onClicked: screen.app.rescan.stop()
        },
        PushButton {
            enabled: !screen.app.scan.running
            iconOnly: screen.narrow
            iconPath: Theme.icons.rescan
            objectName: "map.measure"
            visible: !screen.app.rescan.running && !screen.app.scan.foreign
            text: screen.app.scan.idle ? qsTr("Measure This Disk") : qsTr("Measure Again")

            onClicked: screen.app.scan.measureAgain()
        },
        PushButton {
            iconOnly: true
            iconPath: Theme.icons.list
            objectName: "map.showList"
            text: screen.listOpen ? qsTr("Hide list") : qsTr("Show list")
            visible: screen.narrow && screen.hasMap

            onClicked: screen.listOpen = !screen.listOpen
        }
    ]

    bar: MapBar {
        height: visible ? Theme.breadcrumbBarHeight : 0
        map: screen.map
        padding: screen.padding
        visible: screen.hasMap
        width: screen.width

        onUpWanted: screen.goUp()
    }

    foot: Column {
        width: screen.width

        MapLegend {
            height: visible ? Theme.legendHeight : 0
            legend: screen.map.legend
            narrow: screen.narrow
            padding: screen.padding
            visible: screen.hasMap
            width: screen.width

            onChangeToggled: change => screen.map.toggleChange(change)
            onToggled: kind => screen.map.toggleKind(kind)
        }
        TickBar {
            id: tickBar

            narrow: screen.narrow
            objectName: "map.tickBar"
            ticks: screen.map.ticking.ticks
            width: screen.width

            onReviewed: screen.app.moves.review(screen.map.ticking.ticks)
        }
    }

    Rectangle {
        id: ground

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: screen.narrow || !list.visible ? parent.right : list.left
        anchors.top: parent.top
        color: Theme.mapGround
        visible: screen.hasMap

        TreemapItem {
            id: treemap

            Accessible.focusable: true
            Accessible.role: Accessible.List
            anchors.fill: parent
            anchors.margins: screen.narrow ? 8 : 12
            dark: Theme.dark
            family: Theme.family
            focus: true
            highContrast: Theme.highContrast
            map: screen.map
            objectName: "map.view"
            // The linter of Qt 6.4 knows no lists of C++ numbers.
            ticked: screen.map.ticking.nodes // qmllint disable type
            unit: Theme.fontScale

            onAllWanted: ticked => screen.tickAll(ticked)
            onCopyWanted: (node, whole) => screen.copy(screen.map.facts(node).key, whole)
            onTickWanted: node => screen.map.ticking.toggle(node)
            onMenuWanted: (node, position) => screen.openMenu(node, treemap, position.x, position.y)
            onUpWanted: screen.goUp()
            onZoomWanted: (node, from) => screen.zoomTo(node, from)

            MapMarks {
                anchors.fill: parent
                treemap: treemap
            }
            // A zoom: the tile grows over the old map until it is the new one, or the other way round.
            Rectangle {
                id: zoom

                property rect from
                property rect to
                property real progress: 1

                function run(start: rect, end: rect, holds: bool): void {
                    if (Theme.zoomTime === 0 || start.width <= 0 || end.width <= 0)
                        return;
                    from = start;
                    to = end;
                    zoomMotion.restart();
                    treemap.held = holds;
                }

                border.color: Theme.mapEdge
                height: from.height + (to.height - from.height) * progress
                objectName: "map.zoom"
                visible: zoomMotion.running
                width: from.width + (to.width - from.width) * progress
                x: from.x + (to.x - from.x) * progress
                y: from.y + (to.y - from.y) * progress

                NumberAnimation {
                    id: zoomMotion

                    duration: Theme.zoomTime
                    easing.type: Theme.easing
                    from: 0
                    property: "progress"
                    target: zoom
                    to: 1

                    onStopped: treemap.held = false
                }
            }
        }
        ThemedText {
            anchors.centerIn: parent
            color: Theme.text2
            text: qsTr("Nothing here takes up space on the disk.")
            visible: treemap.tileCount === 0 && !screen.map.focusExcluded
        }
        Hatching {
            anchors.fill: treemap
            ground: Theme.hatchGround
            lines: Theme.hatch
            objectName: "map.excluded"
            visible: screen.map.focusExcluded

            Rectangle {
                anchors.centerIn: parent
                color: Theme.hatchGround
                height: excluded.height + 24
                width: excluded.width + 32

                Column {
                    id: excluded

                    anchors.centerIn: parent
                    spacing: 12

                    ThemedText {
                        anchors.horizontalCenter: parent.horizontalCenter
                        bold: true
                        text: qsTr("Not measured · excluded")
                    }
                    PushButton {
                        anchors.horizontalCenter: parent.horizontalCenter
                        controlHeight: Theme.smallButtonHeight
                        objectName: "map.include"
                        text: qsTr("Include in Measuring")
                        visible: !screen.app.scan.foreign

                        onClicked: screen.app.actions.include(screen.map.facts(screen.map.focus).key)
                    }
                }
            }
        }
    }
    MapListPane {
        id: list

        actions: screen.app.actions
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.top: parent.top
        map: screen.map
        visible: screen.hasMap && (!screen.narrow || screen.listOpen)
        // The map keeps some room beside it.
        mostWidth: screen.width - (screen.narrow ? 0 : Theme.px(240))
        usualWidth: Theme.px(screen.narrow ? 300 : screen.middling ? 260 : screen.wide ? 400 : 344)

        onAllWanted: ticked => screen.tickAll(ticked)
        onCopyWanted: (key, whole) => screen.copy(key, whole)
        onTickWanted: node => screen.map.ticking.toggle(node)
        onMenuWanted: (node, item, x, y) => screen.openMenu(node, item, x, y)
        onUpWanted: screen.goUp()
        onZoomWanted: node => {
            if (screen.map.facts(node).zoomable)
                screen.zoomTo(node, treemap.boxOf(node));
        }
    }
    ListState {
        id: nothingToShow

        anchors.fill: parent
        app: screen.app
        iconPath: Theme.icons.map
        objectName: "map.empty"
        unmeasured: qsTr("Measure the disk to see where its space went.")
        visible: !screen.hasMap
        waiting: qsTr("The map appears when everything has been measured.")
    }
    ItemMenu {
        id: menu

        property int node: -1

        actions: screen.app.actions
        elsewhere: !screen.map.ticking.possible
        objectName: "map.menu"
        zooms: true
        // What a menu opens on is selected, and being asked about.
        refusal: screen.map.selection.valid && screen.map.selection.key === key ? screen.map.ticking.refusal : ""

        onAllWanted: ticked => screen.tickAll(ticked)
        onTickWanted: screen.map.ticking.toggle(node)
        onZoomWanted: screen.zoomTo(node, treemap.boxOf(node))
    }

    Connections {
        target: screen.app.scan

        // An edited tree may give the number of the menu's item to another one.
        function onTreeChanged(): void {
            menu.close();
        }
    }
    Shortcut {
        enabled: screen.visible && screen.hasMap && screen.map.ticking.possible
        sequence: "Shift+F5"

        onActivated: screen.app.rescan.start(screen.map.selection.valid ? screen.map.selection.node : screen.map.focus)
    }
    Shortcut {
        enabled: screen.visible && screen.hasMap && screen.map.canGoBack
        sequence: Theme.mirrored ? "Alt+Right" : "Alt+Left"

        onActivated: screen.map.goBack()
    }
    Shortcut {
        enabled: screen.visible && screen.hasMap && screen.map.canGoForward
        sequence: Theme.mirrored ? "Alt+Left" : "Alt+Right"

        onActivated: screen.map.goForward()
    }
    Shortcut {
        enabled: screen.visible && screen.hasMap && screen.map.canGoUp
        sequence: "Alt+Up"

        onActivated: screen.goUp()
    }
    Shortcut {
        enabled: screen.visible && screen.hasMap && screen.map.canGoUp
        sequence: "Alt+Home"

        onActivated: screen.map.goToRoot()
    }
    Shortcut {
        enabled: screen.visible && screen.hasMap && screen.narrow && screen.listOpen && !screen.app.rescan.running
        sequence: "Esc"

        onActivated: screen.listOpen = false
    }
}
