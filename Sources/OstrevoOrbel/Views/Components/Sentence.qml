import QtQuick
import OstrevoOrbel

/// Parts of one sentence: they stand in its order, whichever way the window reads.
Row {
    readonly property bool isSentence: true

    layoutDirection: Theme.mirrored ? Qt.RightToLeft : Qt.LeftToRight
}
