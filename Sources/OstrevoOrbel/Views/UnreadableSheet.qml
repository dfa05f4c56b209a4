import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// What could not be read, each with the command that a person with more rights would read it with.
T.Popup {
    id: sheet

    required property AppModel app

    closePolicy: T.Popup.CloseOnEscape
    focus: true
    height: Math.min(parent.height - 48, head.height + foot.height + Math.max(2, list.count) * rowHeight + 2)
    modal: true
    parent: T.Overlay.overlay
    width: Math.min(parent.width - 48, Theme.sheetWidth)
    x: Math.round((parent.width - width) / 2)
    y: Math.round((parent.height - height) / 2)

    readonly property int rowHeight: Theme.px(64)

    onOpened: close.forceActiveFocus(Qt.TabFocusReason)

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

    contentItem: FocusScope {
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
                role: ThemedText.Title
                text: sheet.app.scan.unreadable.headline
                width: parent.width - 48
                wrapMode: Text.Wrap
            }
            ThemedText {
                color: Theme.text2
                text: qsTr("Their space counts as not measured. In a terminal, with an administrator’s rights, each can be measured by the command under it.")
                width: parent.width - 48
                wrapMode: Text.Wrap
            }
        }
        Rectangle {
            color: Theme.line
            height: 1
            width: parent.width
            y: head.height
        }
        RowList {
            id: list

            Accessible.name: sheet.app.scan.unreadable.headline
            anchors.bottom: foot.top
            anchors.left: parent.left
            anchors.leftMargin: 1
            anchors.right: parent.right
            anchors.rightMargin: 1
            anchors.top: head.bottom
            anchors.topMargin: 1
            model: sheet.app.scan.unreadable.entries
            objectName: "unreadable.list"
            scrolls: true

            delegate: RowGround {
                id: row

                required property int index
                required property string path
                required property string command

                Accessible.name: path
                Accessible.role: Accessible.ListItem
                focused: list.visualFocus && ListView.isCurrentItem
                height: sheet.rowHeight
                width: ListView.view.width

                ThemedText {
                    elide: Text.ElideMiddle
                    text: row.path
                    width: copy.x - 24 - 12
                    x: 24
                    y: Theme.px(12)
                }
                ThemedText {
                    color: Theme.text2
                    elide: Text.ElideMiddle
                    font.family: "monospace"
                    role: ThemedText.Small
                    text: row.command
                    width: copy.x - 24 - 12
                    x: 24
                    y: Theme.px(12) + Theme.bodyLine + 4
                }
                PushButton {
                    id: copy

                    anchors.right: parent.right
                    anchors.rightMargin: 24
                    anchors.verticalCenter: parent.verticalCenter
                    controlHeight: Theme.smallButtonHeight
                    focusPolicy: Qt.NoFocus
                    iconPath: Theme.icons.copy
                    objectName: "unreadable.copy." + row.index
                    text: qsTr("Copy Command")

                    onClicked: sheet.app.copyText(row.command)
                }
            }

            onActivated: index => sheet.app.copyText(list.itemAtIndex(index).command)
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
                anchors.right: close.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.text3
                role: ThemedText.Small
                text: sheet.app.scan.unreadable.total > list.count
                    ? qsTr("The first %1 are listed. Nothing was changed.").arg(list.count)
                    : qsTr("Nothing was changed.")
            }
            PushButton {
                id: close

                anchors.right: parent.right
                anchors.rightMargin: 24
                anchors.verticalCenter: parent.verticalCenter
                controlHeight: Theme.sheetButtonHeight
                objectName: "unreadable.close"
                ringAlways: true
                text: qsTr("Close")

                onClicked: sheet.close()
            }
        }
    }
}
