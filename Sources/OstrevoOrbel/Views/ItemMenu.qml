import QtQuick
import OstrevoOrbel

/// The menu of one item, which it names and keeps to, whatever the pointer is on by then.
ActionMenu {
    id: menu

    /// What the item is, for the intents below: a node of the tree, or a row of the screen that opened the menu.
    property int item: -1
    property bool ticked: false
    /// Whether the item can be ticked here at all, and why not now.
    property bool tickable: true
    property string refusal: ""
    property bool openable: true
    property bool zoomable: true
    /// Whether it is a folder that can be measured again here.
    property bool rescannable: false
    property string zoomText: qsTr("Zoom")
    property string zoomKeys: qsTr("Enter")

    signal openWanted(item: int)
    signal showWanted(item: int)
    signal copyWanted(item: int)
    signal zoomWanted(item: int)
    signal rescanWanted(item: int)
    signal tickWanted(item: int)

    MenuEntry {
        height: visible ? implicitHeight : 0
        visible: menu.openable
        iconPath: Theme.icons.open
        objectName: menu.objectName + ".open"
        text: qsTr("Open")

        onTriggered: menu.openWanted(menu.item)
    }
    MenuEntry {
        iconPath: Theme.icons.folders
        objectName: menu.objectName + ".show"
        text: qsTr("Show in File Manager")

        onTriggered: menu.showWanted(menu.item)
    }
    MenuEntry {
        iconPath: Theme.icons.copy
        keys: qsTr("Ctrl C")
        objectName: menu.objectName + ".copy"
        text: qsTr("Copy Path")

        onTriggered: menu.copyWanted(menu.item)
    }
    MenuEntry {
        height: visible ? implicitHeight : 0
        iconPath: Theme.icons.zoom
        keys: menu.zoomKeys
        objectName: menu.objectName + ".zoom"
        text: menu.zoomText
        visible: menu.zoomable

        onTriggered: menu.zoomWanted(menu.item)
    }
    MenuEntry {
        height: visible ? implicitHeight : 0
        iconPath: Theme.icons.rescan
        keys: qsTr("Shift F5")
        objectName: menu.objectName + ".rescan"
        text: qsTr("Rescan Here")
        visible: menu.rescannable

        onTriggered: menu.rescanWanted(menu.item)
    }
    MenuLine {
        height: visible ? implicitHeight : 0
        visible: menu.tickable
    }
    MenuEntry {
        height: visible ? implicitHeight : 0
        iconPath: menu.ticked ? Theme.icons.check : ""
        keys: qsTr("Space")
        objectName: menu.objectName + ".tick"
        refusal: menu.refusal
        text: menu.ticked ? qsTr("Untick") : qsTr("Tick")
        visible: menu.tickable

        onTriggered: menu.tickWanted(menu.item)
    }
}
