import QtQuick
import OstrevoOrbel

/// The head of a table: the name of the first column, and the cells of the others as its rows have them.
Rectangle {
    id: head

    property int inset: Theme.cardPadding
    property int gap: 14
    property alias first: firstSlot.data
    property alias cells: cellRow.data
    property alias firstX: firstSlot.x

    color: Theme.sunk
    implicitHeight: Theme.tableHeadHeight

    Hairline {}
    Item {
        id: firstSlot

        height: parent.height
        width: cellRow.x - x - head.gap
        x: head.inset
    }
    Row {
        id: cellRow

        anchors.right: parent.right
        anchors.rightMargin: head.inset
        height: parent.height
        spacing: head.gap
    }
}
