import QtQuick
import OstrevoOrbel

/// The head of a group of copies, or one of its copies: a part of the group's card.
Item {
    id: row

    required property int index
    required property bool head
    required property string name
    required property int kind
    required property string copies
    required property string frees
    required property bool folded
    required property string path
    required property string changed
    required property string size
    required property bool ticked
    required property bool kept
    required property string refusal
    required property string note
    required property bool lastOfGroup
    required property string words
    property bool selected: false
    property bool focused: false
    /// Whether the keys act on the mark that keeps the copy, not on its tick.
    property bool keepFocused: false
    property bool narrow: false
    /// Whether nothing comes after it.
    property bool closing: false
    property int padding: Theme.pagePadding

    readonly property alias hovered: pointer.containsMouse
    /// Between two cards.
    readonly property int gap: head ? index === 0 ? 16 : 12 : 0
    readonly property int lineHeight: head ? Theme.groupHeadHeight : Theme.copyRowHeight
    readonly property string remark: refusal || note

    signal chosen()
    signal foldWanted()
    signal keepWanted()
    signal tickWanted()
    signal menuWanted(x: real, y: real)

    Accessible.checkable: !head && !kept && refusal === ""
    Accessible.checked: ticked
    Accessible.description: remark
    Accessible.name: words
    Accessible.role: Accessible.Row
    Accessible.selectable: true
    Accessible.selected: selected
    height: gap + lineHeight + (lastOfGroup ? 1 : 0) + (closing ? 16 : 0)

    Accessible.onPressAction: row.chosen()
    Accessible.onToggleAction: row.tickWanted()

    Rectangle {
        id: card

        readonly property int corner: Theme.cardRadius

        // The card's outline goes on above and below, where it is cut off.
        clip: true
        color: "transparent"
        height: parent.height - y - (row.closing ? 16 : 0)
        width: Math.min(parent.width - 2 * row.padding, Theme.tableWidth)
        x: Math.round((parent.width - width) / 2)
        y: row.gap

        Rectangle {
            border.color: Theme.line
            color: row.head ? Theme.sunk : Theme.surface
            height: parent.height + (row.head ? 0 : card.corner) + (row.lastOfGroup ? 0 : card.corner)
            radius: card.corner
            width: parent.width
            y: row.head ? 0 : -card.corner
        }
        RowGround {
            color: row.selected ? Theme.accentSoft : row.hovered ? Theme.hover : "transparent"
            focused: row.focused
            height: row.lineHeight - (row.head ? 1 : 0)
            hovered: row.hovered
            selected: row.selected
            separated: !row.lastOfGroup
            width: parent.width - 2
            x: 1
            y: row.head ? 1 : 0
        }
        Loader {
            height: row.lineHeight
            sourceComponent: row.head ? groupHead : copyLine
            width: parent.width
            z: 1
        }
        MouseArea {
            id: pointer

            acceptedButtons: Qt.LeftButton | Qt.RightButton
            anchors.fill: parent
            hoverEnabled: true

            onDoubleClicked: mouse => {
                if (mouse.button === Qt.LeftButton && row.head)
                    row.foldWanted();
            }
            onPressed: mouse => {
                row.chosen();
                if (mouse.button === Qt.RightButton)
                    row.menuWanted(mouse.x + card.x, mouse.y + card.y);
            }
        }
    }

    Component {
        id: groupHead

        Item {
            IconButton {
                id: chevron

                anchors.verticalCenter: parent.verticalCenter
                focusPolicy: Qt.NoFocus
                iconPath: row.folded ? Theme.icons.right : Theme.icons.down
                objectName: "duplicates.fold." + row.index
                text: row.folded ? qsTr("Unfold") : qsTr("Fold")
                x: Theme.px(9)

                onClicked: {
                    row.chosen();
                    row.foldWanted();
                }
            }
            KindChip {
                id: chip

                anchors.left: chevron.right
                anchors.leftMargin: 4
                anchors.verticalCenter: parent.verticalCenter
                kind: row.kind
            }
            ThemedText {
                id: name

                anchors.left: chip.right
                anchors.leftMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                bold: true
                elide: Text.ElideMiddle
                text: row.name
                width: Math.min(implicitWidth, Math.max(0, bytes.x - x - (copies.visible ? copies.implicitWidth + 24 : 12)))
            }
            ThemedText {
                id: copies

                anchors.left: name.right
                anchors.leftMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.text2
                text: row.copies
                width: Math.min(implicitWidth, Math.max(0, bytes.x - x - 12))
            }
            ThemedText {
                id: bytes

                anchors.right: parent.right
                anchors.rightMargin: 16
                anchors.verticalCenter: parent.verticalCenter
                bold: true
                elide: Text.ElideNone
                text: row.frees
            }
        }
    }
    Component {
        id: copyLine

        Item {
            Tick {
                id: box

                Accessible.name: qsTr("Tick %1").arg(row.path)
                anchors.verticalCenter: parent.verticalCenter
                checkState: row.ticked ? Qt.Checked : Qt.Unchecked
                focusPolicy: Qt.NoFocus
                height: parent.height
                nextCheckState: () => row.ticked ? Qt.Checked : Qt.Unchecked
                objectName: "duplicates.tick." + row.index
                refusal: row.refusal
                visible: !row.kept
                x: 4

                onClicked: row.tickWanted()

                FocusRing {
                    anchors.centerIn: parent
                    anchors.fill: undefined
                    controlRadius: Theme.tickRadius
                    height: Theme.tick + 8
                    visible: row.focused && !row.keepFocused && !row.kept
                    width: height
                }
            }
            KeepRadio {
                id: mark

                Accessible.name: qsTr("Keep %1").arg(row.path)
                anchors.verticalCenter: parent.verticalCenter
                autoExclusive: false
                checked: row.kept
                focusPolicy: Qt.NoFocus
                objectName: "duplicates.keep." + row.index
                text: row.kept || row.refusal === "" ? qsTr("Keep") : qsTr("Stays")
                x: 4 + Theme.tickCell

                onClicked: {
                    // A click has set it; what is kept is told by the list.
                    checked = Qt.binding(() => row.kept);
                    row.keepWanted();
                }

                FocusRing {
                    anchors.fill: undefined
                    controlRadius: height / 2
                    height: Theme.tick + 8
                    visible: row.focused && (row.keepFocused || row.kept)
                    width: height
                    x: -4
                    y: Math.round((parent.height - height) / 2)
                }
            }
            ThemedText {
                anchors.left: parent.left
                anchors.leftMargin: 4 + Theme.tickCell + Theme.px(88)
                anchors.right: badge.visible ? badge.left : changed.visible ? changed.left : bytes.left
                anchors.rightMargin: 14
                anchors.verticalCenter: parent.verticalCenter
                color: row.refusal !== "" ? Theme.text2 : Theme.ink
                elide: Text.ElideMiddle
                text: row.path
            }
            Badge {
                id: badge

                anchors.right: changed.visible ? changed.left : bytes.left
                anchors.rightMargin: 14
                anchors.verticalCenter: parent.verticalCenter
                iconPath: row.refusal !== "" ? Theme.icons.lock : Theme.icons.info
                text: row.remark
                visible: row.remark !== ""
                width: Math.min(implicitWidth, parent.width * 0.4)
            }
            ThemedText {
                id: changed

                anchors.right: bytes.left
                anchors.rightMargin: 14
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.text2
                elide: Text.ElideNone
                horizontalAlignment: Text.AlignRight
                role: ThemedText.Small
                text: row.changed
                visible: !row.narrow || !badge.visible
                width: Math.max(implicitWidth, Theme.px(176))
            }
            ThemedText {
                id: bytes

                anchors.right: parent.right
                anchors.rightMargin: 16
                anchors.verticalCenter: parent.verticalCenter
                elide: Text.ElideNone
                horizontalAlignment: Text.AlignRight
                text: row.size
                width: Math.max(implicitWidth, Theme.px(72))
            }
        }
    }
}
