import QtQuick
import OstrevoOrbel

/// Large files that nobody has used for long.
ScreenFrame {
    id: view

    required property AppModel app

    firstFocus: state
    objectName: "large"
    scope: qsTr("Files by size and last use")
    title: qsTr("Large and Old")

    EmptyState {
        id: state

        anchors.centerIn: parent
        command: "orbel --large-json ~"
        focus: true
        height: implicitHeight
        iconPath: Theme.icons.large
        objectName: "large.empty"
        sentence: qsTr("This screen will list large files that nobody has used for long, with their size on disk and when they were last used. A terminal lists them already:")
        statement: qsTr("Not in this window yet")
        width: parent.width - 2 * view.padding
    }
}
