import QtQuick
import OstrevoOrbel

/// Text in one of the type sizes. Plain always: what is shown is often a name from the disk.
Text {
    id: text

    enum Role { Tile, Small, Body, Lead, Title, Figure, Display }

    property int role: ThemedText.Body
    property bool bold: false

    readonly property var sizes: [Theme.tileSize, Theme.smallSize, Theme.bodySize, Theme.leadSize, Theme.titleSize,
        Theme.figureSize, Theme.displaySize]
    readonly property var lines: [Theme.tileLine, Theme.smallLine, Theme.bodyLine, Theme.leadLine, Theme.titleLine,
        Theme.figureLine, Theme.displayLine]
    readonly property var spacings: [0, 0, 0, 0, 0, -0.3, -0.5]

    /// Whether the button or the row that it is in says it.
    readonly property bool saidAbove: SpokenAbove.says(parent)

    Accessible.ignored: text.text === "" || text.saidAbove
    Accessible.name: text.text
    Accessible.role: Accessible.StaticText
    color: Theme.ink
    elide: wrapMode === Text.NoWrap ? Text.ElideRight : Text.ElideNone
    font.family: Theme.family
    font.letterSpacing: text.spacings[text.role]
    font.pixelSize: text.sizes[text.role]
    font.weight: text.bold ? Font.Bold : Font.Normal
    // Not by the direction of the words: a name in Hebrew stands where the others do.
    horizontalAlignment: Text.AlignLeft
    lineHeight: text.lines[text.role]
    lineHeightMode: Text.FixedHeight
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
}
