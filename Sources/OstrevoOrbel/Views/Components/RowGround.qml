import QtQuick
import OstrevoOrbel

/// The ground of a row: hovered, selected and focused are three marks that can stand together.
Rectangle {
    id: ground

    property bool hovered: false
    property bool selected: false
    /// Keyboard focus.
    property bool focused: false
    property bool separated: true

    color: selected ? Theme.accentSoft : hovered ? Theme.hover : "transparent"

    Hairline {
        soft: true
        visible: ground.separated
    }
    Rectangle {
        anchors.left: parent.left
        color: Theme.accent
        height: parent.height
        visible: ground.selected
        width: 3
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: 2
        border.color: Theme.accent
        border.width: 2
        color: "transparent"
        radius: 6
        visible: ground.focused
    }
}
