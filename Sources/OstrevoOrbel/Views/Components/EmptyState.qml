import QtQuick
import OstrevoOrbel

/// What stands where there is nothing to list: a glyph, a statement, one sentence, and at most one button.
FocusScope {
    id: state

    property string iconPath: ""
    property string statement: ""
    property string sentence: ""
    /// A command that does the same in a terminal, shown in its own line.
    property string command: ""
    property string action: ""
    property bool primary: true
    property bool failed: false

    signal triggered()

    Accessible.description: [sentence, command].filter(text => text !== "").join(" ")
    Accessible.name: statement
    Accessible.role: Accessible.StaticText
    implicitHeight: column.implicitHeight
    implicitWidth: column.implicitWidth

    Column {
        id: column

        anchors.centerIn: parent
        width: Math.min(parent.width, Theme.px(440))

        PathIcon {
            anchors.horizontalCenter: parent.horizontalCenter
            color: state.failed ? Theme.error : Theme.text3
            height: Theme.px(24)
            path: state.iconPath
            stroke: 1.2
            width: height
        }
        Item {
            height: 12
            width: 1
        }
        ThemedText {
            bold: true
            horizontalAlignment: Text.AlignHCenter
            text: state.statement
            width: parent.width
            wrapMode: Text.Wrap
        }
        Item {
            height: 4
            visible: sentenceText.visible
            width: 1
        }
        ThemedText {
            id: sentenceText

            color: Theme.text2
            horizontalAlignment: Text.AlignHCenter
            text: state.sentence
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
        Item {
            height: 12
            visible: commandLine.visible
            width: 1
        }
        CommandLine {
            id: commandLine

            anchors.horizontalCenter: parent.horizontalCenter
            command: state.command
            maximumWidth: column.width
            objectName: state.objectName + ".command"
            visible: command !== ""
        }
        Item {
            height: 16
            visible: button.visible
            width: 1
        }
        PushButton {
            id: button

            anchors.horizontalCenter: parent.horizontalCenter
            controlHeight: Theme.smallButtonHeight
            focus: true
            objectName: state.objectName + ".action"
            text: state.action
            variant: state.primary ? PushButton.Primary : PushButton.Plain
            visible: state.action !== ""

            onClicked: state.triggered()
        }
    }
}
