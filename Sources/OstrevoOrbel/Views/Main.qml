import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Dialogs
import OstrevoOrbel

ApplicationWindow {
    id: window

    required property AppModel app

    objectName: "main"
    title: "Ostrevo Vanto"
    visible: true
    width: 1440
    height: 900
    minimumWidth: 800
    minimumHeight: 560
    color: Theme.window

    Binding {
        target: Theme
        property: "dark"
        value: window.app.appearance.dark
    }

    Label {
        anchors.centerIn: parent
        color: Theme.ink
        text: window.app.screen + "\n" + window.app.scopeText + "\n" + window.app.measuredText
    }

    FolderDialog {
        id: folderDialog

        onAccepted: window.app.scanFolder(selectedFolder)
    }

    Connections {
        target: window.app

        function onFolderWanted(prompt: string, startFolder: url): void {
            folderDialog.title = prompt;
            folderDialog.currentFolder = startFolder;
            folderDialog.open();
        }
    }
}
