import QtQuick
import OstrevoOrbel

/// One row of the journal's screen: the head of a session's card, or an item in it.
Item {
    id: row

    required property int index
    required property bool head
    required property string title
    required property string detail
    required property string stage
    required property bool possible
    required property bool last
    required property bool folded
    required property var remark
    required property var action
    required property var kind
    required property var reason
    required property var size

    property AppModel app
    property RowTable list
    property bool current: false
    property bool narrow: false
    property int padding: Theme.pagePadding

    readonly property int gap: !head ? 0 : index === 0 ? 16 : 12
    /// What lies over the edge of the row is cut off, and so are the corners between two rows.
    readonly property int above: head ? 0 : Theme.cardRadius
    readonly property int below: last ? 0 : Theme.cardRadius

    signal putBackWanted()
    signal foldWanted()
    signal menuWanted(x: real, y: real)

    implicitHeight: gap + (content.item ? content.item.implicitHeight : 0)

    Item {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.leftMargin: row.padding
        anchors.right: parent.right
        anchors.rightMargin: row.padding
        anchors.top: parent.top
        anchors.topMargin: row.gap
        clip: true

        Rectangle {
            anchors.fill: parent
            anchors.bottomMargin: -row.below
            anchors.topMargin: -row.above
            border.color: Theme.line
            color: row.head ? Theme.sunk : Theme.surface
            radius: Theme.cardRadius
        }
        RowGround {
            anchors.fill: parent
            anchors.leftMargin: 1
            anchors.rightMargin: 1
            focused: row.list.showsFocus && row.current
            hovered: pointer.hovered && !row.head
            radius: row.last && !row.head ? Theme.cardRadius : 0
            selected: row.list.selectedRow === row.index && !row.head
            separated: !row.last
        }
        Loader {
            id: content

            anchors.left: parent.left
            anchors.right: parent.right
            sourceComponent: row.head ? headContent : itemContent
        }
        HoverHandler {
            id: pointer
        }
        TapHandler {
            acceptedButtons: Qt.LeftButton

            onTapped: {
                row.list.choose(row.index);
                if (row.head)
                    row.foldWanted();
            }
        }
        TapHandler {
            acceptedButtons: Qt.RightButton

            onTapped: point => {
                row.list.choose(row.index);
                const at = row.mapFromItem(parent, point.position.x, point.position.y);
                row.menuWanted(at.x, at.y);
            }
        }
    }

    Component {
        id: headContent

        JournalHead {
            action: row.action ?? ""
            detail: row.detail
            folded: row.folded
            narrow: row.narrow
            newest: row.index === 0
            objectName: "journal.session." + row.index
            possible: row.possible
            ready: row.app.putBack.ready
            remark: row.remark ?? ""
            title: row.title

            onPutBackWanted: row.putBackWanted()
        }
    }
    Component {
        id: itemContent

        JournalItem {
            detail: row.detail
            kind: row.kind ?? 7
            narrow: row.narrow
            objectName: "journal.item." + row.index
            possible: row.possible
            ready: row.app.putBack.ready
            reason: row.reason ?? ""
            size: row.size ?? ""
            stage: row.stage
            title: row.title

            onPutBackWanted: row.putBackWanted()
        }
    }
}
