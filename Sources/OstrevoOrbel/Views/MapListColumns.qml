import QtQuick
import OstrevoOrbel

/// Where things are in a row of the map's list, and which columns have room in it: what is left out first is when an
/// item changed, then how many are in it, then its share.
QtObject {
    /// Of the whole list.
    property int width: 0
    /// Rows have a tick.
    property bool ticks: true

    readonly property int inset: Theme.cardPadding
    readonly property int gap: 12
    readonly property int tickGap: 6
    readonly property int nameGap: 8
    readonly property int chevronWidth: Theme.px(16)
    readonly property int nameX: inset + (ticks ? Theme.tick + tickGap : 0) + chevronWidth + Theme.px(20) + nameGap
    readonly property int sizeWidth: Theme.px(66)
    readonly property int shareWidth: Theme.px(52)
    readonly property int itemsWidth: Theme.px(76)
    readonly property int changedWidth: Theme.px(128)

    readonly property int needForShare: nameX + Theme.px(140) + gap + sizeWidth + gap + shareWidth + inset
    readonly property int needForItems: needForShare + gap + itemsWidth
    readonly property int needForAll: needForItems + gap + changedWidth
    readonly property bool showsShare: width >= needForShare
    readonly property bool showsItems: width >= needForItems
    readonly property bool showsChanged: width >= needForAll
    /// What is left for the names of level 0.
    readonly property int nameRoom: width - nameX - inset - gap - sizeWidth - (showsShare ? gap + shareWidth : 0)
        - (showsItems ? gap + itemsWidth : 0) - (showsChanged ? gap + changedWidth : 0)
}
