import QtQuick
import OstrevoOrbel

/// The square with a kind's colour and glyph.
Rectangle {
    id: chip

    /// The kind's raw value.
    property int kind: 7
    property int size: Theme.px(20)

    color: Theme.kindFills[chip.kind]
    implicitHeight: size
    implicitWidth: size
    radius: 4

    Icon {
        anchors.centerIn: parent
        color: Theme.kindLabels[chip.kind]
        size: Math.round(chip.size * 0.6)
        path: Theme.kindIcons[chip.kind]
        stroke: 1.6
    }
}
