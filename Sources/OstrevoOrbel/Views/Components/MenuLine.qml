import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A line between groups of a menu.
T.MenuSeparator {
    implicitHeight: 9
    implicitWidth: Theme.menuWidth - 10
    leftPadding: 10
    rightPadding: 10

    contentItem: Item {
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.line
            height: 1
            width: parent.width
        }
    }
}
