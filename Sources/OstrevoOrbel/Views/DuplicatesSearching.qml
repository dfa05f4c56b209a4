import QtQuick
import OstrevoOrbel

/// How far the search has come.
Column {
    id: panel

    required property DuplicatesFlow flow

    Heading {
        role: ThemedText.Title
        text: qsTr("Comparing files of equal size")
        width: parent.width
    }
    Paragraph {
        bottomPadding: 20
        text: qsTr("Nothing is called a duplicate until every byte has been compared.")
    }
    SizeBar {
        Accessible.name: compared.text
        Accessible.role: Accessible.ProgressBar
        height: 8
        objectName: "duplicates.progress"
        share: panel.flow.share
        width: parent.width
    }
    Item {
        height: Theme.bodyLine + 8
        width: parent.width

        ThemedText {
            id: compared

            anchors.bottom: parent.bottom
            color: Theme.text2
            objectName: "duplicates.compared"
            text: panel.flow.comparedText
            width: parent.width - found.width - 12
        }
        Row {
            id: found

            anchors.bottom: parent.bottom
            anchors.right: parent.right

            ThemedText {
                bold: true
                text: panel.flow.foundCount
            }
            ThemedText {
                color: Theme.text2
                text: " " + panel.flow.foundNoun
            }
        }
    }
}
