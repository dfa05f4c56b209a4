import QtQml
import OstrevoOrbel

/// Where the columns of the large and old files are, for the head and every row alike.
QtObject {
    required property int width
    required property int padding
    required property bool narrow

    readonly property int gap: 14
    // The box in the middle of its cell stands where the padding ends.
    readonly property int tickX: padding - Math.round((Theme.tickCell - Theme.tick) / 2)
    readonly property int chipX: padding + Theme.tick + gap
    readonly property int nameX: chipX + Theme.px(20) + gap
    readonly property int nameWidth: (narrow ? usedX : kindX) - gap - nameX
    readonly property int kindX: usedX - gap - kindWidth
    readonly property int kindWidth: Theme.px(132)
    readonly property int usedX: sizeX - gap - usedWidth
    readonly property int usedWidth: narrow ? Theme.px(132) : Theme.px(176)
    readonly property int sizeX: width - padding - sizeWidth
    readonly property int sizeWidth: Theme.px(92)
}
