import QtQuick
import OstrevoOrbel

/// A command for a terminal, to read, select and copy.
Rectangle {
    id: line

    property alias command: text.text
    property real maximumWidth: Infinity
    /// It was copied a moment ago.
    property bool copied: false

    Accessible.name: command
    Accessible.role: Accessible.StaticText
    border.color: Theme.line
    color: Theme.sunk
    implicitHeight: Math.max(text.implicitHeight + 10, copy.implicitHeight)
    implicitWidth: Math.min(maximumWidth, text.implicitWidth + 24 + copy.width)
    radius: Theme.controlRadius

    TextEdit {
        id: text

        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.right: copy.left
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.ink
        font.family: "monospace"
        font.pixelSize: Theme.smallSize
        readOnly: true
        selectByMouse: true
        selectedTextColor: Theme.accentText
        selectionColor: Theme.accent
        textFormat: TextEdit.PlainText
        wrapMode: TextEdit.Wrap
    }
    IconButton {
        id: copy

        anchors.right: parent.right
        anchors.rightMargin: 3
        anchors.verticalCenter: parent.verticalCenter
        Spoken.name: qsTr("Copy %1").arg(line.command)
        iconPath: line.copied ? Theme.icons.check : Theme.icons.copy
        objectName: line.objectName + ".copy"
        text: line.copied ? qsTr("Copied") : qsTr("Copy")

        onClicked: {
            text.selectAll();
            text.copy();
            text.deselect();
            line.copied = true;
            heard.say(qsTr("Copied"));
            moment.restart();
        }
    }
    Announcement {
        id: heard
    }
    Timer {
        id: moment

        interval: 2000

        onTriggered: line.copied = false
    }
}
