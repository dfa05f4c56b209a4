pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// The kinds on the map and what each takes up, the largest first, or the changes where it is coloured by these. Each is a toggle: what is not chosen is drawn
/// pale. Only whole entries are shown; buttons and the wheel turn to those that have no room.
FocusScope {
    id: bar

    required property RoleList legend
    property bool narrow: false
    property int padding: Theme.pagePadding

    /// The entries in sight.
    property int first: 0
    readonly property int last: lastFrom(first)
    readonly property real room: Theme.along(back.x, back.width, width) - view.anchors.leftMargin - 8
    /// Around the entries in sight, for the ring of the focus; no wider than what is between two of them.
    readonly property int rim: 4

    signal toggled(kind: int)
    signal changeToggled(change: int)

    /// Null before it is there.
    function entryAt(entry: int): var {
        return repeater.itemAt(entry);
    }
    /// From where reading begins.
    function startOf(entry: int): real {
        const item = bar.entryAt(entry);
        return item ? Theme.along(item.x, item.width, entries.width) : 0;
    }
    function endOf(entry: int): real {
        return bar.startOf(entry) + (bar.entryAt(entry)?.width ?? 0);
    }
    /// At least one, and as many as have room.
    function lastFrom(entry: int): int {
        let last = entry;
        // The width changes with each entry, and so does this.
        while (entries.width > 0 && last + 1 < repeater.count && endOf(last + 1) - startOf(entry) <= room)
            ++last;
        return last;
    }
    /// The first entry in sight when this one is the last.
    function firstBefore(entry: int): int {
        let first = Math.max(0, entry);
        while (first > 0 && endOf(entry) - startOf(first - 1) <= room)
            --first;
        return first;
    }
    function turnTo(entry: int): void {
        first = Math.max(0, Math.min(firstBefore(repeater.count - 1), entry));
    }
    function reveal(entry: int): void {
        if (entry < first)
            turnTo(entry);
        else if (entry > last)
            turnTo(firstBefore(entry));
    }

    Accessible.name: qsTr("Kinds")
    Accessible.role: Accessible.Grouping

    onRoomChanged: turnTo(0)

    Connections {
        target: bar.legend

        function onModelReset(): void {
            bar.turnTo(0);
        }
    }
    Hairline {
        edge: Qt.TopEdge
    }
    Item {
        id: view

        anchors.left: parent.left
        anchors.leftMargin: bar.padding - 8 - bar.rim
        clip: true
        height: parent.height
        width: Math.max(0, Math.min(bar.room, bar.endOf(bar.last) - bar.startOf(bar.first))) + 2 * bar.rim

        Row {
            id: entries

            anchors.verticalCenter: parent.verticalCenter
            spacing: bar.rim
            x: Theme.along(bar.rim - bar.startOf(bar.first), width, view.width)

            Repeater {
                id: repeater

                model: bar.legend

                T.AbstractButton {
                    id: entry

                    required property int index
                    required property int kind
                    required property string title
                    required property string size
                    required property bool active
                    required property int change

                    Spoken.name: title + ", " + size
                    Spoken.role: Accessible.CheckBox
                    checked: active
                    focusPolicy: Qt.StrongFocus
                    hoverEnabled: true
                    implicitHeight: Theme.smallButtonHeight
                    implicitWidth: contentItem.implicitWidth + 16
                    leftPadding: 8
                    objectName: change < 0 ? "map.kind." + kind : "map.change." + change
                    rightPadding: 8

                    ButtonKeys.enterClicks: true
                    onActiveFocusChanged: if (activeFocus) bar.reveal(index)
                    onClicked: {
                        if (change < 0)
                            bar.toggled(kind);
                        else
                            bar.changeToggled(change);
                    }

                    background: Rectangle {
                        border.color: Theme.accent
                        border.width: entry.active ? 1 : 0
                        color: entry.active ? Theme.accentSoft : entry.hovered ? Theme.hover : "transparent"
                        radius: Theme.controlRadius

                        FocusRing {
                            anchors.margins: -2
                            controlRadius: Theme.controlRadius - 2
                            visible: entry.visualFocus
                        }
                    }
                    contentItem: Row {
                        spacing: 8

                        KindChip {
                            anchors.verticalCenter: parent.verticalCenter
                            kind: entry.kind
                            size: Theme.px(18)
                            visible: entry.change < 0
                        }
                        ChangeChip {
                            anchors.verticalCenter: parent.verticalCenter
                            change: Math.max(0, entry.change)
                            size: Theme.px(18)
                            visible: entry.change >= 0
                        }
                        ThemedText {
                            anchors.verticalCenter: parent.verticalCenter
                            role: ThemedText.Small
                            text: entry.title
                        }
                        SmallText {
                            anchors.verticalCenter: parent.verticalCenter
                            text: entry.size
                            visible: !bar.narrow
                        }
                    }
                }
            }
        }
        WheelHandler {
            /// Of a notch of the wheel, which a touch pad sends in small parts.
            property real turned: 0

            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad

            onWheel: wheel => {
                turned += wheel.angleDelta.y + wheel.angleDelta.x;
                if (Math.abs(turned) < 120)
                    return;
                if (turned > 0)
                    bar.turnTo(bar.first - 1);
                else
                    bar.turnTo(bar.first + 1);
                turned = 0;
            }
        }
    }
    IconButton {
        id: back

        anchors.right: forward.left
        anchors.verticalCenter: parent.verticalCenter
        enabled: bar.first > 0
        iconPath: Theme.icons.left
        objectName: "map.legend.back"
        text: qsTr("Larger kinds")
        visible: forward.visible

        onClicked: bar.turnTo(bar.firstBefore(bar.first - 1))
    }
    IconButton {
        id: forward

        anchors.right: smaller.visible ? smaller.left : parent.right
        anchors.rightMargin: smaller.visible ? 16 : bar.padding - 8
        anchors.verticalCenter: parent.verticalCenter
        enabled: bar.last < repeater.count - 1
        iconPath: Theme.icons.right
        objectName: "map.legend.forward"
        text: qsTr("Smaller kinds")
        visible: bar.first > 0 || enabled

        onClicked: bar.turnTo(bar.last + 1)
    }
    Row {
        id: smaller

        anchors.right: parent.right
        anchors.rightMargin: bar.padding
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8
        visible: !bar.narrow

        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            border.color: Theme.control
            color: Theme.hatchGround
            height: Theme.px(12)
            radius: 3
            width: height
        }
        SmallText {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Smaller items")
        }
    }
}
