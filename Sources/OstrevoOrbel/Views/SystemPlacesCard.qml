pragma ComponentBehavior: Bound

import QtQuick
import OstrevoOrbel

/// What lies outside the home folder, and the commands that free it. None of them is run from here.
Card {
    id: card

    required property SystemPlacesFlow flow
    /// Each command stands below its words rather than beside them.
    property bool stacked: false

    readonly property alias count: rows.count

    remark: qsTr("Outside your home folder · copy a command into a terminal")
    title: qsTr("Freed by a command")

    Column {
        width: parent.width

        Repeater {
            id: rows

            model: card.flow.places

            Item {
                id: row

                required property int index
                required property string size
                required property string what
                required property string path
                required property string command

                readonly property int room: width - 2 * Theme.cardPadding

                Accessible.name: [what, size, path].join(", ")
                Accessible.role: Accessible.ListItem
                implicitHeight: Math.max(Theme.px(52), line.y + line.implicitHeight + 10)
                objectName: "overview.freed." + index
                width: parent.width

                Hairline {
                    edge: Qt.TopEdge
                    soft: true
                    visible: row.index > 0
                }
                ThemedText {
                    id: figure

                    bold: true
                    elide: Text.ElideNone
                    horizontalAlignment: Text.AlignRight
                    text: row.size
                    width: Math.max(Theme.px(108), implicitWidth)
                    x: Theme.along(Theme.cardPadding, width, row.width)
                    y: Theme.px(9)
                }
                Column {
                    id: words

                    readonly property int start: Theme.cardPadding + figure.width + 16

                    width: card.stacked ? row.width - start - Theme.cardPadding
                        : Math.floor((row.room - figure.width - 32) / 2)
                    x: Theme.along(start, width, row.width)
                    y: Theme.px(9)

                    ThemedText {
                        id: what

                        text: row.what
                        width: parent.width

                        WholeText {
                            shown: what
                        }
                    }
                    SmallText {
                        elide: Text.ElideMiddle
                        text: row.path
                        width: parent.width
                    }
                }
                CommandLine {
                    id: line

                    command: row.command
                    maximumWidth: card.stacked ? row.room : row.room - figure.width - words.width - 32
                    objectName: "overview.freed." + row.index + ".command"
                    x: Theme.along(card.stacked ? Theme.cardPadding : words.start + words.width + 16, width, row.width)
                    y: card.stacked ? words.y + words.height + 8 : 10
                }
            }
        }
    }
}
