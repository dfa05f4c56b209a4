import QtQuick
import OstrevoOrbel

/// Apps, and what they leave behind.
ScreenFrame {
    id: view

    required property AppModel app

    firstFocus: state
    objectName: "uninstall"
    scope: qsTr("Apps and their leftovers")
    title: qsTr("Uninstall")

    EmptyState {
        id: state

        anchors.centerIn: parent
        command: "orbel --leftovers-dry-run"
        focus: true
        height: implicitHeight
        iconPath: Theme.icons.uninstall
        objectName: "uninstall.empty"
        sentence: qsTr("This screen will list the apps on this computer and what each would leave behind, with the evidence. A terminal lists it already:")
        statement: qsTr("Not in this window yet")
        width: parent.width - 2 * view.padding
    }
}
