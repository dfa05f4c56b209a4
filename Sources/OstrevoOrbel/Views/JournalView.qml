import QtQuick
import OstrevoOrbel

/// Every move, and the way back.
ScreenFrame {
    id: view

    required property AppModel app

    firstFocus: state
    objectName: "journal"
    scope: qsTr("Everything moved and put back · kept on this computer")
    title: qsTr("Journal")

    EmptyState {
        id: state

        anchors.centerIn: parent
        command: "orbel --journal-markdown"
        focus: true
        height: implicitHeight
        iconPath: Theme.icons.journal
        objectName: "journal.empty"
        sentence: qsTr("This screen will list every move to the Trash and put back what you choose. Every move is recorded already. In a terminal, “orbel --put-back last” puts the last batch back, and this lists them all:")
        statement: qsTr("Not in this window yet")
        width: parent.width - 2 * view.padding
    }
}
