import QtQuick
import OstrevoOrbel

/// The menu of one item of the map, which it names and keeps to, whatever the pointer is on by then.
ActionMenu {
    id: menu

    property mapItemFacts facts

    signal openWanted(node: int)
    signal showWanted(node: int)
    signal copyWanted(node: int)
    signal zoomWanted(node: int)
    signal tickWanted(node: int)

    property bool ticked: false
    /// Why it cannot be ticked.
    property string refusal: ""

    itemFacts: [facts.kindName, facts.size].join(" · ")
    itemName: facts.name
    objectName: "map.menu"

    MenuEntry {
        iconPath: Theme.icons.open
        objectName: "map.menu.open"
        text: qsTr("Open")

        onTriggered: menu.openWanted(menu.facts.node)
    }
    MenuEntry {
        iconPath: Theme.icons.folders
        objectName: "map.menu.show"
        text: qsTr("Show in File Manager")

        onTriggered: menu.showWanted(menu.facts.node)
    }
    MenuEntry {
        iconPath: Theme.icons.copy
        keys: qsTr("Ctrl C")
        objectName: "map.menu.copy"
        text: qsTr("Copy Path")

        onTriggered: menu.copyWanted(menu.facts.node)
    }
    MenuEntry {
        height: visible ? implicitHeight : 0
        iconPath: Theme.icons.zoom
        keys: qsTr("Enter")
        objectName: "map.menu.zoom"
        text: qsTr("Zoom")
        visible: menu.facts.zoomable

        onTriggered: menu.zoomWanted(menu.facts.node)
    }
    MenuLine {}
    MenuEntry {
        iconPath: menu.ticked ? Theme.icons.check : ""
        keys: qsTr("Space")
        objectName: "map.menu.tick"
        refusal: menu.refusal
        text: menu.ticked ? qsTr("Untick") : qsTr("Tick")

        onTriggered: menu.tickWanted(menu.facts.node)
    }
}
