import QtQuick
import OstrevoOrbel

/// The facts of what is selected on the map.
Item {
    id: inspector

    required property MapModel map
    required property ItemActions actions
    /// Of a program that manages what is refused here.
    readonly property string manager: actions.managerOf(facts.key, map.ticking.refusal)
    readonly property mapItemFacts facts: map.selection

    component Fact: Item {
        property alias label: label.text
        property alias value: value.text
        property alias valueColor: value.color
        property bool isPath: false
        /// A sentence, on as many lines as it takes up to three.
        property bool wraps: false

        Accessible.name: label.text + ": " + value.text
        Accessible.role: Accessible.StaticText
        implicitHeight: value.implicitHeight + Theme.px(6)
        width: parent.width

        SmallText {
            id: label

            anchors.left: parent.left
            anchors.top: value.top
            width: Theme.px(76)
        }
        ThemedText {
            id: value

            anchors.left: label.right
            anchors.leftMargin: 8
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            elide: parent.isPath ? Text.ElideMiddle : Text.ElideRight
            maximumLineCount: parent.wraps ? 3 : 1
            role: ThemedText.Small
            wrapMode: parent.wraps ? Text.Wrap : Text.NoWrap

            WholeText {
                shown: value
            }
        }
    }

    implicitHeight: Math.max(Theme.px(72), inspector.facts.valid ? column.implicitHeight + 28 : 0)

    Hairline {
        edge: Qt.TopEdge
    }
    SmallText {
        anchors.centerIn: parent
        color: Theme.text3
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Select a tile or a row to see what it is.")
        visible: !inspector.facts.valid
        width: parent.width - 32
        wrapMode: Text.Wrap
    }
    Column {
        id: column

        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.top: parent.top
        anchors.topMargin: 16
        visible: inspector.facts.valid

        Item {
            height: Theme.px(40)
            width: parent.width

            KindChip {
                id: chip

                anchors.left: parent.left
                anchors.top: parent.top
                anchors.topMargin: 3
                kind: inspector.facts.valid ? inspector.facts.kind : 7
                size: Theme.px(28)
            }
            Heading {
                id: name

                anchors.left: chip.right
                anchors.leftMargin: 10
                anchors.right: parent.right
                elide: Text.ElideMiddle
                objectName: "map.selectedName"
                text: inspector.facts.name
            }
            SmallText {
                anchors.left: name.left
                anchors.right: parent.right
                anchors.top: name.bottom
                text: inspector.facts.excluded ? [inspector.facts.kindName, inspector.facts.size].join(" · ")
                    : qsTr("%1 · %2 on disk").arg(inspector.facts.kindName).arg(inspector.facts.size)
            }
        }
        Gap {
            height: 6
        }
        Fact {
            isPath: true
            label: qsTr("Folder")
            value: inspector.facts.folder
        }
        Fact {
            label: qsTr("Holds")
            objectName: "map.contents"
            value: inspector.map.contents
            visible: value !== ""
        }
        Fact {
            label: qsTr("Changed")
            value: inspector.facts.changed
        }
        Fact {
            isPath: true
            label: qsTr("Compared")
            objectName: "map.change"
            value: inspector.facts.change
            visible: value !== ""
        }
        Fact {
            label: qsTr("Share")
            value: inspector.facts.share
        }
        Fact {
            label: qsTr("Safety")
            objectName: "map.safety"
            wraps: true
            value: inspector.map.ticking.movable ? qsTr("Can be moved to the Trash") : inspector.map.ticking.refusal
            valueColor: inspector.map.ticking.movable ? Theme.ok : Theme.ink
        }
        SmallText {
            objectName: "map.advice"
            text: RefusalAdvice.on(inspector.map.ticking.refusal)
            visible: text !== ""
            width: parent.width
            wrapMode: Text.Wrap
        }
        Gap {
            height: 6
            visible: commandLine.visible
        }
        CommandLine {
            id: commandLine

            command: inspector.actions.commandOf(inspector.facts.key, inspector.map.ticking.refusal)
            maximumWidth: parent.width
            objectName: "map.command"
            visible: commandLine.command !== ""
        }
        Gap {
            height: 6
            visible: openButton.visible
        }
        PushButton {
            id: openButton

            controlHeight: Theme.smallButtonHeight
            objectName: "map.manager"
            text: qsTr("Open %1").arg(inspector.manager)
            visible: inspector.manager !== ""

            onClicked: inspector.actions.openManager(inspector.facts.key)
        }
        Gap {
            height: 6
            visible: note.visible
        }
        Badge {
            id: note

            anchors.left: parent.left
            iconPath: Theme.icons.warn
            objectName: "map.note"
            text: inspector.map.ticking.note
            tone: Badge.Warn
            visible: text !== ""
            width: Math.min(implicitWidth, parent.width)
        }
    }
}
