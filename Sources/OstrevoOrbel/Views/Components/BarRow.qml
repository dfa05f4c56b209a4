import QtQuick
import OstrevoOrbel

/// A row with a kind, a name, how many there are where the model says it, a share as a bar and a size. A click
/// acts on it.
ItemRow {
    id: row

    property int barWidth: Theme.px(84)
    readonly property string count: model.count ?? ""

    gap: 12
    lineHeight: Theme.compactRowHeight
    name: model.path ?? model.title
    nameGap: 10
    opens: 1
    separated: false
    status: [name, count, size].filter(word => word !== "").join(" · ")
    words: [name, count, size].filter(word => word !== "").join(", ")

    cells: [
        SmallText {
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text3
            elide: Text.ElideNone
            text: row.count
            visible: text !== ""
        },
        SizeBar {
            anchors.verticalCenter: parent.verticalCenter
            share: row.model.fraction
            width: row.count === "" ? row.barWidth : Math.round(row.barWidth / 2)
        },
        ItemCell {
            columnWidth: Theme.px(86) - row.gap
            text: row.size
        }
    ]
}
