import QtQuick
import OstrevoOrbel

/// What the pointer or the focus is on, and what was measured.
Rectangle {
    id: line

    property alias words: words.text
    property alias measured: measured.text

    color: Theme.side
    implicitHeight: Theme.statusLineHeight

    Rectangle {
        color: Theme.line
        height: 1
        width: parent.width
    }
    ThemedText {
        id: words

        Accessible.name: text
        Accessible.role: Accessible.StatusBar
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: measured.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.text2
        elide: Text.ElideMiddle
        objectName: "status.words"
        role: ThemedText.Small
    }
    ThemedText {
        id: measured

        Accessible.name: text
        Accessible.role: Accessible.StatusBar
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.text2
        horizontalAlignment: Text.AlignRight
        objectName: "status.measured"
        role: ThemedText.Small
        width: Math.min(implicitWidth, parent.width * 0.6)
    }
}
