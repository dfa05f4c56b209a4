import QtQuick
import OstrevoOrbel

/// A row with a kind, a name, a share as a bar and a size. A click acts on it.
ItemRow {
    id: row

    property int barWidth: Theme.px(84)

    gap: 12
    lineHeight: Theme.compactRowHeight
    name: model.path ?? model.title
    nameGap: 10
    opens: 1
    separated: false
    status: [name, size].join(" · ")

    cells: [
        SizeBar {
            anchors.verticalCenter: parent.verticalCenter
            share: row.model.fraction
            width: row.barWidth
        },
        ItemCell {
            columnWidth: Theme.px(86) - row.gap
            text: row.size
        }
    ]
}
