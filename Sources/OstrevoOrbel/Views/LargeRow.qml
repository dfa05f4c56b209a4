import QtQuick
import OstrevoOrbel

/// A row of the large and old files.
Item {
    id: row

    required property int index
    required property int node
    required property string name
    required property string folder
    required property string path
    required property int kind
    required property string kindName
    required property string size
    required property string lastUsed
    required property string record
    required property int tick
    required property string refusal
    required property string openIn
    required property string note

    /// Where the columns are.
    required property LargeColumns columns
    property bool current: false
    property bool focused: false
    property bool selected: false

    readonly property bool hovered: pointer.containsMouse
    /// For the status line.
    readonly property string words: [path, kindName, size].join(" · ")
    readonly property bool refused: refusal !== ""
    readonly property var remarks: [openIn, refusal, refused ? "" : note].filter(remark => remark !== "")

    signal chosen()
    signal opened()
    signal menuWanted(x: real, y: real)
    signal tickWanted()

    Accessible.checkable: !refused
    Accessible.checked: tick === Qt.Checked
    Accessible.description: remarks.join(", ")
    Accessible.name: qsTr("%1, %2, %3, in %4, last used %5").arg(name).arg(kindName).arg(size).arg(folder).arg(lastUsed)
    Accessible.role: Accessible.Row
    Accessible.selectable: true
    Accessible.selected: selected
    implicitHeight: Theme.rowHeight
    objectName: "large.row." + name

    Accessible.onPressAction: row.chosen()

    RowGround {
        anchors.fill: parent
        focused: row.focused
        hovered: row.hovered
        selected: row.selected
    }
    Tick {
        anchors.verticalCenter: parent.verticalCenter
        checkState: row.tick
        focusPolicy: Qt.NoFocus
        height: parent.height
        nextCheckState: () => row.tick
        objectName: "large.tick." + row.name
        refusal: row.refusal
        x: row.columns.tickX
        z: 1

        Accessible.name: row.name

        onClicked: row.tickWanted()
    }
    KindChip {
        anchors.verticalCenter: parent.verticalCenter
        kind: row.kind
        x: row.columns.chipX
    }
    Column {
        id: names

        anchors.verticalCenter: parent.verticalCenter
        width: row.columns.nameWidth - (badges.visible ? badges.width + row.columns.gap : 0)
        x: row.columns.nameX

        ThemedText {
            id: title

            color: row.refused ? Theme.text2 : Theme.ink
            elide: Text.ElideMiddle
            text: row.name
            width: parent.width
        }
        ThemedText {
            id: place

            color: Theme.text2
            elide: row.columns.narrow && row.remarks.length > 0 ? Text.ElideRight : Text.ElideMiddle
            role: ThemedText.Small
            text: row.columns.narrow && row.remarks.length > 0 ? row.remarks.join(" · ") : row.folder
            width: parent.width
        }
    }
    Row {
        id: badges

        // What name and folder leave, and half of the column at least.
        readonly property int most: Math.max(row.columns.nameWidth / 2,
            row.columns.nameWidth - row.columns.gap - Math.max(title.implicitWidth, place.implicitWidth))
        readonly property int each: Math.floor((most - spacing * (row.remarks.length - 1))
            / Math.max(1, row.remarks.length))

        anchors.verticalCenter: parent.verticalCenter
        spacing: 8
        visible: !row.columns.narrow && row.remarks.length > 0
        x: row.columns.nameX + row.columns.nameWidth - width

        HoverHandler {
            id: over
        }
        // In full, where there is no room for all of it.
        Hint {
            text: row.remarks.join("\n")
            visible: over.hovered && badges.width + 2 > badges.most
        }
        Badge {
            iconPath: Theme.icons.warn
            text: row.openIn
            tone: Badge.Warn
            visible: row.openIn !== ""
            width: Math.min(implicitWidth, badges.each)
        }
        Badge {
            iconPath: row.refused ? Theme.icons.lock : Theme.icons.info
            text: row.refused ? row.refusal : row.note
            visible: text !== ""
            width: Math.min(implicitWidth, badges.each)
        }
    }
    ThemedText {
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.text2
        text: row.kindName
        visible: !row.columns.narrow
        width: row.columns.kindWidth
        x: row.columns.kindX
    }
    Column {
        anchors.verticalCenter: parent.verticalCenter
        width: row.columns.usedWidth
        x: row.columns.usedX

        ThemedText {
            text: row.lastUsed
            width: parent.width
        }
        ThemedText {
            color: Theme.text2
            role: ThemedText.Small
            text: row.record
            width: parent.width
        }
    }
    ThemedText {
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideNone
        horizontalAlignment: Text.AlignRight
        text: row.size
        width: row.columns.sizeWidth
        x: row.columns.sizeX
    }
    MouseArea {
        id: pointer

        acceptedButtons: Qt.LeftButton | Qt.RightButton
        anchors.fill: parent
        hoverEnabled: true

        onDoubleClicked: mouse => {
            if (mouse.button === Qt.LeftButton)
                row.opened();
        }
        onPressed: mouse => {
            row.chosen();
            if (mouse.button === Qt.RightButton)
                row.menuWanted(mouse.x, mouse.y);
        }
    }
}
