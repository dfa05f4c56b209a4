import QtQuick
import OstrevoOrbel

/// What lies in the map's folder as a list, in the map's order, and below it the facts of what is selected.
FocusScope {
    id: pane

    required property MapModel map

    signal zoomWanted(node: int)
    signal upWanted()
    signal menuWanted(node: int, item: Item, x: real, y: real)
    signal copyWanted(node: int)
    signal tickWanted(node: int)

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    Rectangle {
        color: Theme.line
        height: parent.height
        width: 1
        z: 1
    }
    TableHead {
        id: head

        anchors.left: parent.left
        anchors.right: parent.right

        ThemedText {
            anchors.left: parent.left
            anchors.leftMargin: 6 + Theme.tickCell + Theme.px(20) + 10
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text2
            role: ThemedText.Small
            text: qsTr("Name")
        }
        ThemedText {
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            role: ThemedText.Small
            text: qsTr("Size on disk") + " ↓"
        }
    }
    ListView {
        id: view

        Accessible.name: qsTr("Items in %1").arg(pane.map.focusName)
        Accessible.role: Accessible.List
        activeFocusOnTab: true
        anchors.bottom: summary.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        currentIndex: pane.map.selectedRow
        focus: true
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        model: pane.map.list
        objectName: "map.list"

        onCurrentIndexChanged: if (currentIndex >= 0) positionViewAtIndex(currentIndex, ListView.Contain)

        function move(row: int): void {
            if (count > 0)
                pane.map.selectRow(Math.max(0, Math.min(count - 1, row)));
        }

        property bool keyed: false

        Keys.onPressed: event => {
            const rows = Math.max(1, Math.floor(height / Theme.compactRowHeight) - 1);
            const current = currentItem as MapListRow;
            keyed = true;
            event.accepted = true;
            if (event.key === Qt.Key_C && event.modifiers === Qt.ControlModifier && current)
                pane.copyWanted(current.node);
            else if (event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier) {
                if (current)
                    pane.menuWanted(current.node, current, 24, current.height - 4);
            } else if (event.modifiers & ~Qt.KeypadModifier)
                event.accepted = false;
            else if (event.key === Qt.Key_Down)
                move(currentIndex + 1);
            else if (event.key === Qt.Key_Up)
                move(currentIndex - 1);
            else if (event.key === Qt.Key_PageDown)
                move(currentIndex + rows);
            else if (event.key === Qt.Key_PageUp)
                move(currentIndex - rows);
            else if (event.key === Qt.Key_Home)
                move(0);
            else if (event.key === Qt.Key_End)
                move(count - 1);
            else if (event.key === Qt.Key_Space && current)
                pane.tickWanted(current.node);
            else if (event.key === Qt.Key_Backspace)
                pane.upWanted();
            else if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && current)
                pane.zoomWanted(current.node);
            else
                event.accepted = false;
        }
        onActiveFocusChanged: if (activeFocus) {
            keyed = true;
            if (currentIndex < 0)
                move(0);
        }

        delegate: MapListRow {
            focused: view.activeFocus && view.keyed && ListView.isCurrentItem
            selected: pane.map.selection.valid && pane.map.selection.node === node
            width: view.width

            onChosen: {
                view.forceActiveFocus(Qt.MouseFocusReason);
                view.keyed = false;
                pane.map.select(node);
            }
            onMenuWanted: (x, y) => pane.menuWanted(node, this, x, y)
            onOpened: pane.zoomWanted(node)
            onTickWanted: {
                chosen();
                pane.tickWanted(node);
            }
        }

        ScrollThumb {
            id: thumb

            active: view.moving
            anchors.bottom: parent.bottom
            anchors.right: parent.right
            anchors.top: parent.top
            orientation: Qt.Vertical
            position: view.visibleArea.yPosition
            size: view.visibleArea.heightRatio

            onPositionChanged: if (pressed) view.contentY = view.originY + position * view.contentHeight
        }
    }
    Item {
        id: summary

        anchors.bottom: facts.top
        height: Theme.tableHeadHeight
        width: parent.width

        Rectangle {
            color: Theme.lineSoft
            height: 1
            width: parent.width
        }
        ThemedText {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            anchors.left: parent.left
            anchors.leftMargin: 16
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text2
            objectName: "map.summary"
            role: ThemedText.Small
            text: pane.map.listSummary
        }
    }
    MapInspector {
        id: facts

        anchors.bottom: parent.bottom
        map: pane.map
        width: parent.width
    }
}
