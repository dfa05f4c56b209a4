import QtQuick
import OstrevoOrbel

/// Files that are the same byte for byte.
ScreenFrame {
    id: view

    required property AppModel app

    firstFocus: state
    objectName: "duplicates"
    scope: qsTr("Home folder · every byte compared")
    title: qsTr("Duplicates")

    EmptyState {
        id: state

        anchors.centerIn: parent
        command: "orbel --duplicates-json ~"
        focus: true
        height: implicitHeight
        iconPath: Theme.icons.duplicates
        objectName: "duplicates.empty"
        sentence: qsTr("This screen will list files that are the same in every byte, and keep one copy of each. A terminal lists them already:")
        statement: qsTr("Not in this window yet")
        width: parent.width - 2 * view.padding
    }
}
