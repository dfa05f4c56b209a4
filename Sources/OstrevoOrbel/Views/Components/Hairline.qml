import QtQuick
import OstrevoOrbel

/// A line along an edge of the item that it is put into. In a column, whose items have their places, it is `Qt.TopEdge`.
Rectangle {
    property int edge: Qt.BottomEdge
    /// Between the rows of one list.
    property bool soft: false

    readonly property bool upright: edge === Qt.LeftEdge || edge === Qt.RightEdge

    color: soft ? Theme.lineSoft : Theme.line
    height: upright ? parent.height : 1
    width: upright ? 1 : parent.width
    x: (edge === Qt.RightEdge) === Theme.mirrored || !upright ? 0 : parent.width - 1
    y: edge === Qt.BottomEdge ? parent.height - 1 : 0
}
