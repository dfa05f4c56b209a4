import QtQuick
import OstrevoOrbel

/// The marks over the map: what is hovered, selected and focused. Nothing of the map is painted again for them.
Item {
    id: marks

    required property TreemapItem treemap

    component Frame: Rectangle {
        property rect box
        property int inset: 0

        border.width: 1
        color: "transparent"
        height: box.height - 2 * inset
        visible: box.width > 2 * inset && box.height > 2 * inset
        width: box.width - 2 * inset
        x: box.x + inset
        y: box.y + inset
    }

    Frame {
        border.color: Theme.ink
        border.width: 2
        box: marks.treemap.hoverBox
        objectName: "map.hover"
    }
    // What holds a selection that is not drawn itself.
    Frame {
        border.color: Theme.accent
        border.width: 2
        box: marks.treemap.holdingBox
        objectName: "map.holding"
    }
    // Each mark, and both together, are as wide as a tile keeps free around its words: four pixels.
    Frame {
        readonly property bool isFocused: ring.visible && marks.treemap.selectedBox === marks.treemap.currentBox

        border.color: Theme.accent
        border.width: isFocused ? 2 : 3
        box: marks.treemap.selectedBox
        inset: isFocused ? 2 : 0
        objectName: "map.selected"

        Frame {
            border.color: Theme.surface
            box: Qt.rect(0, 0, parent.width, parent.height)
            inset: 3
            visible: !parent.isFocused
        }
    }
    Item {
        id: ring

        readonly property bool isSelected: marks.treemap.selectedBox === marks.treemap.currentBox

        objectName: "map.focus"
        visible: marks.treemap.focusShown

        // Light, dark, light: seen on every colour. Around the mark of the selection the dark is enough.
        Frame {
            border.color: Theme.surface
            box: marks.treemap.currentBox
            visible: !ring.isSelected
        }
        Frame {
            border.color: Theme.ink
            border.width: 2
            box: marks.treemap.currentBox
            inset: ring.isSelected ? 0 : 1
        }
        Frame {
            border.color: Theme.surface
            box: marks.treemap.currentBox
            inset: 3
            visible: !ring.isSelected
        }
    }
    Item {
        height: marks.treemap.hoverBox.height
        width: marks.treemap.hoverBox.width
        x: marks.treemap.hoverBox.x
        y: marks.treemap.hoverBox.y

        Hint {
            text: marks.treemap.hoverHint
            visible: text !== ""
        }
    }
}
