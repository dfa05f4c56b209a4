import QtQuick
import OstrevoOrbel

/// One term of the ledger's sum.
Item {
    id: term

    property string label: ""
    property string amount: ""
    property string remark: ""
    /// What joins it to the term before it: "+", "−", "=".
    property string joint: ""
    property bool total: false
    /// A way to more under the remark; none while it is empty.
    property string link: ""
    /// Drawn in front of the label.
    property alias swatch: swatchSlot.data

    signal linkClicked()

    // The joint of the next term stands in what is left free at the right.
    readonly property int free: Theme.px(24)
    /// What stands before the label.
    readonly property real before: swatchSlot.visible ? swatchSlot.width + head.spacing : 0

    Accessible.name: [label, amount, remark].filter(words => words !== "").join(", ")
    Accessible.role: Accessible.StaticText
    implicitHeight: column.implicitHeight
    implicitWidth: Math.ceil(Math.max(amountText.implicitWidth, labelText.implicitWidth + before)) + free

    ThemedText {
        color: Theme.text3
        role: ThemedText.Title
        text: term.joint
        x: Theme.along(-implicitWidth - 8, implicitWidth, parent.width)
        y: column.y + amountText.y
    }
    Column {
        id: column

        anchors.left: parent.left
        width: parent.width - term.free

        Row {
            id: head

            spacing: 8
            width: parent.width

            Item {
                id: swatchSlot

                anchors.verticalCenter: parent.verticalCenter
                height: childrenRect.height
                visible: childrenRect.width > 0
                width: childrenRect.width
            }
            SmallText {
                id: labelText

                lineHeight: Theme.px(18)
                text: term.label
                width: parent.width - term.before
            }
        }
        ThemedText {
            id: amountText

            anchors.left: parent.left
            bold: true
            elide: Text.ElideNone
            role: ThemedText.Title
            text: term.amount

            // The double rule under a sum.
            Rectangle {
                color: Theme.text2
                height: 1
                visible: term.total
                width: parent.width
                y: parent.height
            }
            Rectangle {
                color: Theme.text2
                height: 1
                visible: term.total
                width: parent.width
                y: parent.height + 2
            }
        }
        SmallText {
            color: Theme.text3
            elide: Text.ElideRight
            maximumLineCount: 2
            text: term.remark
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
        Item {
            height: Theme.smallLine
            visible: term.link !== ""
            width: parent.width

            LinkButton {
                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                objectName: term.link !== "" ? "overview.unreadable" : ""
                text: term.link
                width: Math.min(implicitWidth, parent.width)

                onClicked: term.linkClicked()
            }
        }
    }
}
