import QtQuick
import OstrevoOrbel

/// The keys that do what the control beside it does.
Rectangle {
    property alias text: label.text

    border.color: Theme.line
    color: "transparent"
    implicitHeight: Theme.px(18)
    implicitWidth: label.implicitWidth + 10
    radius: 4

    ThemedText {
        id: label

        anchors.centerIn: parent
        color: Theme.text3
        role: ThemedText.Tile
    }
}
