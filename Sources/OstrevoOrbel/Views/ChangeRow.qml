import QtQuick
import OstrevoOrbel

/// A row of what changed between two scans.
ItemRow {
    id: row

    required property bool narrow
    required property int changeWidth
    required property int figureWidth

    readonly property string figures: model.gone ? qsTr("was %1").arg(model.before)
        : model.before === "—" ? qsTr("takes %1").arg(model.after)
        : qsTr("from %1 to %2").arg(model.before).arg(model.after)

    facts: [model.changeName, model.kindName, model.difference].join(" · ")
    iconWidth: changeWidth
    nameColor: model.gone ? Theme.text2 : Theme.ink
    objectName: "changes.row." + name
    showsKind: false
    size: model.gone ? model.before : model.after
    status: [model.path, model.changeName, figures, model.difference].join(" · ")
    words: qsTr("%1: %2, %3, %4, %5, in %6").arg(model.changeName).arg(name).arg(model.kindName).arg(model.difference)
        .arg(figures).arg(detail)

    icon: Row {
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8
        width: parent.width

        ChangeChip {
            id: chip

            anchors.verticalCenter: parent.verticalCenter
            change: row.model.change
        }
        ThemedText {
            anchors.verticalCenter: parent.verticalCenter
            text: row.model.changeName
            width: parent.width - chip.width - parent.spacing
        }
    }
    cells: [
        ItemCell {
            color: Theme.text2
            columnWidth: row.figureWidth
            text: row.model.before
            visible: !row.narrow
        },
        ItemCell {
            color: Theme.text2
            columnWidth: row.figureWidth
            text: row.model.after
            visible: !row.narrow
        },
        ItemCell {
            bold: true
            columnWidth: row.figureWidth
            text: row.model.difference
        }
    ]
}
