import QtQuick
import OstrevoOrbel

/// The ground of a table's head, under its cells.
Rectangle {
    color: Theme.sunk
    implicitHeight: Theme.tableHeadHeight

    Rectangle {
        anchors.bottom: parent.bottom
        color: Theme.line
        height: 1
        width: parent.width
    }
}
