import QtQuick
import OstrevoOrbel

/// The square with the colour and the glyph of a change.
Rectangle {
    id: chip

    /// A NodeChange.
    property int change: 0
    property int size: Theme.px(20)

    border.color: Theme.control
    // What has gone (NodeChange::went) has no colour of its own.
    border.width: change === 3 ? 1 : 0
    color: Theme.map.changeFills[chip.change]
    implicitHeight: size
    implicitWidth: size
    radius: 4

    Icon {
        anchors.centerIn: parent
        color: Theme.map.changeLabels[chip.change]
        size: Math.round(chip.size * 0.6)
        path: MapPalette.changeGlyphs[chip.change]
        stroke: 1.6
    }
}
