import QtQuick
import OstrevoOrbel

/// The free space of a volume, large, and which volume that is.
Item {
    id: figure

    required property AppModel app

    readonly property DiskLedger ledger: app.disk.ledger

    implicitHeight: Theme.displayLine

    Sentence {
        anchors.left: parent.left
        spacing: 6

        ThemedText {
            id: number

            bold: true
            elide: Text.ElideNone
            role: ThemedText.Display
            text: figure.ledger.free.value
        }
        ThemedText {
            anchors.baseline: number.baseline
            color: Theme.text2
            elide: Text.ElideNone
            font.pixelSize: Theme.px(18)
            lineHeight: Theme.px(24)
            text: (figure.app.scan.foreign ? qsTr("%1 free then") : qsTr("%1 free")).arg(figure.ledger.free.unit)
        }
    }
    VolumeChoice {
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.rightMargin: -8
        app: figure.app
        objectName: "overview.volume"
        width: Math.min(implicitWidth, parent.width * 0.5)
    }
}
