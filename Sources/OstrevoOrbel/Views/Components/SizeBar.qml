import QtQuick
import OstrevoOrbel

/// A share as a bar.
Rectangle {
    id: bar

    /// From 0 to 1.
    property real share: 0
    property color fill: Theme.accent

    color: Theme.lineSoft
    implicitHeight: 6

    Rectangle {
        anchors.left: parent.left
        color: bar.fill
        height: parent.height
        width: bar.share > 0 ? Math.max(1, Math.round(parent.width * Math.min(1, bar.share))) : 0
    }
}
