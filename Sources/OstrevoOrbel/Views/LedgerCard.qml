import QtQuick
import OstrevoOrbel

/// The volume as a bar and as a sum that adds up.
Card {
    id: card

    required property AppModel app
    readonly property DiskLedger ledger: app.disk.ledger
    readonly property bool hasShared: ledger.shared.bytes > 0
    readonly property bool hasTrash: ledger.trash.bytes > 0
    readonly property bool hasFreed: ledger.freedSince.bytes > 0
    readonly property bool hasChanged: hasFreed || ledger.writtenSince.bytes > 0
    /// What could not be read explains what was not measured only where all of the disk was to be.
    readonly property bool explainsUnreadable: wholeDisk && !hasShared
    readonly property bool wholeDisk: app.scan.wholeDisk || app.scan.root === "/"
    /// That something was left out explains it too.
    readonly property string leftOut: hasShared ? "" : app.exclusions.leftOutSentence
    /// With what can be done about it here.
    readonly property string unreadable: !app.scan.foreign && app.scan.unreadable.total > 0 ? app.scan.unreadable.headline : ""

    signal unreadableWanted()

    Accessible.name: ledger.summary
    Accessible.role: Accessible.Grouping
    implicitHeight: column.height + 36

    component Swatch: Rectangle {
        border.color: Theme.control
        height: Theme.px(12)
        radius: 3
        width: height
    }

    Column {
        id: column

        spacing: 6
        width: parent.width - 2 * x
        x: Theme.ledgerPadding - 1
        y: 19

        FreeFigure {
            app: card.app
            width: parent.width
        }
        Gap {
            height: 2
        }
        VolumeBar {
            id: bar

            height: 40
            objectName: "overview.ledger"
            segments: card.ledger.segments
            width: parent.width
        }
        Item {
            height: Theme.smallLine + 10
            width: parent.width

            // The bracket over what is used.
            Rectangle {
                id: bracket

                color: Theme.control
                height: 1
                objectName: "overview.bracket"
                width: bar.usedEnd
                x: Theme.along(0, width, parent.width)
                y: 7
            }
            Rectangle {
                color: Theme.control
                height: 7
                width: 1
                x: Theme.along(0, width, parent.width)
            }
            Rectangle {
                color: Theme.control
                height: 7
                width: 1
                x: Theme.along(bracket.width - 1, width, parent.width)
            }
            Sentence {
                id: words

                x: Math.max(0, Math.min(parent.width - width, Math.round(bracket.x + (bracket.width - width) / 2)))
                y: 10

                SmallText {
                    text: qsTr("Used, as the file system reports it: ")
                    width: Math.min(implicitWidth, card.width - 2 * column.x - usedText.width)
                }
                ThemedText {
                    id: usedText

                    bold: true
                    elide: Text.ElideNone
                    role: ThemedText.Small
                    text: card.ledger.used.text
                }
            }
        }
        Gap {
            height: 2
        }
        Grid {
            id: terms

            readonly property int count: 5 + (card.hasTrash ? 1 : 0) + (card.hasChanged ? 1 : 0)
            /// What a term needs for its label and its amount; remarks go on in a second line, or are cut.
            readonly property int need: {
                let need = 0;
                for (let i = 0; i < children.length; ++i)
                    need = Math.max(need, children[i].visible ? children[i].implicitWidth : 0);
                return need;
            }
            // The last of a row needs no room for what would follow.
            readonly property int beyond: Theme.px(24)
            readonly property int cell: Math.floor((width + beyond) / columns)
            readonly property int most: Math.max(1, Math.floor((width + beyond) / Math.max(1, need)))

            // In one row where they fit, else in rows as long as each other.
            columns: Math.ceil(count / Math.ceil(count / most))
            rowSpacing: 16
            width: parent.width

            LedgerTerm {
                amount: card.ledger.measured.text
                label: qsTr("Measured")
                link: card.explainsUnreadable ? "" : card.unreadable
                objectName: "overview.term.measured"
                remark: card.app.scan.figures.entriesText + (card.app.scan.partial ? qsTr(", partial") : "")
                width: terms.cell

                swatch: Row {
                    Repeater {
                        model: [1, 6, 2, 3]

                        Rectangle {
                            required property int modelData

                            color: Theme.kindFills[modelData]
                            height: Theme.px(12)
                            width: Theme.px(5)
                        }
                    }
                }

                onLinkClicked: card.unreadableWanted()
            }
            LedgerTerm {
                amount: card.ledger.trash.text
                joint: "+"
                label: qsTr("In the Trash")
                objectName: "overview.term.trash"
                remark: qsTr("free when it is emptied")
                visible: card.hasTrash
                width: terms.cell

                swatch: Swatch {
                    color: Theme.text3
                }
            }
            LedgerTerm {
                amount: card.hasShared ? card.ledger.shared.text : card.ledger.notMeasured.text
                joint: card.hasShared ? "−" : "+"
                label: card.hasShared ? qsTr("Shared") : qsTr("Not measured")
                objectName: "overview.term.notmeasured"
                link: card.explainsUnreadable ? card.unreadable : ""
                remark: card.hasShared ? qsTr("counted at every file that shares it")
                    : card.wholeDisk && card.leftOut !== "" ? card.leftOut
                    : link !== "" ? ""
                    : card.app.scan.partial ? qsTr("most of it not reached yet")
                    : card.wholeDisk ? qsTr("not visible as files") : card.leftOut === ""
                    ? qsTr("outside of %1").arg(card.app.scan.root)
                    : qsTr("outside of %1; %2").arg(card.app.scan.root).arg(card.leftOut)
                width: terms.cell

                swatch: Swatch {
                    clip: true
                    color: Theme.hatchGround

                    Rectangle {
                        anchors.centerIn: parent
                        antialiasing: true
                        color: Theme.control
                        height: 1
                        rotation: -45
                        width: parent.width
                    }
                }

                onLinkClicked: card.unreadableWanted()
            }
            LedgerTerm {
                amount: card.hasFreed ? card.ledger.freedSince.text : card.ledger.writtenSince.text
                joint: card.hasFreed ? "−" : "+"
                label: card.hasFreed ? qsTr("Freed since") : qsTr("Written since")
                objectName: "overview.term.since"
                remark: qsTr("after it was measured")
                visible: card.hasChanged
                width: terms.cell
            }
            LedgerTerm {
                amount: card.ledger.reserved.text
                joint: "+"
                label: qsTr("Reserved")
                remark: qsTr("kept by the file system")
                width: terms.cell

                swatch: Swatch {
                    color: Theme.control
                }
            }
            LedgerTerm {
                amount: card.ledger.free.text
                joint: "+"
                label: qsTr("Free")
                remark: card.app.scan.foreign ? qsTr("available then") : qsTr("available to you now")
                width: terms.cell

                swatch: Swatch {
                    color: "transparent"
                }
            }
            LedgerTerm {
                amount: card.ledger.total.text
                joint: "="
                label: card.ledger.path === card.app.disk.ownLedger.path ? qsTr("This disk") : card.ledger.path
                objectName: "overview.term.total"
                total: true
                width: terms.cell
            }
        }
    }
}
