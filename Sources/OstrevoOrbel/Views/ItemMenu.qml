import QtQuick
import OstrevoOrbel

/// The menu of one item, which it names and keeps to by its key, wherever the pointer is by then.
ActionMenu {
    id: menu

    required property ItemActions actions
    /// The item, and the key of where it lies now when that is elsewhere.
    property string key: ""
    property string shownKey: key
    /// Of what stands for it on the map.
    property string mapKey: key
    property bool ticked: false
    property string refusal: ""
    property string itemSize: ""
    /// What this list offers: a tick, opening the item, and, on the map, zooming and measuring a folder again.
    property bool tickable: true
    property bool openable: true
    /// The items are on another computer: they can be looked at and copied as words.
    property bool elsewhere: false
    readonly property bool ticks: tickable && !elsewhere
    property bool zooms: false
    property bool zoomable: false
    property bool isFolder: false
    property bool measured: false
    /// Of a folder that was measured, or left out; as it is when the menu opens.
    property bool excludable: false
    property bool excluded: false
    /// Of a program that manages what is refused here.
    readonly property string command: actions.commandOf(key, refusal)
    readonly property string manager: actions.managerOf(key, refusal)

    signal tickWanted(key: string)
    /// Of the whole list: all ticked, or none.
    signal allWanted(ticked: bool)
    signal zoomWanted()

    onAboutToShow: {
        excludable = actions.isExcludable(key);
        excluded = actions.isExcluded(key);
    }

    /// Makes it the menu of what a row shows; a list that has more to say does that too.
    function show(row: var): void {
        showItem(row);
    }
    function showItem(row: var): void {
        key = row.key;
        itemName = row.itemName;
        itemFacts = row.facts;
        itemSize = row.size;
        refusal = row.tickRefusal;
        ticked = row.tick !== Qt.Unchecked;
        measured = actions.isMeasured(mapKey);
    }

    MenuEntry {
        iconPath: Theme.icons.open
        objectName: menu.objectName + ".open"
        text: qsTr("Open")
        visible: menu.openable && !menu.elsewhere

        onTriggered: menu.actions.open(menu.key)
    }
    MenuEntry {
        iconPath: Theme.icons.folders
        objectName: menu.objectName + ".show"
        text: qsTr("Show in File Manager")
        visible: menu.key !== "" && !menu.elsewhere

        onTriggered: menu.actions.showInFileManager(menu.shownKey)
    }
    MenuEntry {
        iconPath: Theme.icons.terminal
        objectName: menu.objectName + ".terminal"
        text: qsTr("Open in Terminal")
        visible: menu.key !== "" && menu.actions.hasTerminal && !menu.elsewhere

        onTriggered: menu.actions.openTerminal(menu.shownKey)
    }
    MenuEntry {
        iconPath: Theme.icons.copy
        keys: qsTr("Ctrl C")
        objectName: menu.objectName + ".copy"
        text: qsTr("Copy Path")
        visible: menu.key !== ""

        onTriggered: menu.actions.copyPath(menu.key)
    }
    MenuEntry {
        iconPath: Theme.icons.columns
        keys: qsTr("Ctrl Shift C")
        objectName: menu.objectName + ".copyRow"
        text: qsTr("Copy Row")
        visible: menu.key !== ""

        onTriggered: menu.actions.copyRow(menu.key, menu.itemName, menu.itemSize)
    }
    MenuEntry {
        iconPath: Theme.icons.copy
        objectName: menu.objectName + ".copyCommand"
        text: qsTr("Copy Command")
        visible: menu.command !== ""

        onTriggered: menu.actions.copyCommand(menu.key, menu.refusal)
    }
    MenuEntry {
        iconPath: Theme.icons.open
        objectName: menu.objectName + ".manager"
        text: qsTr("Open %1").arg(menu.manager)
        visible: menu.manager !== ""

        onTriggered: menu.actions.openManager(menu.key)
    }
    MenuEntry {
        iconPath: Theme.icons.zoom
        keys: qsTr("Enter")
        objectName: menu.objectName + ".zoom"
        text: menu.zooms ? qsTr("Zoom") : qsTr("Show on Map")
        visible: menu.zooms ? menu.zoomable : menu.measured

        onTriggered: {
            if (menu.zooms)
                menu.zoomWanted();
            else
                menu.actions.showOnMap(menu.mapKey);
        }
    }
    MenuEntry {
        iconPath: Theme.icons.rescan
        keys: qsTr("Shift F5")
        objectName: menu.objectName + ".rescan"
        text: qsTr("Rescan Here")
        visible: menu.zooms && menu.isFolder && !menu.excluded && !menu.elsewhere

        onTriggered: menu.actions.measureAgain(menu.key)
    }
    MenuEntry {
        iconPath: menu.excluded ? Theme.icons.plus : Theme.icons.exclude
        objectName: menu.objectName + ".exclude"
        text: menu.excluded ? qsTr("Include in Measuring") : qsTr("Exclude from Measuring")
        visible: (menu.excludable || menu.excluded) && !menu.elsewhere

        onTriggered: {
            if (menu.excluded)
                menu.actions.include(menu.key);
            else
                menu.actions.exclude(menu.key);
        }
    }
    MenuLine {
        visible: menu.ticks
    }
    MenuEntry {
        iconPath: menu.ticked ? Theme.icons.close : Theme.icons.check
        keys: qsTr("Space")
        objectName: menu.objectName + ".tick"
        refusal: menu.refusal
        text: menu.ticked ? qsTr("Untick") : qsTr("Tick")
        visible: menu.ticks

        onTriggered: menu.tickWanted(menu.key)
    }
    MenuLine {
        visible: menu.ticks
    }
    MenuEntry {
        iconPath: Theme.icons.list
        keys: qsTr("Ctrl A")
        objectName: menu.objectName + ".all"
        text: qsTr("Select All")
        visible: menu.ticks

        onTriggered: menu.allWanted(true)
    }
    MenuEntry {
        iconPath: Theme.icons.close
        keys: qsTr("Ctrl Shift A")
        objectName: menu.objectName + ".none"
        text: qsTr("Clear Ticks")
        visible: menu.ticks

        onTriggered: menu.allWanted(false)
    }
}
