import QtQuick
import OstrevoOrbel

/// The mark of keyboard focus: a ring outside the control that it is put into.
Rectangle {
    /// The radius of the control itself.
    property real controlRadius: Theme.controlRadius

    anchors.fill: parent
    anchors.margins: -4
    border.color: Theme.accent
    border.width: 2
    color: "transparent"
    radius: controlRadius + 4
}
