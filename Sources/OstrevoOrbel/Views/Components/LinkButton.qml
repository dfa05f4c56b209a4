import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// Words that lead somewhere.
T.AbstractButton {
    id: link

    property int role: ThemedText.Small

    Spoken.role: Accessible.Link
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitHeight: Theme.smallButtonHeight
    implicitWidth: contentItem.implicitWidth

    ButtonKeys.enterClicks: true

    background: Item {
        FocusRing {
            anchors.margins: -3
            controlRadius: 2
            visible: link.visualFocus
        }
    }
    contentItem: ThemedText {
        id: words

        color: link.hovered ? Theme.accentHover : Theme.accent
        font.underline: link.hovered || link.visualFocus
        role: link.role
        text: link.text
    }

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
    WholeText {
        shown: words
    }
}
