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
        const match = list.itemAtIndex(row) as FindRow;
        if (!match)
            return;
        const node = match.node;
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
        x: button.width - width
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
        Column {
            id: column

            spacing: 6
            width: box.availableWidth

            EntryField {
                id: field

                objectName: button.objectName + ".field"
                placeholderText: qsTr("Find a file or folder")
                width: parent.width

                Keys.onDownPressed: list.move(1)
                Keys.onEnterPressed: button.chooseCurrent()
                Keys.onEscapePressed: event => {
                    event.accepted = true;
                    box.close();
                }
                Keys.onPressed: event => {
                    const rows = Math.max(1, Math.floor(list.height / Theme.rowHeight) - 1);
                    event.accepted = event.key === Qt.Key_PageDown || event.key === Qt.Key_PageUp;
                    if (event.accepted)
                        list.move(event.key === Qt.Key_PageDown ? rows : -rows);
                }
                Keys.onReturnPressed: button.chooseCurrent()
                Keys.onUpPressed: list.move(-1)
                onTextChanged: {
                    button.chosenAhead = false;
                    matches.text = text;
                }
            }
            ListView {
                id: list

                function move(by: int): void {
                    if (count > 0)
                        currentIndex = Math.max(0, Math.min(count - 1, currentIndex + by));
                }

                Accessible.name: qsTr("What was found")
                Accessible.role: Accessible.List
                boundsBehavior: Flickable.StopAtBounds
                clip: true
                height: Math.min(contentHeight, Theme.rowHeight * (Window.height < Theme.shortBelow ? 6 : 8))
                highlightMoveDuration: 0
                model: matches
                objectName: button.objectName + ".list"
                reuseItems: true
                visible: count > 0
                width: parent.width

                T.ScrollBar.vertical: ScrollThumb {
                    visible: size < 1
                }
                delegate: FindRow {
                    objectName: button.objectName + ".row." + index
                    selected: index === list.currentIndex
                    width: list.width

                    onChosen: button.choose(index)
                }

                onCountChanged: currentIndex = count > 0 ? 0 : -1
            }
            ThemedText {
                Accessible.name: text
                Accessible.role: Accessible.StatusBar
                color: Theme.text2
                leftPadding: 8
                objectName: button.objectName + ".summary"
                role: ThemedText.Small
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
