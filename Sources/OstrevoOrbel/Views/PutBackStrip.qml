import QtQuick
import OstrevoOrbel

/// What the last put back came to, until it is closed.
Rectangle {
    id: strip

    required property PutBackFlow putBack

    Accessible.description: putBack.explanation
    Accessible.name: putBack.statement
    Accessible.role: Accessible.AlertMessage
    color: putBack.failed ? Theme.warnSoft : Theme.okSoft
    implicitHeight: Math.max(Theme.stripHeight, words.height + 16)

    Icon {
        id: glyph

        anchors.left: parent.left
        anchors.leftMargin: Theme.pagePadding
        anchors.verticalCenter: parent.verticalCenter
        color: strip.putBack.failed ? Theme.warn : Theme.ok
        path: strip.putBack.failed ? Theme.icons.warn : Theme.icons.check
    }
    Flow {
        id: words

        anchors.left: glyph.right
        anchors.leftMargin: 12
        anchors.right: show.visible ? show.left : close.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        ThemedText {
            bold: true
            objectName: strip.objectName + ".statement"
            text: strip.putBack.statement
            width: Math.min(implicitWidth, words.width)
            wrapMode: Text.Wrap
        }
        ThemedText {
            color: Theme.text2
            objectName: strip.objectName + ".explanation"
            text: strip.putBack.explanation
            visible: text !== ""
            width: Math.min(implicitWidth, words.width)
            wrapMode: Text.Wrap
        }
    }
    LinkButton {
        id: show

        anchors.right: close.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        objectName: strip.objectName + ".show"
        role: ThemedText.Body
        text: qsTr("Show in File Manager")
        visible: strip.putBack.showable

        onClicked: strip.putBack.showRestored()
    }
    IconButton {
        id: close

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        iconPath: Theme.icons.close
        objectName: strip.objectName + ".close"
        text: qsTr("Close")

        onClicked: strip.putBack.closeMessage()
    }
    Rectangle {
        anchors.bottom: parent.bottom
        color: strip.putBack.failed ? Theme.warnLine : Theme.line
        height: 1
        width: parent.width
    }
}
