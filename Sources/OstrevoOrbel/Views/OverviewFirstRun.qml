import QtQuick
import OstrevoOrbel

/// Before anything is measured: what the file system says, and the way to begin.
FocusScope {
    id: first

    required property AppModel app
    property int padding: Theme.pagePadding
    readonly property string status: qsTr("Ready")
    readonly property Item firstFocus: disk

    Card {
        id: card

        anchors.horizontalCenter: parent.horizontalCenter
        height: visible ? column.height + 40 : 0
        visible: first.app.disk.ledger.known
        width: Math.min(parent.width - 2 * first.padding, Theme.contentWidth)
        y: first.padding

        Column {
            id: column

            spacing: 8
            width: parent.width - 2 * x
            x: Theme.ledgerPadding - 1
            y: 20

            FreeFigure {
                app: first.app
                width: parent.width
            }
            VolumeBar {
                Accessible.name: first.app.disk.ledger.summary
                Accessible.role: Accessible.Graphic
                height: 40
                segments: first.app.disk.ledger.segments
                width: parent.width
            }
            Item {
                height: Theme.smallLine
                width: parent.width

                SmallText {
                    anchors.left: parent.left
                    anchors.right: total.left
                    anchors.rightMargin: 12
                    text: qsTr("%1 used, as the file system reports it. None of it measured yet.")
                        .arg(first.app.disk.ledger.used.text)
                }
                SmallText {
                    id: total

                    anchors.right: parent.right
                    elide: Text.ElideNone
                    text: first.app.disk.ledger.total.text
                }
            }
        }
    }
    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(parent.width - 2 * first.padding, Theme.px(640))
        y: Math.max(card.y + card.height + 24,
            Math.round(card.y + card.height + (parent.height - card.y - card.height - height) / 2))

        Heading {
            horizontalAlignment: Text.AlignHCenter
            role: ThemedText.Title
            text: first.app.disk.ledger.known ? qsTr("See where %1 went").arg(first.app.disk.ledger.used.text)
                : qsTr("See where the space went")
            width: parent.width
            wrapMode: Text.Wrap
        }
        Gap {
            height: 6
        }
        Paragraph {
            horizontalAlignment: Text.AlignHCenter
            role: ThemedText.Lead
            text: qsTr("Measuring reads names and sizes; it changes nothing.")
        }
        Gap {
            height: 24
        }
        Flow {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 12
            width: Math.min(parent.width, disk.implicitWidth + spacing + folder.implicitWidth)

            PushButton {
                id: disk

                controlHeight: Theme.startButtonHeight
                focus: true
                objectName: "overview.measure"
                text: qsTr("Measure This Disk")
                variant: PushButton.Primary

                onClicked: first.app.scan.scanDisk()
            }
            PushButton {
                id: folder

                controlHeight: Theme.startButtonHeight
                keys: "Ctrl O"
                objectName: "overview.folder"
                text: qsTr("Choose Folder…")

                onClicked: first.app.chooseFolderAndScan()
            }
        }
        Gap {
            height: 32
        }
        Paragraph {
            color: Theme.text3
            horizontalAlignment: Text.AlignHCenter
            text: first.app.motto
            role: ThemedText.Small
        }
    }
}
