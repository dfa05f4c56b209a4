import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// A setting that is on or off, applied at once.
T.Switch {
    id: toggle

    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitHeight: Theme.smallButtonHeight
    implicitWidth: Theme.px(36)

    ButtonKeys.enterClicks: true

    indicator: Rectangle {
        border.color: toggle.checked ? color : toggle.enabled ? Theme.control : Theme.lineSoft
        border.width: 1.5
        color: toggle.checked ? toggle.hovered ? Theme.accentHover : Theme.accent
            : toggle.hovered ? Theme.hover : Theme.surface
        height: Theme.px(20)
        radius: height / 2
        width: Theme.px(36)
        y: Math.round((toggle.height - height) / 2)

        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            color: toggle.checked ? Theme.accentText : Theme.control
            height: Theme.px(14)
            radius: height / 2
            width: height
            x: toggle.checked === Theme.mirrored ? 3 : parent.width - width - 3

            Behavior on x {
                NumberAnimation {
                    duration: Theme.tickTime
                    easing.type: Theme.easing
                }
            }
        }
        FocusRing {
            controlRadius: parent.radius
            visible: toggle.visualFocus
        }
    }
}
