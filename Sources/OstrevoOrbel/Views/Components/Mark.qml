import QtQuick
import OstrevoOrbel

/// The program's mark.
Item {
    id: mark

    property int size: Theme.px(22)

    readonly property real unit: size / 22

    implicitHeight: size
    implicitWidth: size

    Rectangle {
        color: Theme.accent
        height: 20 * mark.unit
        width: 12 * mark.unit
        x: mark.unit
        y: mark.unit
    }
    Rectangle {
        color: Theme.accentLine
        height: 9 * mark.unit
        width: 6.5 * mark.unit
        x: 14.5 * mark.unit
        y: mark.unit
    }
    Rectangle {
        border.color: Theme.accent
        border.width: 1.5 * mark.unit
        color: "transparent"
        height: 9.5 * mark.unit
        width: 6.5 * mark.unit
        x: 14.5 * mark.unit
        y: 11.5 * mark.unit
    }
}
