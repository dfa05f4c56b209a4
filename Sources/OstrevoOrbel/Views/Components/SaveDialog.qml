import QtQuick.Dialogs
import OstrevoOrbel

/// Asks where to save a report: as Markdown, or as JSON by its name. Begins in the home with a name to take.
FileDialog {
    id: dialog

    required property AppModel app
    /// Without its ending.
    property string proposal: ""

    function ask(): void {
        currentFolder = app.homeFolder;
        selectedFile = app.homeFolder + "/" + proposal + ".md";
        open();
    }

    // Qt's own dialog, which stands in where the desktop has none, calls every button Open.
    acceptLabel: qsTr("Save")
    defaultSuffix: selectedNameFilter.index === 1 ? "json" : "md"
    fileMode: FileDialog.SaveFile
    nameFilters: [qsTr("Markdown (*.md)"), qsTr("JSON (*.json)")]
}
