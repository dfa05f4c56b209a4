import QtQuick
import QtQuick.Layouts
import OstrevoOrbel

/// What is wanted of the groups: from which size on, and which copy is kept.
FilterBar {
    id: bar

    required property DuplicatesFlow flow
    property bool narrow: false
    property bool middling: false
    property int padding: Theme.pagePadding

    signal folderWanted()

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: bar.padding
        anchors.rightMargin: bar.padding
        spacing: 16

        ChipMenu {
            about: qsTr("Size")
            choice: bar.flow.minimumChoice
            choices: bar.flow.minimumChoices
            objectName: "duplicates.size"

            onChosen: choice => bar.flow.minimumChoice = choice
        }
        Rectangle {
            Layout.preferredHeight: 20
            Layout.preferredWidth: 1
            color: Theme.line
            visible: bar.flow.searched && !bar.narrow
        }
        ThemedText {
            Layout.rightMargin: -8
            color: Theme.text2
            text: qsTr("Keep in every group")
            visible: bar.flow.searched && !bar.narrow
        }
        Segmented {
            current: bar.flow.rule
            name: qsTr("Keep in every group")
            objectName: "duplicates.rule"
            options: [qsTr("Newest"), qsTr("Oldest"), qsTr("Folder First…")]
            visible: bar.flow.searched

            onChosen: index => {
                if (index === 0)
                    bar.flow.keepNewest();
                else if (index === 1)
                    bar.flow.keepOldest();
                else
                    bar.folderWanted();
            }
        }
        SmallText {
            Layout.fillWidth: true
            Layout.minimumWidth: 0
            color: Theme.text3
            elide: Text.ElideMiddle
            objectName: "duplicates.rules"
            text: !bar.flow.searched ? "" : bar.flow.ruleFolder !== "" ? qsTr("%1 first").arg(bar.flow.ruleFolder)
                : bar.middling ? "" : qsTr("One copy always stays")
        }
        Sentence {
            visible: bar.flow.searched

            ThemedText {
                bold: true
                objectName: "duplicates.count"
                text: bar.flow.groupsText
            }
            ThemedText {
                color: Theme.text2
                text: " · " + bar.flow.potentialText
            }
        }
    }
}
