import QtQuick
import OstrevoOrbel

/// A figure or a word in a cell of a row, never cut off: at least as wide as its column.
ThemedText {
    property int columnWidth: 0

    anchors.verticalCenter: parent.verticalCenter
    elide: Text.ElideNone
    horizontalAlignment: Text.AlignRight
    width: Math.max(columnWidth, implicitWidth)
}
