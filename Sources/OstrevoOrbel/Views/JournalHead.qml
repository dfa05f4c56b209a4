import QtQuick
import OstrevoOrbel

/// When a session was, what it moved, and the way back for all of it.
Item {
    id: head

    required property string title
    required property string detail
    required property string remark
    required property string action
    required property bool possible
    required property bool folded
    /// Whether Ctrl+Z does what the button does.
    required property bool newest
    required property bool ready
    required property bool narrow

    signal putBackWanted()

    Accessible.description: [folded ? qsTr("folded") : "", remark].filter(words => words !== "").join(", ")
    Accessible.name: [title, detail].join(", ")
    Accessible.role: Accessible.ListItem
    implicitHeight: Math.max(Theme.journalHeadHeight, words.height + 12)

    PathIcon {
        id: fold

        anchors.verticalCenter: parent.verticalCenter
        color: Theme.text2
        height: Theme.icon
        path: head.folded ? Theme.icons.right : Theme.icons.down
        width: height
        x: 14
    }
    Column {
        id: words

        anchors.left: fold.right
        anchors.leftMargin: 12
        anchors.right: remark.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter

        ThemedText {
            bold: true
            text: head.title
            width: parent.width
        }
        ThemedText {
            color: Theme.text2
            role: ThemedText.Small
            text: head.detail
            width: parent.width
        }
    }
    ThemedText {
        id: remark

        anchors.right: putBack.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.text2
        elide: Text.ElideNone
        objectName: head.objectName + ".remark"
        role: ThemedText.Small
        text: head.narrow ? "" : head.remark
    }
    PushButton {
        id: putBack

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        controlHeight: Theme.controlHeight
        enabled: head.possible && head.ready
        focusPolicy: Qt.NoFocus
        iconPath: Theme.icons.putBack
        keys: head.newest && head.possible && !head.narrow ? qsTr("Ctrl Z") : ""
        objectName: head.objectName + ".putBack"
        text: head.action

        onClicked: head.putBackWanted()
    }
}
