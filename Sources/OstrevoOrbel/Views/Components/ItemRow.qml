import QtQuick
import OstrevoOrbel

/// A row of a list: the tick, the kind, the name over its detail, and in cells at the right what else the list says.
/// In an ItemTable it is chosen, ticked and acted on there, and has its menu. A role of the model that is named like a
/// property here gives that property its value; a list sets the others, and its cells, to what it shows.
Item {
    id: row

    required property var model
    required property int index

    property string key: model.key ?? ""
    property string name: model.name ?? model.title ?? ""
    /// The same as it is to be drawn.
    property string nameShown: name
    /// The second line.
    property string detail: model.detail ?? ""
    property int kind: model.kind ?? 7
    property string size: model.size ?? ""
    property string refusal: model.refusal ?? ""
    property string note: model.note ?? ""
    /// What a screen reader says, and what the status line says.
    property string words: model.words ?? [name, size].filter(word => word !== "").join(", ")
    property string status: ""
    // What the menu says of it.
    property string itemName: name
    property string facts: size
    property string tickRefusal: refusal

    /// Whether the rows of this list have a tick, whether this one shows it, and what it is called.
    property bool ticks: false
    property bool showsTick: ticks && listed
    property string tickName: ""
    property int tick: model.tick ?? (model.ticked === true ? Qt.Checked : Qt.Unchecked)
    /// A row that only says something has no kind, no hover, no selection and no menu.
    property bool listed: true
    /// After how many clicks it acts; 0 for never.
    property int opens: 2

    property bool selected: table?.selects === true && table.selectedRow === index
    readonly property bool focused: table?.showsFocus === true && ListView.isCurrentItem
    readonly property bool hovered: pointer.hovered
    readonly property bool refused: refusal !== ""
    readonly property ItemTable table: (ListView.view?.parent ?? null) as ItemTable

    // Where things are, as read from the left; a mirrored row has the same from the right. From the edges to what is first and last, between all, and where another gap is usual.
    property int inset: Theme.cardPadding
    property int gap: 14
    property int tickGap: gap
    property int nameGap: gap
    /// How far kind and name stand behind their places.
    property int indent: 0
    property int lineHeight: Theme.rowHeight
    readonly property int iconX: inset + indent + (ticks && listed ? Theme.tick + tickGap : 0)
    readonly property int nameX: iconX + (listed ? iconWidth + nameGap : 0)
    readonly property int nameWidth: body.width - inset - cellRow.width - nameX - nameReserve
        - (cellRow.width > 0 ? gap : 0)
    /// What the name leaves free beside itself.
    property int nameReserve: 0
    readonly property alias nameNeed: names.need
    readonly property alias namesHeight: names.height
    readonly property alias bodyWidth: body.width

    property alias separated: ground.separated
    property alias nameBold: nameText.bold
    readonly property alias nameFont: nameText.font
    property alias nameColor: nameText.color
    property alias nameElide: nameText.elide
    property alias nameWrap: nameText.wrapMode
    property alias detailElide: detailText.elide
    property alias detailFamily: detailText.font.family
    property alias lineSpacing: names.spacing
    /// In place of the kind.
    property alias icon: iconSlot.data
    property int iconWidth: Theme.px(20)
    property bool showsKind: true
    property alias cells: cellRow.data
    /// Below name and detail.
    property alias below: names.data
    default property alias content: body.data

    /// In a list of cards: whether this row is the head of one or its last row, and the room around it.
    property bool carded: false
    property bool head: false
    property bool last: false
    property int above: 0
    property int under: 0
    property int beside: 0

    signal tapped()
    /// Its tick was clicked; the table says next that it is wanted.
    signal tickWanted()

    function tickIt(): void {
        table.choose(index);
        tickWanted();
        table.tickWanted(index);
    }

    Accessible.checkable: showsTick && !refused
    Accessible.checkStateMixed: tick === Qt.PartiallyChecked
    Accessible.checked: tick === Qt.Checked
    Accessible.description: [refusal, note].filter(word => word !== "").join(". ")
    Accessible.name: words
    Accessible.role: Accessible.ListItem
    Accessible.selectable: listed && table?.selects === true
    Accessible.selected: selected
    implicitHeight: above + lineHeight + under
    width: ListView.view?.width ?? parent?.width ?? 0

    Accessible.onPressAction: {
        table.choose(index);
        if (opens === 1)
            table.activated(index);
    }
    Accessible.onToggleAction: tickIt()
    onHoveredChanged: {
        if (table && hovered)
            table.hoveredRow = row;
        else if (table?.hoveredRow === row)
            table.hoveredRow = null;
    }

    Item {
        id: body

        anchors.bottomMargin: row.under
        anchors.fill: parent
        anchors.leftMargin: row.beside
        anchors.rightMargin: row.beside
        anchors.topMargin: row.above
        // The card's outline goes on above and below, where it is cut off.
        clip: row.carded

        Rectangle {
            anchors.bottomMargin: row.last ? 0 : -radius
            anchors.fill: parent
            anchors.topMargin: row.head ? 0 : -radius
            border.color: Theme.line
            color: row.head ? Theme.sunk : Theme.surface
            radius: Theme.cardRadius
            visible: row.carded
        }
        RowGround {
            id: ground

            readonly property int edge: row.carded ? 1 : 0

            anchors.bottomMargin: row.last ? edge : 0
            anchors.fill: parent
            anchors.leftMargin: edge
            anchors.rightMargin: edge
            anchors.topMargin: row.head ? edge : 0
            focused: row.focused
            hovered: row.hovered && row.listed
            selected: row.selected && row.listed
            separated: !row.last
        }
        HoverHandler {
            id: pointer
        }
        MouseArea {
            function act(mouse: MouseEvent, clicks: int): void {
                if (mouse.button === Qt.LeftButton && row.opens === clicks)
                    row.table.activated(row.index);
            }

            acceptedButtons: Qt.LeftButton | Qt.RightButton
            anchors.fill: parent
            enabled: row.table !== null

            onClicked: mouse => {
                act(mouse, 1);
                if (mouse.button === Qt.LeftButton)
                    row.tapped();
            }
            onDoubleClicked: mouse => act(mouse, 2)
            onPressed: mouse => {
                row.table.choose(row.index);
                if (mouse.button === Qt.RightButton && row.listed)
                    row.table.openMenu(row, mouse.x + body.x, mouse.y + body.y);
            }
        }
        // Most lists have none, and a report may have thousands of rows.
        Loader {
            active: row.showsTick
            height: parent.height
            // The box in the middle of its cell stands where the inset ends.
            x: Theme.along(row.inset - Math.round((Theme.tickCell - Theme.tick) / 2), width, parent.width)

            // A Loader of Qt 6.4 cannot make what is bound to its context.
            // qmllint disable unqualified
            sourceComponent: Tick {
                // The row has its state and its action.
                Accessible.ignored: true
                checkState: row.tick
                focusPolicy: Qt.NoFocus
                nextCheckState: () => row.tick
                objectName: row.tickName
                refusal: row.refusal

                onClicked: row.tickIt()
            }
            // qmllint enable unqualified
        }
        Item {
            id: iconSlot

            height: parent.height
            visible: row.listed
            width: row.iconWidth
            x: Theme.along(row.iconX, width, parent.width)

            KindChip {
                anchors.verticalCenter: parent.verticalCenter
                kind: row.kind
                visible: row.showsKind
            }
        }
        Column {
            id: names

            readonly property real need: Math.max(nameText.implicitWidth, detailText.implicitWidth)

            anchors.verticalCenter: parent.verticalCenter
            width: row.nameWidth
            x: Theme.along(row.nameX, width, parent.width)

            ThemedText {
                id: nameText

                color: row.refused || !row.listed ? Theme.text2 : Theme.ink
                elide: Text.ElideMiddle
                text: row.nameShown
                width: parent.width
            }
            SmallText {
                id: detailText

                elide: Text.ElideMiddle
                text: row.detail
                visible: text !== ""
                width: parent.width

                WholeText {
                    shown: detailText
                }
            }
        }
        Row {
            id: cellRow

            anchors.right: parent.right
            anchors.rightMargin: row.inset
            height: parent.height
            spacing: row.gap
        }
    }
}
