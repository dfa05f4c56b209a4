import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A menu. What it acts on stands at its top, where there is such a thing, so that it is always in sight.
T.Menu {
    id: menu

    /// The item's name, and its kind and size.
    property string itemName: ""
    property string itemFacts: ""
    /// What a screen reader calls it.
    property string name: itemName

    cascade: false
    implicitHeight: contentHeight + topPadding + bottomPadding
    implicitWidth: Theme.menuWidth
    margins: 8
    modal: true
    dim: false
    bottomPadding: 5
    leftPadding: 5
    rightPadding: 5
    topPadding: head.visible ? head.height + 5 : 5

    background: Rectangle {
        border.color: Theme.control
        color: Theme.surface
        radius: Theme.cardRadius

        Column {
            id: head

            bottomPadding: 8
            leftPadding: 15
            rightPadding: 15
            topPadding: 12
            visible: menu.itemName !== ""
            width: parent.width

            ThemedText {
                bold: true
                elide: Text.ElideMiddle
                text: menu.itemName
                width: parent.width - 30
            }
            SmallText {
                text: menu.itemFacts
                visible: text !== ""
                width: parent.width - 30
            }
            Gap {
                height: 11
            }
            Hairline {
                edge: Qt.TopEdge
                width: parent.width - 30
            }
        }
    }
    contentItem: ListView {
        clip: true
        currentIndex: menu.currentIndex
        implicitHeight: contentHeight
        interactive: Window.window ? contentHeight > Window.window.height - 80 : false
        model: menu.contentModel
    }
    PopupName {
        popup: menu
        role: Accessible.PopupMenu
        text: menu.name
    }
}
