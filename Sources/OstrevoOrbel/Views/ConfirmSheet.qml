import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// What is about to move to the Trash, and then how it moves. The default is to cancel: only a click on the committing
/// button, or Space while it has the focus, moves anything.
T.Popup {
    id: sheet

    required property AppModel app
    readonly property MoveFlow moves: app.moves
    readonly property int rowHeight: Theme.px(52)
    readonly property bool narrow: width < Theme.px(700)

    function takeFocus(): void {
        (moves.deleting ? stop : cancel).forceActiveFocus(Qt.TabFocusReason);
    }

    closePolicy: T.Popup.NoAutoClose
    focus: true
    height: Math.min(parent.height - 48, head.height + tableHead.height + list.contentHeight + sums.height
        + foot.height + 2)
    modal: true
    objectName: "confirm"
    parent: T.Overlay.overlay
    visible: moves.confirming || moves.deleting
    width: Math.min(parent.width - 48, Theme.sheetWidth)
    x: Math.round((parent.width - width) / 2)
    y: Math.round((parent.height - height) / 2)

    // At once: nothing else must have the focus while the sheet appears.
    onAboutToShow: cancel.focus = true
    onOpened: takeFocus()

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }
    background: Rectangle {
        border.color: Theme.dark ? Theme.control : Theme.surface
        color: Theme.surface
        radius: Theme.sheetRadius
    }
    enter: Transition {
        NumberAnimation {
            duration: Theme.sheetTime
            easing.type: Theme.easing
            from: 0
            property: "opacity"
            to: 1
        }
    }

    Connections {
        target: sheet.moves

        function onDeletingChanged(): void {
            if (sheet.moves.deleting)
                sheet.takeFocus();
        }
    }

    contentItem: FocusScope {
        Accessible.name: sheet.moves.deleting ? sheet.moves.progressText : sheet.moves.question
        Accessible.role: Accessible.Dialog
        objectName: "confirm.sheet"

        Keys.onPressed: event => {
            const leaves = [Qt.Key_Escape, Qt.Key_Return, Qt.Key_Enter].includes(event.key);
            event.accepted = leaves;
            if (!leaves)
                return;
            if (sheet.moves.confirming)
                sheet.moves.cancel();
            else if (event.key === Qt.Key_Escape)
                sheet.moves.stopAfterThisItem();
        }

        Column {
            id: head

            bottomPadding: 16
            leftPadding: 24
            rightPadding: 24
            spacing: 4
            topPadding: 24
            width: parent.width

            ThemedText {
                Accessible.name: text
                Accessible.role: Accessible.Heading
                bold: true
                objectName: "confirm.title"
                role: ThemedText.Title
                text: sheet.moves.deleting ? sheet.moves.progressText : sheet.moves.question
                width: parent.width - 48
                wrapMode: Text.Wrap
            }
            ThemedText {
                color: Theme.text2
                elide: sheet.moves.deleting ? Text.ElideMiddle : Text.ElideNone
                objectName: "confirm.words"
                text: sheet.moves.deleting ? qsTr("Checking %1").arg(sheet.moves.deletingTitle)
                    : qsTr("Each item is measured and checked again just before it moves. Anything that changed is skipped. You can put everything back from the Journal.")
                width: parent.width - 48
                wrapMode: sheet.moves.deleting ? Text.NoWrap : Text.Wrap
            }
            Item {
                height: sheet.moves.deleting ? 8 : 0
                width: 1
            }
            SizeBar {
                Accessible.name: sheet.moves.progressText
                Accessible.role: Accessible.ProgressBar
                share: sheet.moves.items.count > 0 ? sheet.moves.doneCount / sheet.moves.items.count : 0
                visible: sheet.moves.deleting
                width: parent.width - 48
            }
        }
        Item {
            id: tableHead

            anchors.top: head.bottom
            height: sheet.moves.deleting ? 1 : Theme.tableHeadHeight
            width: parent.width

            TableHead {
                anchors.fill: parent
                anchors.leftMargin: 1
                anchors.rightMargin: 1
                visible: !sheet.moves.deleting

                ThemedText {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.text2
                    role: ThemedText.Small
                    text: qsTr("Whole path")
                    x: 24 + Theme.px(20) + 14
                }
                ThemedText {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.text2
                    role: ThemedText.Small
                    text: qsTr("Kind")
                    visible: !sheet.narrow
                    x: parent.width - 24 - Theme.px(72 + 14 + 72 + 14 + 110)
                }
                ThemedText {
                    anchors.right: parent.right
                    anchors.rightMargin: 24 + Theme.px(72 + 14)
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.text2
                    role: ThemedText.Small
                    text: qsTr("Count")
                }
                ThemedText {
                    anchors.right: parent.right
                    anchors.rightMargin: 24
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.text2
                    role: ThemedText.Small
                    text: qsTr("Size")
                }
            }
            Rectangle {
                color: Theme.line
                height: 1
                width: parent.width
            }
        }
        RowList {
            id: list

            Accessible.name: qsTr("Items to move")
            anchors.bottom: sums.top
            anchors.left: parent.left
            anchors.leftMargin: 1
            anchors.right: parent.right
            anchors.rightMargin: 1
            anchors.top: tableHead.bottom
            model: sheet.moves.items
            objectName: "confirm.table"
            scrolls: true
            // What Enter does here is what it does in all of the sheet.
            Keys.onEnterPressed: event => event.accepted = false
            Keys.onReturnPressed: event => event.accepted = false

            delegate: ConfirmRow {
                focused: list.visualFocus && ListView.isCurrentItem
                moving: sheet.moves.deleting
                narrow: sheet.narrow
                width: ListView.view.width
            }

            onActivated: sheet.moves.cancel()
        }
        Item {
            id: sums

            anchors.bottom: foot.top
            height: sheet.moves.deleting ? 0 : Theme.px(46)
            visible: !sheet.moves.deleting
            width: parent.width

            ThemedText {
                anchors.left: parent.left
                anchors.leftMargin: 24
                anchors.right: frees.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.text2
                objectName: "confirm.sum"
                text: sheet.moves.sum
            }
            ThemedText {
                id: frees

                anchors.right: when.left
                anchors.rightMargin: 6
                anchors.verticalCenter: parent.verticalCenter
                bold: true
                objectName: "confirm.frees"
                text: sheet.moves.frees
            }
            ThemedText {
                id: when

                anchors.right: parent.right
                anchors.rightMargin: 24
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.text2
                text: qsTr("when you empty the Trash")
            }
        }
        Rectangle {
            id: foot

            anchors.bottom: parent.bottom
            anchors.bottomMargin: 1
            anchors.left: parent.left
            anchors.leftMargin: 1
            anchors.right: parent.right
            anchors.rightMargin: 1
            color: Theme.sunk
            height: Theme.sheetButtonHeight + 32
            radius: Theme.sheetRadius - 1

            Rectangle {
                color: parent.color
                height: parent.radius
                width: parent.width
            }
            Rectangle {
                color: Theme.line
                height: 1
                width: parent.width
            }
            ThemedText {
                anchors.left: parent.left
                anchors.leftMargin: 24
                anchors.right: buttons.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.text3
                maximumLineCount: 2
                role: ThemedText.Small
                text: !sheet.moves.deleting ? qsTr("The Journal records every move before it counts as done.")
                    : sheet.moves.stopping ? qsTr("Stopping after the item in progress.")
                    : qsTr("The item in progress always finishes.")
                visible: !sheet.narrow || sheet.moves.deleting
                wrapMode: Text.Wrap
            }
            Row {
                id: buttons

                anchors.right: parent.right
                anchors.rightMargin: 24
                anchors.verticalCenter: parent.verticalCenter
                spacing: 12

                PushButton {
                    id: cancel

                    controlHeight: Theme.sheetButtonHeight
                    objectName: "confirm.cancel"
                    ringAlways: true
                    text: qsTr("Cancel")
                    visible: !sheet.moves.deleting

                    onClicked: sheet.moves.cancel()
                }
                PushButton {
                    ButtonKeys.enterClicks: false
                    controlHeight: Theme.sheetButtonHeight
                    objectName: "confirm.commit"
                    text: sheet.moves.commitText
                    variant: PushButton.Commit
                    visible: !sheet.moves.deleting

                    onClicked: sheet.moves.confirm()
                }
                PushButton {
                    id: stop

                    controlHeight: Theme.sheetButtonHeight
                    enabled: !sheet.moves.stopping
                    objectName: "confirm.stop"
                    ringAlways: true
                    text: qsTr("Stop After This Item")
                    visible: sheet.moves.deleting

                    onClicked: sheet.moves.stopAfterThisItem()
                }
            }
        }
    }
}
