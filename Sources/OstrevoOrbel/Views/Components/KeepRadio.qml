import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// The mark of the one copy that stays.
T.RadioButton {
    id: radio

    readonly property int besideWords: Theme.tick + 8

    ButtonKeys.enterClicks: false
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    implicitHeight: Theme.copyRowHeight
    implicitWidth: contentItem.implicitWidth + besideWords
    leftPadding: Theme.mirrored ? 0 : besideWords
    rightPadding: Theme.mirrored ? besideWords : 0

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
        x: Theme.along(0, width, radio.width)
        y: Math.round((radio.height - height) / 2)

        FocusRing {
            controlRadius: parent.radius
            visible: radio.visualFocus
        }
    }
}
