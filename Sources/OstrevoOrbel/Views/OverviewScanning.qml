import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// While measuring: the figures so far, and the top level as it grows. The share that is done is known only
/// where the same root was measured before.
Flickable {
    id: scanning

    required property AppModel app
    property int padding: Theme.pagePadding

    readonly property DiskLedger ledger: app.disk.ledger
    /// Whether the bar shows entries against those of the last scan, or bytes against what is used.
    readonly property bool compares: app.scan.share >= 0
    readonly property real whole: Math.max(1, ledger.total.bytes)
    readonly property int contentWidth: Math.min(width - 2 * padding, Theme.contentWidth)

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    contentHeight: Math.max(height, note.y + note.height + padding)
    interactive: contentHeight > height

    T.ScrollBar.vertical: ScrollThumb {}

    component Reading: Column {
        property alias label: label.text
        property alias value: value.text
        property alias unit: unit.text

        Accessible.name: label.text + " " + value.text + " " + unit.text
        Accessible.role: Accessible.StaticText

        SmallText {
            id: label

            width: parent.width
        }
        Sentence {
            anchors.left: parent.left
            height: Theme.figureLine
            spacing: 5

            ThemedText {
                id: value

                bold: true
                elide: Text.ElideNone
                role: ThemedText.Figure
            }
            ThemedText {
                id: unit

                anchors.baseline: value.baseline
                color: Theme.text2
                elide: Text.ElideNone
                role: ThemedText.Lead
            }
        }
    }

    Card {
        id: card

        height: column.height + 40
        width: scanning.contentWidth
        x: Math.round((scanning.width - width) / 2)
        y: scanning.padding

        Column {
            id: column

            spacing: 12
            width: parent.width - 2 * x
            x: Theme.ledgerPadding - 1
            y: 20

            Grid {
                id: figures

                readonly property int cell: Math.floor(width / columns)

                columns: width < Theme.px(640) ? 2 : 4
                rowSpacing: 12
                width: parent.width

                Reading {
                    label: qsTr("Measured so far")
                    objectName: "overview.measured"
                    unit: scanning.app.scan.figures.measured.unit
                    value: scanning.app.scan.figures.measured.value
                    width: figures.cell
                }
                Reading {
                    label: qsTr("Entries")
                    objectName: "overview.entries"
                    value: scanning.app.scan.figures.entries
                    width: figures.cell
                }
                Reading {
                    label: qsTr("Time")
                    value: scanning.app.scan.figures.duration
                    width: figures.cell
                }
                Reading {
                    label: qsTr("Could not be read")
                    value: scanning.app.scan.figures.unreadable
                    width: figures.cell
                }
            }
            Item {
                id: bar

                readonly property int usedEnd: Math.round(width * scanning.ledger.used.bytes / scanning.whole)
                readonly property int measuredEnd: Math.min(width,
                    Math.round(width * scanning.app.scan.figures.measured.bytes / scanning.whole))

                Accessible.name: scanning.compares ? scanning.app.scan.shareText : scanning.app.scan.measuredText
                Accessible.role: scanning.compares ? Accessible.ProgressBar : Accessible.Graphic
                height: 40
                objectName: "overview.progress"
                visible: scanning.ledger.known || scanning.compares
                width: parent.width

                Hatching {
                    anchors.left: parent.left
                    ground: Theme.hatchGround
                    height: parent.height
                    lines: Theme.hatch
                    visible: !scanning.compares
                    width: bar.usedEnd
                }
                Rectangle {
                    anchors.left: parent.left
                    color: Theme.accent
                    height: parent.height
                    width: scanning.compares ? Math.round(bar.width * scanning.app.scan.share) : bar.measuredEnd
                }
                Rectangle {
                    color: Theme.control
                    height: parent.height
                    visible: !scanning.compares
                    width: 1
                    x: Theme.along(bar.usedEnd, width, parent.width)
                }
                Rectangle {
                    anchors.fill: parent
                    border.color: Theme.control
                    color: "transparent"
                }
            }
            Item {
                height: Theme.smallLine
                visible: scanning.ledger.known && !scanning.compares
                width: parent.width

                SmallText {
                    id: soFar

                    anchors.left: parent.left
                    elide: Text.ElideNone
                    text: qsTr("%1 measured").arg(scanning.app.scan.figures.measured.text)
                }
                SmallText {
                    horizontalAlignment: Text.AlignRight
                    text: qsTr("%1 used, as the file system reports it").arg(scanning.ledger.used.text)
                    width: Math.min(implicitWidth, room)
                    x: Theme.along(Math.max(soFar.width + 16, Math.min(bar.usedEnd, soFar.width + 16 + room) - width),
                        width, parent.width)

                    readonly property real room: parent.width - soFar.width - total.width - 32
                }
                SmallText {
                    id: total

                    anchors.right: parent.right
                    elide: Text.ElideNone
                    text: scanning.ledger.total.text
                }
            }
            SmallText {
                objectName: "overview.share"
                text: scanning.app.scan.shareText
                visible: scanning.compares
                width: parent.width
            }
            Hairline {
                edge: Qt.TopEdge
                soft: true
                visible: remark.visible
            }
            Paragraph {
                id: remark

                color: Theme.text3
                text: qsTr("Not all of the used space can be measured from this folder, so no percentage is shown.")
                visible: !scanning.app.scan.wholeDisk && !scanning.compares
                role: ThemedText.Small
            }
        }
    }
    Card {
        id: topLevel

        readonly property int room: scanning.height - y - note.height - 12 - scanning.padding

        height: Math.max(Theme.px(40) + 8 + 3 * Theme.compactRowHeight,
            Math.min(room, Theme.px(40) + 16 + list.count * Theme.compactRowHeight))
        remark: qsTr("on disk, still counting")
        title: qsTr("Top level so far")
        width: scanning.contentWidth
        x: card.x
        y: card.y + card.height + Theme.cardGap

        ItemTable {
            id: list

            Accessible.name: topLevel.title
            // Whole rows only.
            height: Math.floor((topLevel.height - Theme.px(40) - 12) / Theme.compactRowHeight) * Theme.compactRowHeight
            model: scanning.app.scan.topLevel
            objectName: "overview.toplevel"
            scrolls: false
            selects: false
            width: parent.width
            y: 6

            delegate: BarRow {
                barWidth: Math.round(width * (width < Theme.px(700) ? 0.3 : 0.62))
                kind: model.isFolder ? 0 : 7
                opens: 0
            }
        }
    }
    Row {
        id: note

        spacing: 12
        x: Theme.along(card.x + 4, width, scanning.width)
        y: topLevel.y + topLevel.height + 12

        Icon {
            color: Theme.accent
            path: Theme.icons.info
            y: 1
        }
        ThemedText {
            color: Theme.text2
            text: qsTr("Stopping keeps what has been measured, marked as partial. The map and the lists become available when measuring ends.")
            width: scanning.contentWidth - 32
            wrapMode: Text.Wrap
        }
    }
}
