pragma ComponentBehavior: Bound

import QtQuick
import QtQml.Models
import QtQuick.Templates as T
import OstrevoOrbel

/// What is mounted where, and the other file systems that can be measured in its place.
T.AbstractButton {
    id: choice

    required property AppModel app

    Spoken.name: qsTr("File system: %1").arg(text)
    Spoken.role: Accessible.ButtonMenu
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitHeight: Theme.smallButtonHeight
    implicitWidth: Math.ceil(words.implicitWidth) + chevron.width + 6 + leftPadding + rightPadding
    leftPadding: 8
    rightPadding: 8
    text: app.disk.ledger.description !== "" ? app.disk.ledger.description : app.disk.ledger.path

    Keys.onDownPressed: choice.clicked()
    ButtonKeys.enterClicks: true

    onClicked: {
        choice.app.disk.refreshVolumes();
        menu.open();
    }

    background: Rectangle {
        color: choice.down || menu.visible ? Theme.pressed(Theme.hover) : choice.hovered ? Theme.hover : "transparent"
        radius: Theme.controlRadius

        FocusRing {
            anchors.margins: -2
            visible: choice.visualFocus
        }
    }
    contentItem: Item {
        SmallText {
            id: words

            anchors.right: chevron.left
            anchors.rightMargin: 6
            anchors.verticalCenter: parent.verticalCenter
            elide: Text.ElideMiddle
            text: choice.text
            width: Math.min(implicitWidth, parent.width - chevron.width - 6)
        }
        Icon {
            id: chevron

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            size: Theme.px(12)
            path: Theme.icons.down
            stroke: 1.8
        }
    }

    ActionMenu {
        id: menu

        implicitWidth: Theme.px(440)
        itemFacts: qsTr("Measuring reads names and sizes; it changes nothing.")
        itemName: qsTr("Measure another file system")
        objectName: "overview.volumes"
        x: Theme.mirrored ? 0 : choice.width - width
        y: choice.height + 4

        Instantiator {
            model: choice.app.disk.volumes

            delegate: MenuEntry {
                required property int index
                required property string path
                required property string figures

                iconPath: Theme.icons.diskImages
                // Not by the menu's own width: an entry can outlive the menu, and all of this, for a moment.
                implicitWidth: Theme.px(430)
                keys: figures
                objectName: "overview.volume." + index
                text: path

                onTriggered: choice.app.scan.scanVolume(index)
            }

            onObjectAdded: (index, object) => menu.insertItem(index, object)
            onObjectRemoved: (index, object) => menu?.removeItem(object)
        }
        MenuLine {
        }
        OpenScanEntry {
            app: choice.app
            implicitWidth: Theme.px(430)
            objectName: "overview.openScan"
        }
    }
}
