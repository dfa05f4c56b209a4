import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A column of content that scrolls where it does not fit, and keeps what has the focus in sight.
FocusScope {
    id: page

    property int padding: Theme.pagePadding
    property int columnWidth: Theme.contentWidth
    /// Centred, or at the left.
    property bool centred: false
    property alias spacing: column.spacing
    default property alias content: column.data

    readonly property Item focused: Window.activeFocusItem
    /// What is to be in sight, also once what is above it has its height.
    property Item sought: null

    function reveal(item: var): void {
        // What was clicked is in sight already.
        if (item && page.activeFocus && item.visualFocus !== false)
            page.scrollTo(item);
    }
    /// Keeps this in sight until the focus moves, or the page is moved.
    function show(item: Item): void {
        sought = item;
        scrollTo(item);
    }
    function scrollTo(item: Item): void {
        const top = item.mapToItem(column, 0, 0).y + column.y;
        if (top - 12 < view.contentY || top + item.height + 12 > view.contentY + view.height)
            view.contentY = Math.max(0, Math.min(view.contentHeight - view.height,
                top - Math.max(12, (view.height - item.height) / 2)));
    }

    /// Scrolls with the keys that move in a text, where what has the focus does not take them itself.
    function scrollBy(event: var): void {
        const most = view.contentHeight - view.height;
        const line = 3 * Theme.px(20);
        const steps = {
            [Qt.Key_Up]: -line,
            [Qt.Key_Down]: line,
            [Qt.Key_PageUp]: line - view.height,
            [Qt.Key_PageDown]: view.height - line,
            [Qt.Key_Home]: -most,
            [Qt.Key_End]: most
        };
        event.accepted = event.key in steps && event.modifiers === Qt.NoModifier && most > 0;
        if (!event.accepted)
            return;
        sought = null;
        view.contentY = Math.max(0, Math.min(most, view.contentY + steps[event.key]));
    }

    Keys.onPressed: event => scrollBy(event)
    onFocusedChanged: {
        sought = null;
        reveal(focused);
    }

    Flickable {
        id: view

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: Math.max(height, column.height + 2 * page.padding)
        interactive: contentHeight > height

        T.ScrollBar.vertical: ScrollThumb {}

        onMovementStarted: page.sought = null

        Column {
            id: column

            width: Math.min(view.width - 2 * page.padding, page.columnWidth)
            x: page.centred ? Math.round((view.width - width) / 2) : Theme.along(page.padding, width, view.width)
            y: page.padding

            onHeightChanged: if (page.sought) page.scrollTo(page.sought)
        }
    }
}
