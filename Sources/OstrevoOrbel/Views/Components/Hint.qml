import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A tooltip, below the item that it is put into.
T.ToolTip {
    id: hint

    delay: Theme.hintDelay
    horizontalPadding: 10
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    implicitWidth: Math.min(contentItem.implicitWidth + leftPadding + rightPadding, Theme.px(360))
    margins: 8
    verticalPadding: 6
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? parent.height + 6 : 0

    background: Rectangle {
        color: Theme.ink
        radius: Theme.controlRadius
    }
    contentItem: SmallText {
        color: Theme.surface
        text: hint.text
        wrapMode: Text.Wrap
    }
}
