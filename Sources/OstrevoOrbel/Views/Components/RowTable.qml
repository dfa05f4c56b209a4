import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// The rows of a table, as many as there may be: one Tab stop. The arrows move focus and selection, with Ctrl the focus
/// alone; Space ticks, Enter acts, letters find a row by its name. What a key does to a row is for the screen to do.
FocusScope {
    id: table

    property alias model: view.model
    property alias delegate: view.delegate
    property alias section: view.section
    property alias footer: view.footer
    /// The row that has the focus.
    property alias currentRow: view.currentIndex
    /// The row that is selected; -1 for none.
    property int selectedRow: -1
    readonly property alias count: view.count
    readonly property alias contentHeight: view.contentHeight
    /// Whether the row with the focus is to show it.
    readonly property bool showsFocus: view.activeFocus && view.keyed
    /// Gives the first row after `row`, going round, whose name begins with `text`; -1 when there is none.
    property var find: (text, row) => -1

    signal activated(row: int)
    signal tickWanted(row: int)
    signal copyWanted(row: int)
    /// At a point of the row's item.
    signal menuWanted(row: int, item: Item, x: real, y: real)
    /// Left and Right, by which a row is folded and unfolded.
    signal turned(row: int, right: bool)

    function itemAt(row: int): Item {
        return view.itemAtIndex(row);
    }
    /// For a pointer that acts on a row: it gets the focus and is selected.
    function choose(row: int): void {
        view.keyed = false;
        view.forceActiveFocus(Qt.MouseFocusReason);
        view.currentIndex = row;
        table.selectedRow = row;
    }

    Accessible.role: Accessible.Table

    ListView {
        id: view

        property bool keyed: false
        property string typed: ""

        function move(row: int, selects: bool): void {
            if (count === 0)
                return;
            currentIndex = Math.max(0, Math.min(count - 1, row));
            if (selects)
                table.selectedRow = currentIndex;
            positionViewAtIndex(currentIndex, ListView.Contain);
        }
        function findTyped(text: string): void {
            typed += text.toLowerCase();
            forget.restart();
            // The first letter leads on from the row that has the focus; further ones may keep it.
            const row = table.find(typed, typed.length === 1 ? currentIndex : currentIndex - 1);
            if (row >= 0)
                move(row, true);
        }

        activeFocusOnTab: true
        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        currentIndex: -1
        focus: true
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        reuseItems: true

        Keys.onPressed: event => {
            const rowsInSight = Math.max(1, Math.floor(height / Math.max(1, contentHeight / Math.max(1, count))) - 1);
            const steps = {
                [Qt.Key_Up]: -1,
                [Qt.Key_Down]: 1,
                [Qt.Key_PageUp]: -rowsInSight,
                [Qt.Key_PageDown]: rowsInSight,
                [Qt.Key_Home]: -count,
                [Qt.Key_End]: count
            };
            const modifiers = event.modifiers & ~Qt.KeypadModifier;
            const held = view.currentItem;
            // A key that is held acts once, and not at all when it went down elsewhere.
            const acts = [Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter].includes(event.key);
            keyed = true;
            event.accepted = true;
            if (event.key in steps && (modifiers === Qt.NoModifier || modifiers === Qt.ControlModifier))
                move(currentIndex + steps[event.key], modifiers === Qt.NoModifier);
            else if (held === null)
                event.accepted = false;
            else if (event.key === Qt.Key_C && modifiers === Qt.ControlModifier)
                table.copyWanted(currentIndex);
            else if (event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && modifiers === Qt.ShiftModifier)
                table.menuWanted(currentIndex, held, 24, held.height - 4);
            else if (modifiers !== Qt.NoModifier && modifiers !== Qt.ShiftModifier)
                event.accepted = false;
            else if (acts && event.isAutoRepeat)
                return;
            else if (event.key === Qt.Key_Space && typed === "")
                table.tickWanted(currentIndex);
            else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
                table.activated(currentIndex);
            else if (event.key === Qt.Key_Left || event.key === Qt.Key_Right)
                table.turned(currentIndex, event.key === Qt.Key_Right);
            else if (event.text !== "" && event.text >= " " && event.key !== Qt.Key_Delete)
                findTyped(event.text);
            else
                event.accepted = false;
        }
        onActiveFocusChanged: if (activeFocus) {
            keyed = true;
            if (currentIndex < 0)
                move(0, true);
        }

        T.ScrollBar.vertical: ScrollThumb {
            visible: size < 1
        }

        Timer {
            id: forget

            interval: 1000

            onTriggered: view.typed = ""
        }
    }
}
