pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// The way to a file or folder of the tree by its name: a field and, below it, what it finds, the largest first.
PushButton {
    id: button

    required property AppModel app
    /// Whether the keys lead here.
    property bool reachable: visible

    function open(): void {
        box.open();
    }
    function choose(row: int): void {
        const match = list.itemAt(row);
        if (!match)
            return;
        const node = match.model.node;
        box.close();
        button.app.showOnMap(node);
    }

    /// Enter was pressed before the answer to the last letter was there.
    property bool chosenAhead: false

    function chooseCurrent(): void {
        chosenAhead = matches.searching;
        if (!chosenAhead)
            choose(list.currentIndex);
    }

    iconOnly: true
    iconPath: Theme.icons.search
    text: qsTr("Find")

    onClicked: button.open()
    onVisibleChanged: if (!visible) box.close()

    T.Popup {
        id: box

        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
        focus: true
        height: column.height + topPadding + bottomPadding
        margins: 8
        padding: 8
        width: Theme.px(480)
        x: Theme.mirrored ? 0 : button.width - width
        y: button.height + 6

        onClosed: {
            field.clear();
            matches.text = "";
        }
        onOpened: field.forceActiveFocus(Qt.PopupFocusReason)

        background: Rectangle {
            border.color: Theme.control
            color: Theme.surface
            radius: Theme.cardRadius
        }

        FindModel {
            id: matches

            scan: button.app.scan

            // The rows are made, and the first is the current one, when the list has heard of them.
            onSearchingChanged: {
                if (button.chosenAhead && !searching)
                    Qt.callLater(button.chooseCurrent);
            }
        }
        PopupName {
            popup: box
            text: button.text
        }
        // The keys stay with the field while they choose from the list.
        Announcement {
            after: 400

            readonly property var current: (list.contentItem as ListView).currentItem

            words: !box.visible || matches.text === "" || matches.searching ? "" : current?.words ?? matches.summary
        }
        Column {
            id: column

            spacing: 6
            width: box.availableWidth

            EntryField {
                id: field

                objectName: button.objectName + ".field"
                placeholderText: qsTr("Find a file or folder")
                width: parent.width

                Keys.onDownPressed: list.step(1)
                Keys.onEnterPressed: button.chooseCurrent()
                Keys.onEscapePressed: event => {
                    event.accepted = true;
                    box.close();
                }
                Keys.onPressed: event => {
                    const rows = Math.max(1, Math.floor(list.height / Theme.rowHeight) - 1);
                    event.accepted = event.key === Qt.Key_PageDown || event.key === Qt.Key_PageUp;
                    if (event.accepted)
                        list.step(event.key === Qt.Key_PageDown ? rows : -rows);
                }
                Keys.onReturnPressed: button.chooseCurrent()
                Keys.onUpPressed: list.step(-1)
                onTextChanged: {
                    button.chosenAhead = false;
                    matches.text = text;
                }
            }
            ItemTable {
                id: list

                function step(by: int): void {
                    list.move(list.currentIndex + by, false);
                }

                Accessible.name: qsTr("What was found")
                focusPolicy: Qt.NoFocus
                height: Math.min(contentHeight, Theme.rowHeight * (Window.height < Theme.shortBelow ? 6 : 8))
                model: matches
                objectName: button.objectName + ".list"
                selects: false
                visible: count > 0
                width: parent.width

                delegate: ItemRow {
                    id: row

                    detail: model.folder
                    gap: 12
                    inset: 12
                    objectName: button.objectName + ".row." + index
                    opens: 1
                    selected: ListView.isCurrentItem
                    words: [name, model.kindName, size].join(", ") + ", " + qsTr("in %1").arg(detail)

                    cells: ItemCell {
                        text: row.size
                    }
                }

                onActivated: row => button.choose(row)
                onCountChanged: currentIndex = count > 0 ? 0 : -1
            }
            SmallText {
                Accessible.role: Accessible.StatusBar
                leftPadding: 8
                objectName: button.objectName + ".summary"
                text: matches.searching ? qsTr("Looking…") : matches.summary
                visible: matches.text !== "" && text !== ""
                width: parent.width
            }
        }
    }
    Shortcut {
        enabled: button.reachable
        sequence: "Ctrl+F"

        onActivated: button.open()
    }
}
