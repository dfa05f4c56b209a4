import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A button. Primary ones measure or put back; committing ones lead to a change of the disk.
T.Button {
    id: button

    enum Variant { Plain, Primary, Commit }

    property int variant: PushButton.Plain
    property string iconPath: ""
    /// Keys that do the same, shown inside.
    property string keys: ""
    /// Without its words, which become the tooltip.
    property bool iconOnly: false
    property string hint: iconOnly ? text : ""
    property int controlHeight: Theme.controlHeight
    /// Shows the focus ring for any focus, not the keyboard's alone.
    property bool ringAlways: false

    readonly property int gap: 8
    readonly property int iconSize: small ? Theme.px(14) : Theme.icon
    readonly property real besideWords: (iconPath !== "" ? iconSize + gap : 0)
        + (keys !== "" ? cap.implicitWidth + gap : 0)
    readonly property bool small: controlHeight <= Theme.smallButtonHeight
    readonly property color rest: variant === PushButton.Primary ? Theme.accent
        : variant === PushButton.Commit ? Theme.commit : Theme.surface
    readonly property color over: variant === PushButton.Primary ? Theme.accentHover
        : variant === PushButton.Commit ? Theme.commitHover : Theme.hover
    readonly property color foreground: !enabled ? Theme.text3
        : variant === PushButton.Primary ? Theme.accentText
        : variant === PushButton.Commit ? Theme.commitText : Theme.ink

    Accessible.description: hint !== text ? hint : ""
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitHeight: controlHeight
    implicitWidth: iconOnly ? controlHeight
        : Math.ceil(words.implicitWidth) + besideWords + leftPadding + rightPadding
    leftPadding: iconOnly ? 0 : controlHeight >= Theme.startButtonHeight ? 20 : small ? 10 : 13
    rightPadding: leftPadding

    ButtonKeys.enterClicks: true

    background: Rectangle {
        border.color: !button.enabled ? Theme.lineSoft : button.variant === PushButton.Plain ? Theme.control : color
        color: !button.enabled ? "transparent"
            : button.down ? Theme.pressed(button.over)
            : button.hovered ? button.over : button.rest
        radius: Theme.controlRadius

        FocusRing {
            visible: button.visualFocus || button.ringAlways && button.activeFocus
        }
    }
    contentItem: Item {
        Row {
            anchors.centerIn: parent
            spacing: button.gap

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                color: button.foreground
                size: button.iconSize
                path: button.iconPath
                visible: button.iconPath !== ""
            }
            ThemedText {
                id: words

                anchors.verticalCenter: parent.verticalCenter
                bold: button.variant === PushButton.Commit
                color: button.foreground
                role: button.small ? ThemedText.Small : ThemedText.Body
                text: button.text
                visible: !button.iconOnly
                // As wide as it needs to be, as long as the button is.
                width: Math.max(0, Math.min(Math.ceil(implicitWidth),
                    button.availableWidth - button.besideWords))
            }
            KeyCap {
                id: cap

                anchors.verticalCenter: parent.verticalCenter
                text: button.keys
                visible: button.keys !== "" && !button.iconOnly
            }
        }
    }

    Hint {
        text: button.hint
        visible: button.hint !== "" && (button.hovered || button.visualFocus)
    }
}
