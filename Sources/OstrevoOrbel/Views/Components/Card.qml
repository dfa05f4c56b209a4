import QtQuick
import OstrevoOrbel

/// A raised ground with an optional head line; what is put into it lies below the head.
Rectangle {
    id: card

    property string title: ""
    property string remark: ""
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

        ThemedText {
            id: heading

            Accessible.name: text
            Accessible.role: Accessible.Heading
            anchors.left: parent.left
            anchors.leftMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            bold: true
            text: card.title
            width: Math.min(implicitWidth, parent.width - 2 * Theme.cardPadding)
        }
        ThemedText {
            anchors.left: heading.right
            anchors.leftMargin: 12
            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text3
            horizontalAlignment: Text.AlignRight
            role: ThemedText.Small
            text: card.remark
        }
        Rectangle {
            anchors.bottom: parent.bottom
            color: Theme.lineSoft
            height: 1
            width: parent.width
        }
    }
    Item {
        id: body

        anchors.fill: parent
        anchors.topMargin: card.headHeight
        anchors.margins: 1
    }
}
