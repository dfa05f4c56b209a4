import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A line between groups of a menu.
T.MenuSeparator {
    height: visible ? implicitHeight : 0
    implicitHeight: 9
    implicitWidth: Theme.menuWidth - 10
    leftPadding: 10
    rightPadding: 10

    contentItem: Item {
        Hairline {
            y: Math.round((parent.height - 1) / 2)
        }
    }
}
