import QtQuick
import OstrevoOrbel

/// Parts of one sentence: they stand in its order, whichever way the window reads, and are said as one.
Row {
    id: sentence

    readonly property bool isSentence: true

    Accessible.ignored: SpokenAbove.says(parent)
    Accessible.name: Array.from(sentence.children).filter(part => part.visible && part.text !== undefined)
        .map(part => part.text.trim()).join(" ")
    Accessible.role: Accessible.StaticText
    layoutDirection: Theme.mirrored ? Qt.RightToLeft : Qt.LeftToRight
}
