import QtQuick
import OstrevoOrbel

/// The head of a table: the name of the first column, and the cells of the others as its rows have them.
Rectangle {
    id: head

    property int inset: Theme.cardPadding
    property int gap: 14
    property alias first: firstSlot.data
    property alias cells: cellRow.data
    /// From the edge at which reading begins.
    property int firstX: inset

    color: Theme.sunk
    implicitHeight: Theme.tableHeadHeight

    Hairline {}
    Row {
        id: firstSlot

        height: parent.height
        width: parent.width - head.inset - cellRow.width - head.firstX - head.gap
        x: Theme.along(head.firstX, width, parent.width)
    }
    Row {
        id: cellRow

        anchors.right: parent.right
        anchors.rightMargin: head.inset
        height: parent.height
        spacing: head.gap
    }
}
