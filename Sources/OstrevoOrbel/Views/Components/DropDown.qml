pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// One choice of a few, in a list that opens.
T.ComboBox {
    id: box

    Accessible.description: displayText
    Spoken.part: popup.visible ? options.itemAtIndex(highlightedIndex) : null
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitHeight: Theme.controlHeight
    implicitWidth: Theme.px(120)
    leftPadding: Theme.mirrored ? 12 + Theme.icon : 12
    rightPadding: Theme.mirrored ? 12 : 12 + Theme.icon

    Accessible.onPressAction: popup.open()
    ButtonKeys.enterClicks: true

    background: Rectangle {
        border.color: box.enabled ? Theme.control : Theme.lineSoft
        color: !box.enabled ? "transparent" : box.down ? Theme.pressed(Theme.hover)
            : box.hovered ? Theme.hover : Theme.surface
        radius: Theme.controlRadius

        FocusRing {
            visible: box.visualFocus
        }
    }
    contentItem: ThemedText {
        color: box.enabled ? Theme.ink : Theme.text3
        text: box.displayText
    }
    delegate: T.ItemDelegate {
        id: option

        required property var model
        required property int index

        highlighted: box.highlightedIndex === index
        implicitHeight: Theme.menuItemHeight
        leftPadding: 10
        rightPadding: 10
        text: box.textRole === "" ? model.modelData : model[box.textRole]
        width: ListView.view ? ListView.view.width : 0

        background: Rectangle {
            color: option.highlighted ? Theme.accentSoft : "transparent"
            radius: Theme.menuItemRadius
        }
        contentItem: ThemedText {
            bold: box.currentIndex === option.index
            text: option.text
        }
    }
    indicator: Icon {
        color: box.enabled ? Theme.text2 : Theme.text3
        size: Theme.px(12)
        path: Theme.icons.down
        stroke: 1.8
        x: Theme.along(box.width - width - 10, width, box.width)
        y: Math.round((box.height - height) / 2)
    }
    popup: T.Popup {
        id: list

        implicitHeight: contentItem.implicitHeight + 10
        margins: 8
        padding: 5
        width: box.width
        y: box.height + 4

        background: Rectangle {
            border.color: Theme.control
            color: Theme.surface
            radius: Theme.cardRadius
        }
        contentItem: ListView {
            id: options

            clip: true
            currentIndex: box.highlightedIndex
            implicitHeight: contentHeight
            interactive: false
            model: box.popup.visible ? box.delegateModel : null
        }

        PopupName {
            popup: list
            role: Accessible.PopupMenu
            text: box.Accessible.name
        }
    }
}
