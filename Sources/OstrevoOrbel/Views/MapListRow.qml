import QtQuick
import OstrevoOrbel

/// A row of the map's list: a file, or a folder that opens in place.
ItemRow {
    id: row

    required property MapModel map
    required property MapListColumns columns
    readonly property int node: model.node
    readonly property bool folds: model.folds
    readonly property bool open: model.open

    signal openWanted()

    gap: columns.gap
    // Deep rows leave their names some room.
    indent: columns.chevronWidth + Math.min(model.level * Theme.px(columns.nameRoom < Theme.px(120) ? 8 : 14),
        Math.max(0, columns.nameRoom - Theme.px(44)))
    inset: columns.inset
    key: row.map.facts(node).key
    lineHeight: Theme.px(37)
    lineSpacing: 2
    nameGap: columns.nameGap
    objectName: "map.list.row." + index
    selected: row.map.selection.valid && row.map.selection.node === node
    tickGap: columns.tickGap
    tickName: "map.tick." + name
    refusal: ticks ? model.refusal : ""
    ticks: columns.ticks
    words: [name, model.kindName, size, model.share, qsTr("level %1").arg(model.level + 1)].join(", ")

    Accessible.role: Accessible.TreeItem
    Spoken.expandable: folds
    Spoken.expanded: open

    below: [
        SizeBar {
            anchors.left: parent.left
            fill: Theme.control
            height: 3
            share: row.model.fraction
            visible: !row.model.excluded
            // As long as beside a row without a note.
            width: parent.width + (row.note !== "" ? warning.width + row.gap : 0)
        },
        // A Loader of Qt 6.4 cannot make what is bound to its context.
        // qmllint disable unqualified
        Loader {
            active: row.model.excluded
            anchors.left: parent.left
            visible: active
            width: parent.width

            sourceComponent: ThemedText {
                color: Theme.text3
                role: ThemedText.Tile
                text: row.model.kindName
            }
        }
        // qmllint enable unqualified
    ]
    // A Loader of Qt 6.4 cannot make what is bound to its context.
    // qmllint disable unqualified
    cells: [
        // Its words have room in the inspector.
        Loader {
            id: warning

            active: row.note !== ""
            visible: active
            y: Theme.px(9)

            sourceComponent: Icon {
                color: Theme.warn
                size: Theme.px(14)
                path: Theme.icons.warn

                HoverHandler {
                    id: over
                }
                Hint {
                    text: row.note
                    visible: over.hovered
                }
            }
        },
        ItemCell {
            columnWidth: row.columns.sizeWidth
            text: row.size
        },
        // What is not shown costs nothing where many rows come at once.
        Loader {
            active: row.columns.showsShare
            height: parent?.height ?? 0
            visible: active

            sourceComponent: ItemCell {
                color: Theme.text2
                columnWidth: row.columns.shareWidth
                text: row.model.share
            }
        },
        Loader {
            active: row.columns.showsItems
            height: parent?.height ?? 0
            visible: active

            sourceComponent: ItemCell {
                color: Theme.text2
                columnWidth: row.columns.itemsWidth
                text: row.model.items
            }
        },
        Loader {
            active: row.columns.showsChanged
            height: parent?.height ?? 0
            visible: active

            sourceComponent: ItemCell {
                color: Theme.text2
                columnWidth: row.columns.changedWidth
                text: row.model.changed
            }
        }
    ]
    // qmllint enable unqualified

    MouseArea {
        Accessible.name: row.open ? qsTr("Collapse") : qsTr("Expand")
        Accessible.role: Accessible.Button
        height: parent.height
        objectName: "map.fold." + row.name
        visible: row.folds
        width: row.columns.chevronWidth + 6
        x: Theme.along(row.iconX - width + 2, width, parent.width)

        Accessible.onPressAction: row.openWanted()
        onClicked: row.openWanted()
        // The second click of two is one more, and opens nothing else.
        onDoubleClicked: row.openWanted()

        Icon {
            anchors.centerIn: parent
            color: Theme.text2
            path: row.open ? Theme.icons.down : Theme.icons.forward
            size: Theme.px(14)
        }
    }
}
