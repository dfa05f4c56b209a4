import QtQuick
import OstrevoOrbel

/// What every screen has in common: a toolbar with title, scope line and actions, an optional bar below it, the content,
/// and an optional foot, separated by lines. Tab goes through them in this order.
FocusScope {
    id: frame

    required property AppModel app
    property string title: ""
    /// What the screen is about, in one line.
    property string scope: ""
    /// What belongs to it and leads to more; empty when there is nothing.
    property string scopeLink: ""
    /// What the status line tells of this screen.
    property string status: ""
    /// Whether the window is too small for words on the toolbar's buttons.
    readonly property bool narrow: Window.width > 0 && Window.width < Theme.narrowBelow
    readonly property bool middling: Window.width > 0 && Window.width < Theme.middlingBelow
    readonly property bool low: Window.height > 0 && Window.height < Theme.shortBelow
    readonly property int padding: narrow ? Theme.pagePaddingNarrow : Theme.pagePadding

    property alias actions: actionRow.data
    /// The filter or breadcrumb bar, which brings its own height.
    property alias bar: barSlot.data
    property alias foot: footSlot.data
    default property alias content: contentSlot.data
    /// What gets the focus when the screen opens, and again when what had it is hidden, disabled or gone.
    property Item firstFocus: null
    /// That, or nothing in particular while it cannot have the focus.
    readonly property Item focusPlace: firstFocus?.enabled && (firstFocus.visible || !visible) ? firstFocus : rest

    signal scopeLinkClicked()

    function takeFocus(reason: int): void {
        focusPlace.forceActiveFocus(reason);
    }

    function endRest(): void {
        if (rest.activeFocus)
            frame.takeFocus(Qt.OtherFocusReason);
    }

    onFocusPlaceChanged: Qt.callLater(frame.endRest)

    Rectangle {
        anchors.fill: parent
        color: Theme.window
    }
    Item {
        id: toolbar

        height: Theme.toolbarHeight
        width: parent.width

        Column {
            anchors.left: parent.left
            anchors.leftMargin: frame.padding
            anchors.right: actionRow.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter

            Heading {
                lineHeight: Theme.px(26)
                role: ThemedText.Title
                text: frame.title
                width: parent.width
            }
            Item {
                height: scopeText.height
                width: parent.width

                SmallText {
                    id: scopeText

                    anchors.left: parent.left
                    color: Theme.text3
                    elide: Text.ElideMiddle
                    text: frame.scope
                    width: Math.min(implicitWidth, parent.width - (scopeLink.visible ? scopeLink.width + 12 : 0))
                }
                LinkButton {
                    id: scopeLink

                    anchors.left: scopeText.right
                    anchors.leftMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    objectName: frame.objectName + ".scopeLink"
                    text: frame.scopeLink
                    visible: text !== ""

                    onClicked: frame.scopeLinkClicked()
                }
            }
        }
        Row {
            id: actionRow

            anchors.right: parent.right
            anchors.rightMargin: frame.padding
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8
        }
        Hairline {}
    }
    Item {
        id: barSlot

        anchors.top: toolbar.bottom
        height: childrenRect.height
        width: parent.width
    }
    FocusScope {
        id: contentSlot

        anchors.bottom: footSlot.top
        anchors.top: barSlot.bottom
        focus: true
        objectName: "screen.content"
        width: parent.width

        // Has the focus while nothing of the content can take it. Keys do nothing here.
        Item {
            id: rest

            anchors.fill: parent
        }
    }
    Item {
        id: footSlot

        anchors.bottom: parent.bottom
        height: childrenRect.height
        width: parent.width
    }
}
