import QtQuick
import OstrevoOrbel

/// Over the whole window while something is dragged over it: what a drop would measure.
DropArea {
    id: area

    required property DropFlow flow

    keys: ["text/uri-list"]

    onDropped: drop => {
        drop.accept(Qt.CopyAction);
        area.flow.drop();
    }
    onEntered: drag => area.flow.enter(drag.urls)
    onExited: area.flow.leave()

    Rectangle {
        Accessible.name: [statement.text, sentence.text].join(". ")
        Accessible.role: Accessible.StaticText
        anchors.fill: parent
        color: Theme.scrim
        objectName: "drop.overlay"
        visible: area.flow.over && statement.text !== ""

        Rectangle {
            anchors.centerIn: parent
            border.color: Theme.accent
            border.width: 2
            color: Theme.surface
            height: words.height + 48
            radius: Theme.sheetRadius
            width: Math.min(parent.width - 48, Theme.px(560))

            Column {
                id: words

                anchors.centerIn: parent
                spacing: 8
                width: parent.width - 48

                Icon {
                    anchors.horizontalCenter: parent.horizontalCenter
                    color: Theme.accent
                    path: Theme.icons.folders
                    size: Theme.px(24)
                }
                Heading {
                    id: statement

                    elide: Text.ElideMiddle
                    horizontalAlignment: Text.AlignHCenter
                    role: ThemedText.Title
                    text: area.flow.statement
                    width: parent.width
                }
                Paragraph {
                    id: sentence

                    horizontalAlignment: Text.AlignHCenter
                    text: area.flow.sentence
                }
            }
        }
    }
}
