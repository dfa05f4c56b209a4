import QtQuick
import OstrevoOrbel

/// All of a text that is cut, as a tooltip while the pointer is on what this is put into: the text, or its ground.
Item {
    id: whole

    required property Text shown
    property string text: shown.text

    anchors.fill: parent

    HoverHandler {
        id: pointer
    }
    // Most texts are never cut, and a tooltip is more than they are.
    Loader {
        active: pointer.hovered && whole.shown.truncated
        anchors.fill: parent

        // A Loader of Qt 6.4 cannot make what is bound to its context.
        // qmllint disable unqualified
        sourceComponent: Item {
            Hint {
                text: whole.text
                visible: true
            }
        }
        // qmllint enable unqualified
    }
}
