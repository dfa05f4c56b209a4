pragma ComponentBehavior: Bound

import QtQml.Models
import QtQuick
import OstrevoOrbel

/// A filter with a few values to choose from.
Chip {
    id: chip

    /// What it is about; left out of the chip itself where there is little room.
    property string about: ""
    property bool narrow: false
    property var choices: []
    property int choice: 0
    /// What the last entry does, which is no value to choose; empty for none.
    property string lastAction: ""
    property int menuWidth: Theme.px(200)

    signal chosen(choice: int)
    signal acted()

    function open(): void {
        menu.popup(chip, 0, chip.height + 4);
        menu.currentIndex = Math.max(0, chip.choice);
    }

    Spoken.name: [about, value].join(" ")
    Spoken.role: Accessible.ButtonMenu
    text: narrow ? "" : about
    value: choices[choice] ?? ""

    Keys.onDownPressed: chip.open()
    onClicked: chip.open()

    ActionMenu {
        id: menu

        implicitWidth: chip.menuWidth
        name: chip.about
        objectName: chip.objectName + ".menu"

        Instantiator {
            // All that an entry shows: it can outlive the chip for a moment.
            model: chip.choices.concat(chip.lastAction || []).map((text, index) => ({
                text: text,
                name: chip.objectName + "." + index,
                acts: index === chip.choices.length,
                chosen: index === chip.choice
            }))

            delegate: MenuEntry {
                required property int index
                required property var modelData

                checkable: !modelData.acts
                checked: modelData.chosen
                height: implicitHeight
                implicitWidth: chip.menuWidth - 10
                objectName: modelData.name
                text: modelData.text

                // The choice may make other entries; one that is gone does not close its menu.
                onTriggered: {
                    menu.close();
                    if (modelData.acts)
                        chip.acted();
                    else
                        chip.chosen(index);
                }
            }

            onObjectAdded: (index, object) => menu.insertItem(index, object)
            onObjectRemoved: (index, object) => menu?.removeItem(object)
        }
    }
}
