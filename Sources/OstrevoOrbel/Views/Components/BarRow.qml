import QtQuick
import OstrevoOrbel

/// A row with a kind, a name, a share as a bar and a size.
RowGround {
    id: row

    property int kind: 7
    property string name: ""
    property string sizeWords: ""
    property real share: 0
    property int barWidth: Theme.px(84)
    property int sizeWidth: Theme.px(86)
    property int nameElide: Text.ElideMiddle

    signal clicked()

    Accessible.name: name + ", " + sizeWords
    Accessible.role: Accessible.ListItem
    height: Theme.compactRowHeight
    hovered: pointer.hovered
    separated: false

    Accessible.onPressAction: row.clicked()

    KindChip {
        id: chip

        anchors.verticalCenter: parent.verticalCenter
        kind: row.kind
        x: Theme.cardPadding
    }
    ThemedText {
        anchors.left: chip.right
        anchors.leftMargin: 10
        anchors.right: bar.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        elide: row.nameElide
        text: row.name
    }
    SizeBar {
        id: bar

        anchors.right: sizeText.left
        anchors.verticalCenter: parent.verticalCenter
        share: row.share
        width: row.barWidth
    }
    ThemedText {
        id: sizeText

        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideNone
        horizontalAlignment: Text.AlignRight
        text: row.sizeWords
        width: Math.max(row.sizeWidth, implicitWidth)
    }
    HoverHandler {
        id: pointer
    }
    TapHandler {
        onTapped: row.clicked()
    }
}
