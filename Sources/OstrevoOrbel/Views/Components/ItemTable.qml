import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A list of ItemRows, as many as there may be: one Tab stop. The arrows move focus and selection, with Ctrl the focus
/// alone; Space ticks, Ctrl+A all and Ctrl+Shift+A none, Enter acts, letters find a row by its name (the display role of the model), Ctrl+C copies the
/// path, Ctrl+Shift+C the row. Focus and selection keep to their items when the rows are arranged anew.
T.Control {
    id: table

    property alias model: view.model
    property alias delegate: view.delegate
    property alias section: view.section
    property alias footer: view.footer
    /// The row that has the focus, and the one that is selected; -1 for none.
    property alias currentIndex: view.currentIndex
    property int selectedRow: -1
    /// Whether there is a selection besides the focus.
    property bool selects: true
    /// Whether they keep to their items when the rows change; a list that follows something else does not.
    property bool keepsPlaces: selects
    /// How the user has the rows filtered and sorted. As long as it stays the same, rows that come anew are seen where the
    /// former ones were; without it, from the top.
    property var arrangement: null
    /// Whether it scrolls by itself; otherwise the page that it is on does.
    property alias scrolls: view.interactive
    /// Whether Enter acts on the row with the focus, and not on what is around the list.
    property bool enters: true
    readonly property alias count: view.count
    readonly property alias contentHeight: view.contentHeight
    /// Whether the row with the focus is to show it.
    readonly property bool showsFocus: activeFocus && (visualFocus || view.keyed)
    /// The menu of the rows; a list that has another one for some of them says so in `menuOf`.
    property ItemMenu menu: null
    /// Whether the rows have ticks.
    property bool tickable: menu?.ticks === true
    /// What a screen reader is told has the focus: the row, unless the keys act on something in it.
    property Item part: view.currentItem
    /// Of the row under the pointer, else of the one with the focus.
    property var hoveredRow: null
    readonly property var statusRow: hoveredRow ?? view.currentItem
    readonly property string status: statusRow?.status ?? ""

    signal activated(row: int)
    signal tickWanted(row: int)
    /// All that is shown and may be ticked is to be, or nothing.
    signal allWanted(ticked: bool)
    // Where there is no menu of the list's own; the menu at a point of the table.
    signal copyWanted(row: var, whole: bool)
    signal menuWanted(row: Item, x: real, y: real)
    /// Left and Right, by which a row is folded and unfolded: back, or on in the direction of reading.
    signal turned(row: int, onward: bool)

    function itemAt(row: int): var {
        return view.itemAtIndex(row);
    }
    /// For a pointer that acts on a row: it gets the focus and is selected.
    function choose(row: int): void {
        view.keyed = false;
        table.forceActiveFocus(Qt.MouseFocusReason);
        table.focusReason = Qt.MouseFocusReason;
        view.currentIndex = row;
        if (table.selects)
            table.selectedRow = row;
    }
    function move(row: int, selects: bool): void {
        if (view.count === 0)
            return;
        view.currentIndex = Math.max(0, Math.min(view.count - 1, row));
        if (selects && table.selects)
            table.selectedRow = view.currentIndex;
        view.positionViewAtIndex(view.currentIndex, ListView.Contain);
    }
    function menuOf(row: Item): var {
        return table.menu;
    }
    /// The menu opens beside its row, which may be another one, or gone, by the time that something is chosen.
    function openMenu(row: Item, x: real, y: real): void {
        const menu = table.menuOf(row);
        const at = row.mapToItem(table, x, y);
        if (menu === null) {
            table.menuWanted(row, at.x, at.y);
            return;
        }
        menu.show(row);
        menu.popup(table, at.x, at.y);
    }
    /// A click on the lock of a refused row has its tooltip; a key has to be answered as well.
    function tickByKey(row: var): void {
        table.tickWanted(row.index);
        if (row.refused && row.showsTick)
            table.menu?.actions.explainRefusal(row.itemName, row.refusal);
    }
    /// Its path, or the whole row.
    function copy(row: var, whole: bool): void {
        if (table.menu === null)
            table.copyWanted(row, whole);
        else if (whole)
            table.menu.actions.copyRow(row.key, row.itemName, row.size);
        else
            table.menu.actions.copyPath(row.key);
    }
    /// The row of an item, by its key; -1 where there is none.
    function rowOf(key: string): int {
        if (key === "" || view.keyAt(view.currentIndex) === key)
            return key === "" ? -1 : view.currentIndex;
        return view.rows?.match(view.rows.index(0, 0), Qt.UserRole - 1, key, 1, Qt.MatchExactly)[0]?.row ?? -1;
    }

    Spoken.part: part
    Spoken.role: Accessible.List
    focusPolicy: Qt.StrongFocus
    implicitHeight: view.contentHeight

    Keys.onPressed: event => {
        const rowsInSight = Math.max(1, Math.floor(view.height * view.count / Math.max(1, view.contentHeight)) - 1);
        const steps = {
            [Qt.Key_Up]: -1,
            [Qt.Key_Down]: 1,
            [Qt.Key_PageUp]: -rowsInSight,
            [Qt.Key_PageDown]: rowsInSight,
            [Qt.Key_Home]: -view.count,
            [Qt.Key_End]: view.count
        };
        const modifiers = event.modifiers & ~Qt.KeypadModifier;
        const held = view.currentItem;
        const isEnter = event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
        view.keyed = true;
        event.accepted = true;
        if (event.key in steps && (modifiers === Qt.NoModifier || modifiers === Qt.ControlModifier))
            table.move(view.currentIndex + steps[event.key], modifiers === Qt.NoModifier);
        else if (held === null)
            event.accepted = false;
        else if (event.key === Qt.Key_A && (modifiers & Qt.ControlModifier) && table.tickable && !event.isAutoRepeat)
            table.allWanted((modifiers & Qt.ShiftModifier) === 0);
        else if (event.key === Qt.Key_C && (modifiers & ~Qt.ShiftModifier) === Qt.ControlModifier)
            table.copy(held, (modifiers & Qt.ShiftModifier) !== 0);
        else if (event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && modifiers === Qt.ShiftModifier)
            table.openMenu(held, 24, held.height - 4);
        else if (modifiers !== Qt.NoModifier && modifiers !== Qt.ShiftModifier || isEnter && !table.enters)
            event.accepted = false;
        // A key that is held acts once, and not at all when it went down elsewhere.
        else if (event.isAutoRepeat && (isEnter || event.key === Qt.Key_Space))
            return;
        else if (event.key === Qt.Key_Space && view.typed === "")
            table.tickByKey(held);
        else if (isEnter)
            table.activated(view.currentIndex);
        else if (event.key === Qt.Key_Left || event.key === Qt.Key_Right)
            table.turned(view.currentIndex, (event.key === Qt.Key_Right) !== Theme.mirrored);
        else if (event.text !== "" && event.text >= " " && event.key !== Qt.Key_Delete)
            view.findTyped(event.text);
        else
            event.accepted = false;
    }
    onActiveFocusChanged: if (activeFocus && view.currentIndex < 0) table.move(0, true)

    contentItem: ListView {
        id: view

        /// Null for a number of rows, which tests use.
        readonly property var rows: typeof model === "object" ? model : null
        property bool keyed: false
        property string typed: ""
        property bool holding: false
        property string heldKey: ""
        property string selectedKey: ""
        /// How far they were scrolled before the rows came anew, -1 when they have not, and how they were arranged.
        property real formerTop: -1
        property string formerArrangement: ""

        function keyAt(row: int): string {
            return row < 0 || row >= count || !rows ? "" : rows.data(rows.index(row, 0), Qt.UserRole - 1) ?? "";
        }
        function findTyped(text: string): void {
            typed += text;
            forget.restart();
            // The first letter leads on from the row that has the focus; further ones may keep it.
            const first = (Math.max(0, currentIndex) + (typed.length === 1 ? 1 : 0)) % count;
            const found = rows?.match(rows.index(first, 0), Qt.DisplayRole, typed, 1,
                Qt.MatchStartsWith | Qt.MatchWrap) ?? [];
            if (found.length > 0)
                table.move(found[0].row, true);
        }
        function holdPlaces(): void {
            // Rows that go and come again are at their place once the last of them is there.
            if (holding)
                return;
            holding = true;
            heldKey = keyAt(currentIndex);
            selectedKey = keyAt(table.selectedRow);
        }
        function findPlaces(): void {
            holding = false;
            const place = table.rowOf(heldKey);
            // An item that is gone leaves the keyboard at its place.
            currentIndex = place >= 0 || !table.activeFocus ? place : Math.min(Math.max(0, currentIndex), count - 1);
            const selected = table.rowOf(selectedKey);
            table.selectedRow = selected >= 0 || !table.activeFocus ? selected : currentIndex;
            if (formerTop >= 0)
                findTop();
        }
        function findTop(): void {
            const arrangement = JSON.stringify(table.arrangement);
            if (formerTop > 0 && table.arrangement !== null && arrangement === formerArrangement) {
                forceLayout();
                contentY = Math.max(0, Math.min(formerTop, contentHeight - height));
            }
            formerTop = -1;
            formerArrangement = arrangement;
        }

        activeFocusOnTab: false
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        currentIndex: -1
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        reuseItems: true

        T.ScrollBar.vertical: ScrollThumb {
            visible: view.interactive && size < 1
        }

        Component.onCompleted: findTop()

        Timer {
            id: forget

            interval: 1000

            onTriggered: view.typed = ""
        }
        Connections {
            target: table.keepsPlaces ? view.rows : null

            function onModelAboutToBeReset(): void {
                view.holdPlaces();
                if (view.formerTop < 0)
                    view.formerTop = view.contentY;
            }
            function onModelReset(): void {
                Qt.callLater(view.findPlaces);
            }
            function onRowsAboutToBeInserted(): void {
                view.holdPlaces();
            }
            function onRowsAboutToBeRemoved(): void {
                view.holdPlaces();
            }
            function onRowsAboutToBeMoved(): void {
                view.holdPlaces();
            }
            function onRowsMoved(): void {
                Qt.callLater(view.findPlaces);
            }
            function onRowsInserted(): void {
                Qt.callLater(view.findPlaces);
            }
            function onRowsRemoved(): void {
                Qt.callLater(view.findPlaces);
            }
        }
        // Qt 6.4 does not tell that a row has opened.
        Connections {
            target: table.activeFocus ? view.currentItem?.Spoken ?? null : null

            function onExpandedChanged(): void {
                heard.say((target as Spoken).expanded ? qsTr("expanded") : qsTr("collapsed"));
            }
        }
        Announcement {
            id: heard

            // Where it is not scrolled away.
            parent: table
        }
        Connections {
            target: table.menu

            function onTickWanted(key: string): void {
                const row = table.rowOf(key);
                if (row >= 0)
                    table.tickWanted(row);
            }
            function onAllWanted(ticked: bool): void {
                table.allWanted(ticked);
            }
        }
    }
}
