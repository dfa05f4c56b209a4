import QtQuick
import OstrevoOrbel

/// What has to be known, or done, before anything of an application can be moved.
Item {
    id: note

    required property appFacts facts

    signal quitWanted()
    signal stayWanted()

    implicitHeight: visible ? column.implicitHeight + 24 : 0
    visible: facts.warning !== ""

    Column {
        id: column

        spacing: 8
        width: parent.width
        y: 12

        Banner {
            action: note.facts.canAskToQuit ? qsTr("Ask It to Quit") : note.facts.removed ? qsTr("Let It Stay") : ""
            explanation: note.facts.explanation
            objectName: "uninstall.note"
            statement: note.facts.warning
            width: parent.width

            onTriggered: {
                if (note.facts.removed)
                    note.stayWanted();
                else
                    note.quitWanted();
            }
        }
        CommandLine {
            command: note.facts.command
            maximumWidth: column.width
            objectName: "uninstall.command"
            visible: command !== ""
        }
    }
}
