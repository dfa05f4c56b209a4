pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// What is about to move to the Trash, and then how it moves. The default is to cancel: only a click on the committing
/// button, or Space while it has the focus, moves anything.
Sheet {
    id: sheet

    required property AppModel app
    readonly property MoveFlow moves: app.moves
    readonly property bool narrow: width < Theme.px(700)

    function takeFocus(): void {
        (moves.deleting ? stop : cancel).forceActiveFocus(Qt.TabFocusReason);
    }

    closePolicy: T.Popup.NoAutoClose
    contentNeed: tableHead.height + list.contentHeight + sums.height
    elides: moves.deleting
    objectName: "confirm"
    remark: !moves.deleting ? qsTr("The Journal records every move before it counts as done.")
        : moves.stopping ? qsTr("Stopping after the item in progress.")
        : qsTr("The item in progress always finishes.")
    sentence: moves.deleting ? qsTr("Checking %1").arg(moves.deletingTitle)
        : qsTr("Each item is measured and checked again just before it moves. Anything that changed is skipped. You can put everything back from the Journal.")
    showsRemark: !narrow || moves.deleting
    title: moves.deleting ? moves.progressText : moves.question
    visible: moves.confirming || moves.deleting

    // At once: nothing else must have the focus while the sheet appears.
    onAboutToShow: cancel.focus = true
    onLeft: isEscape => {
        if (moves.confirming)
            moves.cancel();
        else if (isEscape)
            moves.stopAfterThisItem();
    }
    onOpened: takeFocus()

    headItems: [
        Gap {
            height: sheet.moves.deleting ? 8 : 0
        },
        SizeBar {
            Accessible.name: sheet.moves.progressText
            Accessible.role: Accessible.ProgressBar
            share: sheet.moves.items.count > 0 ? sheet.moves.doneCount / sheet.moves.items.count : 0
            visible: sheet.moves.deleting
            width: parent.width - 48
        }
    ]
    buttons: [
        PushButton {
            id: cancel

            controlHeight: Theme.sheetButtonHeight
            objectName: "confirm.cancel"
            ringAlways: true
            text: qsTr("Cancel")
            visible: !sheet.moves.deleting

            onClicked: sheet.moves.cancel()
        },
        PushButton {
            ButtonKeys.enterClicks: false
            controlHeight: Theme.sheetButtonHeight
            objectName: "confirm.commit"
            text: sheet.moves.commitText
            variant: PushButton.Commit
            visible: !sheet.moves.deleting

            onClicked: sheet.moves.confirm()
        },
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
    ]

    Connections {
        target: sheet.moves

        function onDeletingChanged(): void {
            if (sheet.moves.deleting)
                sheet.takeFocus();
        }
    }

    TableHead {
        id: tableHead

        firstX: inset + Theme.px(20) + gap
        height: sheet.moves.deleting ? 1 : implicitHeight
        inset: 24
        visible: !sheet.moves.deleting
        width: parent.width

        first: SmallText {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Whole path")
        }
        cells: [
            SmallText {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Kind")
                visible: !sheet.narrow
                width: Theme.px(110)
            },
            SmallText {
                anchors.verticalCenter: parent.verticalCenter
                horizontalAlignment: Text.AlignRight
                text: qsTr("Count")
                width: Theme.px(72)
            },
            SmallText {
                anchors.verticalCenter: parent.verticalCenter
                horizontalAlignment: Text.AlignRight
                text: qsTr("Size")
                width: Theme.px(72)
            }
        ]
    }
    Hairline {
        edge: Qt.TopEdge
        z: 1
    }
    ItemTable {
        id: list

        Accessible.name: qsTr("Items to move")
        anchors.bottom: sums.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: tableHead.bottom
        // What Enter does here is what it does in all of the sheet.
        enters: false
        model: sheet.moves.items
        objectName: "confirm.table"
        selects: false

        delegate: ConfirmRow {
            moving: sheet.moves.deleting
            narrow: sheet.narrow
        }
    }
    Item {
        id: sums

        anchors.bottom: parent.bottom
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
        Sentence {
            id: frees

            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            spacing: 6

            ThemedText {
                bold: true
                objectName: "confirm.frees"
                text: sheet.moves.frees
            }
            ThemedText {
                color: Theme.text2
                text: qsTr("when you empty the Trash")
            }
        }
    }
}
