import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// Asks before the kept scans are removed, which cannot be undone.
Sheet {
    id: sheet

    required property KeptScanSettings keeping

    closePolicy: T.Popup.CloseOnEscape
    objectName: "clearScans"
    sentence: qsTr("This frees %1 and cannot be undone. Nothing that was measured is touched.").arg(keeping.size)
    showsRemark: false
    title: qsTr("Remove %1?").arg(keeping.count)

    onLeft: sheet.close()
    onOpened: cancel.forceActiveFocus(Qt.TabFocusReason)

    buttons: [
        PushButton {
            id: cancel

            controlHeight: Theme.sheetButtonHeight
            objectName: "clearScans.cancel"
            ringAlways: true
            text: qsTr("Cancel")

            onClicked: sheet.close()
        },
        PushButton {
            controlHeight: Theme.sheetButtonHeight
            objectName: "clearScans.remove"
            text: qsTr("Remove and Keep None")
            variant: PushButton.Commit

            onClicked: {
                sheet.keeping.keepNone();
                sheet.close();
            }
        }
    ]
}
