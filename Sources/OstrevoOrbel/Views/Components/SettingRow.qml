import QtQuick
import OstrevoOrbel

/// A line of the settings: what it is about, an explanation below, and its control at the right.
Item {
    id: row

    property string label: ""
    property string explanation: ""
    property bool last: false
    /// The label is a path, which is shown whole.
    property bool isPath: false
    property alias control: controlSlot.data
    readonly property Item spoken: controlSlot.children[0] ?? null

    implicitHeight: Math.max(Theme.px(48), words.implicitHeight + 28, controlSlot.height + 28)

    Binding {
        property: "Accessible.description"
        target: row.spoken
        value: row.explanation
        when: row.explanation !== ""
    }
    Column {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: 20
        anchors.right: controlSlot.left
        anchors.rightMargin: 20
        anchors.verticalCenter: parent.verticalCenter

        ThemedText {
            id: label

            text: row.isPath ? PathLines.broken(row.label, font, width) : row.label
            width: parent.width
            wrapMode: row.isPath ? Text.WrapAnywhere : Text.Wrap
        }
        SmallText {
            anchors.left: parent.left
            text: row.explanation
            visible: text !== ""
            width: Math.min(parent.width, Theme.px(440))
            wrapMode: Text.Wrap
        }
    }
    Item {
        id: controlSlot

        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.verticalCenter: parent.verticalCenter
        height: childrenRect.height
        width: childrenRect.width
    }
    Hairline {
        soft: true
        visible: !row.last
    }
}
