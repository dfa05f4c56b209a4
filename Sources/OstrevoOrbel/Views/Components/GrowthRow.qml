import QtQuick
import OstrevoOrbel

/// A row with a kind, a name, and by how much it grew.
RowGround {
    id: row

    property int kind: 7
    property string name: ""
    property string sizeWords: ""

    signal clicked()

    Accessible.name: qsTr("%1, grew by %2").arg(name).arg(sizeWords)
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
        anchors.right: arrow.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideMiddle
        text: row.name
    }
    PathIcon {
        id: arrow

        anchors.right: sizeText.left
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.text2
        height: Theme.px(12)
        path: Theme.icons.up
        width: height
    }
    ThemedText {
        id: sizeText

        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        bold: true
        elide: Text.ElideNone
        horizontalAlignment: Text.AlignRight
        text: row.sizeWords
        width: Math.max(Theme.px(68), implicitWidth)
    }
    HoverHandler {
        id: pointer
    }
    TapHandler {
        onTapped: row.clicked()
    }
}
