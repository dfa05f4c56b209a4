import QtQuick
import OstrevoOrbel

/// A row with a kind, a name, and by how much it grew. A click acts on it.
ItemRow {
    id: row

    gap: 12
    lineHeight: Theme.compactRowHeight
    name: model.path
    nameGap: 10
    opens: 1
    separated: false
    words: qsTr("%1, grew by %2").arg(name).arg(size)

    cells: [
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            size: Theme.px(12)
            path: Theme.icons.up
        },
        ItemCell {
            bold: true
            columnWidth: Theme.px(68) - row.gap
            text: row.size
        }
    ]
}
