import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A scroll bar that shows only where there is something to scroll.
T.ScrollBar {
    id: bar

    // The keyboard scrolls by what has the focus.
    Accessible.ignored: true
    implicitHeight: 10
    implicitWidth: 10
    minimumSize: 0.08
    padding: 2
    policy: T.ScrollBar.AsNeeded
    visible: size < 1

    contentItem: Rectangle {
        color: bar.pressed ? Theme.text3 : Theme.control
        implicitHeight: 6
        implicitWidth: 6
        opacity: bar.pressed || bar.hovered ? 1 : 0.55
        radius: 3
    }
}
