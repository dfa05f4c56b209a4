pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// What could not be read, each with the command that a person with more rights would read it with.
Sheet {
    id: sheet

    required property AppModel app
    readonly property UnreadableModel unreadable: app.scan.unreadable

    closePolicy: T.Popup.CloseOnEscape
    contentNeed: Math.max(2, list.count) * Theme.px(64)
    objectName: "unreadable"
    remark: unreadable.total > list.count
        ? qsTr("The first %1 are listed. Nothing was changed.").arg(list.count) : qsTr("Nothing was changed.")
    sentence: qsTr("Their space counts as not measured. In a terminal, with an administrator’s rights, each can be measured by the command under it.")
    title: unreadable.headline

    onLeft: sheet.close()
    onOpened: close.forceActiveFocus(Qt.TabFocusReason)

    buttons: PushButton {
        id: close

        controlHeight: Theme.sheetButtonHeight
        objectName: "unreadable.close"
        ringAlways: true
        text: qsTr("Close")

        onClicked: sheet.close()
    }

    Hairline {
        edge: Qt.TopEdge
        z: 1
    }
    ItemTable {
        id: list

        Accessible.name: sheet.title
        anchors.fill: parent
        anchors.topMargin: 1
        model: sheet.unreadable.entries
        objectName: "unreadable.list"
        selects: false

        delegate: ItemRow {
            id: row

            detail: model.command
            detailFamily: "monospace"
            iconWidth: 0
            inset: 24
            lineHeight: Theme.px(64)
            lineSpacing: 4
            name: model.path
            nameGap: 0
            opens: 0
            showsKind: false
            words: name

            cells: PushButton {
                anchors.verticalCenter: parent.verticalCenter
                controlHeight: Theme.smallButtonHeight
                focusPolicy: Qt.NoFocus
                iconPath: Theme.icons.copy
                objectName: "unreadable.copy." + row.index
                text: qsTr("Copy Command")

                onClicked: sheet.app.copyText(row.detail)
            }
        }

        onActivated: row => sheet.app.copyText(itemAt(row).detail)
    }
}
