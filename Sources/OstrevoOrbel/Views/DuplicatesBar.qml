import QtQuick
import QtQuick.Layouts
import OstrevoOrbel

/// What is wanted of the groups: from which size on, and which copy is kept.
Item {
    id: bar

    required property DuplicatesFlow flow
    property bool narrow: false
    property bool middling: false
    property int padding: Theme.pagePadding

    signal folderWanted()

    implicitHeight: Theme.filterBarHeight

    Rectangle {
        anchors.bottom: parent.bottom
        color: Theme.line
        height: 1
        width: parent.width
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: bar.padding
        anchors.rightMargin: bar.padding
        spacing: 16

        Chip {
            id: size

            objectName: "duplicates.size"
            text: qsTr("Size")
            value: qsTr("%1 or more").arg(bar.flow.minimumText)

            onClicked: sizes.popup(size, 0, size.height + 4)
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
        ThemedText {
            Layout.fillWidth: true
            Layout.minimumWidth: 0
            color: Theme.text3
            elide: Text.ElideMiddle
            objectName: "duplicates.rules"
            role: ThemedText.Small
            text: !bar.flow.searched ? "" : bar.flow.ruleFolder !== "" ? qsTr("%1 first").arg(bar.flow.ruleFolder)
                : bar.middling ? "" : qsTr("One copy always stays")
        }
        Row {
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
    ActionMenu {
        id: sizes

        Repeater {
            model: bar.flow.minimumChoices

            MenuEntry {
                required property int index
                required property string modelData

                checkable: true
                checked: bar.flow.minimumChoice === index
                objectName: "duplicates.size." + index
                text: modelData

                onTriggered: bar.flow.minimumChoice = index
            }
        }
    }
}
