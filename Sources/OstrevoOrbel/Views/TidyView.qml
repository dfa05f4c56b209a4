import QtQuick
import OstrevoOrbel

/// Empty folders and broken shortcuts.
ScreenFrame {
    id: view

    required property AppModel app

    firstFocus: state
    objectName: "tidy"
    scope: qsTr("Home folder · found by rule")
    title: qsTr("Tidy")

    EmptyState {
        id: state

        anchors.centerIn: parent
        command: "orbel --tidy-json ~"
        focus: true
        height: implicitHeight
        iconPath: Theme.icons.tidy
        objectName: "tidy.empty"
        sentence: qsTr("This screen will list folders with nothing in them, and shortcuts that lead nowhere. A terminal lists them already:")
        statement: qsTr("Not in this window yet")
        width: parent.width - 2 * view.padding
    }
}
