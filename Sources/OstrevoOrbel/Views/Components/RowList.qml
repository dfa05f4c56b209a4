import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A list that is one Tab stop: the arrows move its current row, Enter acts on it.
T.Control {
    id: list

    property alias model: view.model
    property alias delegate: view.delegate
    property alias currentIndex: view.currentIndex
    readonly property alias count: view.count

    function itemAtIndex(index: int): Item {
        return view.itemAtIndex(index);
    }

    readonly property alias contentHeight: view.contentHeight
    property alias scrolls: view.interactive

    signal activated(int index)

    function move(by: int): void {
        // Who uses the keys wants to see where they are.
        list.forceActiveFocus(Qt.TabFocusReason);
        if (view.count > 0)
            view.currentIndex = Math.max(0, Math.min(view.count - 1, view.currentIndex + by));
    }

    Accessible.role: Accessible.List
    focusPolicy: Qt.StrongFocus
    implicitHeight: view.contentHeight

    Keys.onDownPressed: list.move(1)
    Keys.onUpPressed: list.move(-1)
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            list.activated(view.currentIndex);
    }
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            list.activated(view.currentIndex);
    }
    Keys.onPressed: event => {
        const rowsInSight = Math.max(1, Math.floor(view.height / Theme.compactRowHeight) - 1);
        const steps = {
            [Qt.Key_Home]: -view.count,
            [Qt.Key_End]: view.count,
            [Qt.Key_PageUp]: -rowsInSight,
            [Qt.Key_PageDown]: rowsInSight
        };
        if (event.key in steps) {
            list.move(steps[event.key]);
            event.accepted = true;
        }
    }

    contentItem: ListView {
        id: view

        activeFocusOnTab: false
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        interactive: false
        keyNavigationEnabled: false

        T.ScrollBar.vertical: ScrollThumb {
            visible: view.interactive && size < 1
        }
    }
}
