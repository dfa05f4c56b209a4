import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// The mark of the one copy that stays.
T.RadioButton {
    id: radio

    ButtonKeys.enterClicks: false
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    implicitHeight: Theme.copyRowHeight
    implicitWidth: contentItem.implicitWidth + leftPadding
    leftPadding: Theme.tick + 8

    contentItem: ThemedText {
        bold: radio.checked
        color: radio.checked ? Theme.accent : Theme.text2
        text: radio.text
    }
    indicator: Rectangle {
        border.color: radio.checked ? Theme.accent : Theme.control
        border.width: radio.checked ? Theme.px(5) : 1.5
        color: radio.hovered && !radio.checked ? Theme.hover : Theme.surface
        height: Theme.tick
        radius: height / 2
        width: Theme.tick
        y: Math.round((radio.height - height) / 2)

        FocusRing {
            controlRadius: parent.radius
            visible: radio.visualFocus
        }
    }
}
