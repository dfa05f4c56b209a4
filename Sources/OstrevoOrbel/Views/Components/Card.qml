import QtQuick
import OstrevoOrbel

/// A raised ground with an optional head line; what is put into it lies below the head.
Rectangle {
    id: card

    property string title: ""
    property string remark: ""
    /// In place of the title, for a card that shows one of two things.
    property alias choice: choiceSlot.data
    /// In place of the remark.
    property alias aside: asideSlot.data
    default property alias content: body.data

    readonly property int headHeight: title === "" ? 0 : Theme.px(40)

    border.color: Theme.line
    color: Theme.surface
    implicitHeight: headHeight + body.childrenRect.height + 2
    radius: Theme.cardRadius

    Item {
        id: head

        height: card.headHeight
        visible: card.title !== ""
        width: parent.width

        Heading {
            id: heading

            visible: choiceSlot.width === 0
            anchors.left: parent.left
            anchors.leftMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            text: card.title
            width: Math.min(implicitWidth, parent.width - 2 * Theme.cardPadding)
        }
        Item {
            id: choiceSlot

            anchors.left: parent.left
            anchors.leftMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            height: childrenRect.height
            width: childrenRect.width
        }
        SmallText {
            anchors.left: choiceSlot.width > 0 ? choiceSlot.right : heading.right
            anchors.leftMargin: 12
            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text3
            horizontalAlignment: Text.AlignRight
            text: card.remark
        }
        Item {
            id: asideSlot

            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            height: childrenRect.height
            width: childrenRect.width
        }
        Hairline {
            soft: true
        }
    }
    Item {
        id: body

        anchors.fill: parent
        anchors.topMargin: card.headHeight
        anchors.margins: 1
    }
}
