pragma ComponentBehavior: Bound

import QtQuick
import QtQml.Models
import OstrevoOrbel

/// The folders that were measured last, to be measured again.
PushButton {
    id: button

    required property AppModel app
    readonly property RecentFolders recent: app.recent

    iconPath: iconOnly ? Theme.icons.large : Theme.icons.down
    objectName: "overview.recent"
    text: qsTr("Recent")

    Spoken.role: Accessible.ButtonMenu
    Keys.onDownPressed: button.clicked()
    onClicked: {
        button.recent.refresh();
        menu.open();
    }

    ActionMenu {
        id: menu

        implicitWidth: Theme.px(340)
        itemFacts: qsTr("A click measures the folder again.")
        itemName: qsTr("Recent folders")
        objectName: "overview.recent.menu"
        x: Theme.mirrored ? 0 : button.width - width
        y: button.height + 4

        Instantiator {
            model: button.recent.list

            delegate: MenuEntry {
                required property int index
                required property string path

                height: implicitHeight
                iconPath: Theme.icons.folders
                // Not by the menu's own width: an entry can outlive the menu, and all of this, for a moment.
                implicitWidth: Theme.px(330)
                objectName: "overview.recent." + index
                text: path

                // Which changes the entries; one that is gone does not close its menu.
                onTriggered: {
                    menu.close();
                    button.recent.measure(index);
                }
            }

            onObjectAdded: (index, object) => menu.insertItem(index, object)
            onObjectRemoved: (index, object) => menu?.removeItem(object)
        }
        MenuLine {
        }
        OpenScanEntry {
            app: button.app
            implicitWidth: Theme.px(330)
            objectName: "overview.recent.openScan"
        }
        MenuEntry {
            iconPath: Theme.icons.close
            implicitWidth: Theme.px(330)
            objectName: "overview.recent.clear"
            text: qsTr("Clear")

            onTriggered: button.recent.clear()
        }
    }
}
