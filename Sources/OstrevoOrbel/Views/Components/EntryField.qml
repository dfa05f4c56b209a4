import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A field for a line of text: to find something, unless another icon is given.
T.TextField {
    id: field

    property string iconPath: Theme.icons.search
    /// The keys that lead here.
    property string keys: ""
    /// Whether the text cannot be used.
    property bool wrong: false
    property real fieldRadius: Theme.controlRadius
    /// Whether Ctrl+F leads here, wherever the focus is on the screen.
    property bool findable: false
    /// What the text leaves of the list: said as it is typed.
    property string found: ""

    // The room for what stands before and behind the text.
    readonly property real before: iconPath !== "" ? 12 + Theme.icon + 8 : 12
    readonly property real behind: clear.visible ? clear.width + 4 : cap.visible ? cap.width + 14 : 12

    // Qt 6.4 has no other way to say so of what is not a button, and makes the description itself.
    Accessible.name: enabled ? placeholderText : qsTr("%1, not available").arg(placeholderText)
    color: Theme.ink
    font.family: Theme.family
    font.pixelSize: Theme.bodySize
    hoverEnabled: true
    implicitHeight: Theme.controlHeight
    implicitWidth: Theme.px(240)
    leftPadding: Theme.mirrored ? behind : before
    rightPadding: Theme.mirrored ? before : behind
    selectByMouse: true
    selectedTextColor: Theme.accentText
    selectionColor: Theme.accent
    verticalAlignment: TextInput.AlignVCenter

    Keys.onEscapePressed: event => {
        event.accepted = field.text !== "";
        field.clear();
    }

    background: Rectangle {
        border.color: field.wrong ? Theme.error : field.activeFocus ? Theme.accent : Theme.control
        border.width: field.activeFocus ? 2 : 1
        color: field.hovered && !field.activeFocus ? Theme.hover : Theme.surface
        radius: field.fieldRadius
    }

    ThemedText {
        Accessible.ignored: true
        anchors.left: parent.left
        anchors.leftMargin: field.before
        anchors.right: parent.right
        anchors.rightMargin: field.behind
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.text2
        text: field.placeholderText
        visible: field.length === 0 && field.preeditText === ""
    }
    Announcement {
        after: 400
        words: field.activeFocus && field.text !== "" ? field.found : ""
    }
    Icon {
        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        path: field.iconPath
        visible: field.iconPath !== ""
    }
    KeyCap {
        id: cap

        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        text: field.keys
        visible: field.keys !== "" && field.length === 0
    }
    Shortcut {
        enabled: field.findable && field.visible && field.enabled
        sequence: "Ctrl+F"

        onActivated: {
            field.forceActiveFocus(Qt.ShortcutFocusReason);
            field.selectAll();
        }
    }
    IconButton {
        id: clear

        anchors.right: parent.right
        anchors.rightMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        focusPolicy: Qt.NoFocus
        iconPath: Theme.icons.close
        text: qsTr("Clear")
        visible: field.length > 0

        onClicked: field.clear()
    }
}
