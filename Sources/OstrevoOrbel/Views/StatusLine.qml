import QtQuick
import OstrevoOrbel

/// What the pointer or the focus is on, and what was measured.
Rectangle {
    id: line

    property alias words: words.text
    property alias measured: measured.text

    color: Theme.side
    implicitHeight: Theme.statusLineHeight

    Hairline {
        edge: Qt.TopEdge
    }
    SmallText {
        id: words

        Accessible.role: Accessible.StatusBar
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: measured.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideMiddle
        objectName: "status.words"
    }
    SmallText {
        id: measured

        Accessible.role: Accessible.StatusBar
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignRight
        objectName: "status.measured"
        width: Math.min(implicitWidth, parent.width * 0.6)
    }
}
