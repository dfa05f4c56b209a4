pragma ComponentBehavior: Bound

import QtQuick
import OstrevoOrbel

/// What this is, what it promises, and its keys.
ScreenFrame {
    id: view

    firstFocus: page
    objectName: "help"
    scope: qsTr("What Vanto promises, and its keys")
    status: qsTr("Help")
    title: qsTr("Help")

    readonly property var keys: [
        {
            title: qsTr("Keys on every screen"),
            keys: [
                { keys: "Ctrl 1 … 7", does: qsTr("Show a screen, in the order of the sidebar") },
                { keys: "Ctrl O", does: qsTr("Choose a folder and measure it") },
                { keys: "Ctrl Shift O", does: qsTr("Open a scan that was kept, to look at it") },
                { keys: "F5", does: qsTr("Measure again") },
                { keys: "Esc", does: qsTr("Stop what runs; else close what is open, or empty the field") },
                { keys: "Ctrl Z", does: qsTr("Put the last batch back") },
                { keys: "Ctrl F", does: qsTr("Find") },
                { keys: "F6, Shift F6", does: qsTr("Go between the sidebar and the screen") },
                { keys: "Tab, Shift Tab", does: qsTr("Go to the next control, or the one before") },
                { keys: "Ctrl ,", does: qsTr("Settings") },
                { keys: "F1", does: qsTr("This page") }
            ]
        },
        {
            title: qsTr("Keys in lists and on the map"),
            keys: [
                { keys: "Space", does: qsTr("Tick or untick the item with the focus") },
                { keys: "Ctrl A", does: qsTr("Select all that is shown") },
                { keys: "Del", does: qsTr("Review what is ticked") },
                { keys: "Enter", does: qsTr("Show the item on the map; on the map, zoom in; in the journal, put it back") },
                { keys: "Shift F10, Menu", does: qsTr("Open the menu of the item with the focus") },
                { keys: "Ctrl C", does: qsTr("Copy the item’s path") },
                { keys: "↑ ↓ Home End Page ↑ ↓", does: qsTr("Go to another item; with Ctrl, select none on the way") },
                { keys: "← →", does: qsTr("In groups: fold and unfold; in a copy, between its tick and Keep") },
                { keys: qsTr("Letters"), does: qsTr("In lists: go to the next item of this name") }
            ]
        },
        {
            title: qsTr("Keys on the map"),
            keys: [
                { keys: "↑ ↓ ← →", does: qsTr("Go to the nearest tile in that direction") },
                { keys: "Backspace, Alt ↑", does: qsTr("Zoom out") },
                { keys: "Alt ←, Alt →", does: qsTr("Go back, and forward again") },
                { keys: "Alt Home", does: qsTr("Go to the top") },
                { keys: "Shift F5", does: qsTr("Measure only the selected folder again") }
            ]
        }
    ]

    component Promise: Row {
        property alias iconPath: icon.path
        property alias statement: statement.text
        property alias sentence: sentence.text

        spacing: 14
        width: parent.width

        Icon {
            id: icon

            color: Theme.accent
            y: 1
        }
        Column {
            width: parent.width - Theme.icon - parent.spacing

            ThemedText {
                id: statement

                bold: true
                width: parent.width
                wrapMode: Text.Wrap
            }
            Paragraph {
                id: sentence

            }
        }
    }

    ScrollPage {
        id: page

        // It has the focus itself.
        Accessible.name: view.title
        Accessible.role: Accessible.Pane
        anchors.fill: parent
        columnWidth: Theme.settingsWidth
        focus: true
        padding: view.padding
        spacing: Theme.cardGap

        Card {
            height: about.height + 40
            width: parent.width

            Column {
                id: about

                spacing: 16
                width: parent.width - 2 * x
                x: 19
                y: 19

                Row {
                    spacing: 16
                    width: parent.width

                    Mark {
                        id: mark

                        size: Theme.px(42)
                    }
                    Column {
                        width: parent.width - mark.width - parent.spacing

                        Heading {
                            role: ThemedText.Title
                            text: qsTr("Ostrevo Vanto %1").arg(view.app.version)
                            width: parent.width
                        }
                        Paragraph {
                            objectName: "help.motto"
                            text: view.app.motto
                        }
                    }
                }
                Hairline {
                    edge: Qt.TopEdge
                    soft: true
                }
                Promise {
                    iconPath: Theme.icons.large
                    sentence: qsTr("Measuring reads names and sizes; it changes nothing. What is not measured is said, not guessed.")
                    statement: qsTr("Measure first.")
                }
                Promise {
                    iconPath: Theme.icons.check
                    sentence: qsTr("Nothing is ever deleted. What you approve is checked again just before it moves to the Trash; anything that changed is skipped.")
                    statement: qsTr("Change safely.")
                }
                Promise {
                    iconPath: Theme.icons.putBack
                    sentence: qsTr("Every move is in the journal and can be put back while it is in the Trash. Nothing is ever overwritten.")
                    statement: qsTr("Always reversible.")
                }
            }
        }
        Repeater {
            model: view.keys

            Card {
                id: group

                required property var modelData

                height: Theme.px(40) + keys.height + 14
                title: modelData.title
                width: parent.width

                Column {
                    id: keys

                    width: parent.width
                    y: 6

                    Repeater {
                        model: group.modelData.keys

                        Item {
                            id: entry

                            required property var modelData

                            Accessible.name: modelData.keys + ": " + modelData.does
                            Accessible.role: Accessible.StaticText
                            height: Math.max(Theme.px(30), does.implicitHeight + 8)
                            width: keys.width

                            KeyCap {
                                anchors.left: parent.left
                                anchors.leftMargin: Theme.cardPadding
                                anchors.verticalCenter: parent.verticalCenter
                                text: entry.modelData.keys
                            }
                            ThemedText {
                                id: does

                                anchors.left: parent.left
                                anchors.leftMargin: Theme.px(210)
                                anchors.right: parent.right
                                anchors.rightMargin: Theme.cardPadding
                                anchors.verticalCenter: parent.verticalCenter
                                text: entry.modelData.does
                                wrapMode: Text.Wrap
                            }
                        }
                    }
                }
            }
        }
        Card {
            height: Theme.px(40) + terminal.height + 28
            title: qsTr("In a terminal")
            width: parent.width

            Column {
                id: terminal

                spacing: 10
                width: parent.width - 2 * Theme.cardPadding
                x: Theme.cardPadding
                y: 12

                Paragraph {
                    text: qsTr("The same engine without a window, for scripts and servers. Its results are JSON.")
                }
                CommandLine {
                    anchors.left: parent.left
                    command: "orbel --help"
                    maximumWidth: parent.width
                    objectName: "help.command"
                }
            }
        }
        Paragraph {
            color: Theme.text3
            text: qsTr("Built with Qt under the LGPL 3. The typeface is Noto Sans under the SIL Open Font License 1.1.")
            role: ThemedText.Small
        }
    }
}
