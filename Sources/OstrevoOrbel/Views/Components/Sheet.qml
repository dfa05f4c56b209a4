import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A sheet over the window: a head with a title and a sentence, what lies between, and a foot with a remark and
/// buttons, which are always in sight.
T.Popup {
    id: sheet

    property alias title: titleText.text
    property alias sentence: sentenceText.text
    /// A sentence that is as long as a path goes on in one line.
    property bool elides: false
    property string remark: ""
    property bool showsRemark: true
    /// What lies between head and foot would be as high as this.
    property int contentNeed: 0
    /// Below the sentence.
    property alias headItems: head.data
    property alias buttons: buttonRow.data
    default property alias between: betweenSlot.data

    /// Esc, or Enter that no button took.
    signal left(isEscape: bool)

    focus: true
    height: Math.min(parent.height - 48, head.height + contentNeed + foot.height + 2)
    modal: true
    parent: T.Overlay.overlay
    width: Math.min(parent.width - 48, Theme.sheetWidth)
    x: Math.round((parent.width - width) / 2)
    y: Math.round((parent.height - height) / 2)

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
        focus: true // Esc works before the sheet has faded in
        objectName: sheet.objectName + ".sheet"

        Keys.onPressed: event => {
            event.accepted = [Qt.Key_Escape, Qt.Key_Return, Qt.Key_Enter].includes(event.key);
            if (event.accepted)
                sheet.left(event.key === Qt.Key_Escape);
        }

        Column {
            id: head

            bottomPadding: 16
            leftPadding: 24
            rightPadding: 24
            spacing: 4
            topPadding: 24
            width: parent.width

            Heading {
                id: titleText

                objectName: sheet.objectName + ".title"
                role: ThemedText.Title
                width: parent.width - 48
                wrapMode: Text.Wrap
            }
            ThemedText {
                id: sentenceText

                color: Theme.text2
                elide: sheet.elides ? Text.ElideMiddle : Text.ElideNone
                objectName: sheet.objectName + ".words"
                width: parent.width - 48
                wrapMode: sheet.elides ? Text.NoWrap : Text.Wrap
            }
        }
        Item {
            id: betweenSlot

            anchors.bottom: foot.top
            anchors.left: parent.left
            anchors.leftMargin: 1
            anchors.right: parent.right
            anchors.rightMargin: 1
            anchors.top: head.bottom
        }
        CardFoot {
            id: foot

            anchors.bottom: parent.bottom
            anchors.bottomMargin: 1
            anchors.left: parent.left
            anchors.leftMargin: 1
            anchors.right: parent.right
            anchors.rightMargin: 1
            height: Theme.sheetButtonHeight + 32
            radius: Theme.sheetRadius - 1

            SmallText {
                anchors.left: parent.left
                anchors.leftMargin: 24
                anchors.right: buttonRow.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.text3
                maximumLineCount: 2
                text: sheet.remark
                visible: sheet.showsRemark
                wrapMode: Text.Wrap
            }
            Row {
                id: buttonRow

                anchors.right: parent.right
                anchors.rightMargin: 24
                anchors.verticalCenter: parent.verticalCenter
                spacing: 12
            }
        }
    }

    readonly property PopupName spoken: PopupName {
        popup: sheet
        text: sheet.title
    }
}
