import QtQuick
import OstrevoOrbel

/// The ground of the foot of a card or a sheet, round only where that is.
Rectangle {
    color: Theme.sunk
    radius: Theme.cardRadius - 1

    Rectangle {
        color: parent.color
        height: parent.radius
        width: parent.width
    }
    Hairline {
        edge: Qt.TopEdge
    }
}
