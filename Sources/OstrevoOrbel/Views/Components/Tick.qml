import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// The box that marks what is meant to move. Refused items show a lock in its place. The target is the whole cell.
T.CheckBox {
    id: tick

    /// Why the item cannot be ticked; empty when it can.
    property string refusal: ""

    readonly property bool refused: refusal !== ""
    readonly property bool filled: checkState !== Qt.Unchecked

    Accessible.description: RefusalAdvice.after(refusal)
    ButtonKeys.enterClicks: false
    enabled: !refused
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    implicitHeight: Theme.tickCell
    implicitWidth: Theme.tickCell

    indicator: Rectangle {
        border.color: tick.filled ? Theme.commit : Theme.control
        border.width: 1.5
        color: tick.filled ? Theme.commit : tick.hovered ? Theme.hover : Theme.surface
        height: Theme.tick
        opacity: tick.refused ? 0 : 1
        radius: Theme.tickRadius
        width: Theme.tick
        x: Math.round((tick.width - width) / 2)
        y: Math.round((tick.height - height) / 2)

        Behavior on color {
            ColorAnimation {
                duration: Theme.tickTime
                easing.type: Theme.easing
            }
        }

        Icon {
            anchors.centerIn: parent
            color: Theme.commitText
            size: Theme.px(14)
            path: tick.checkState === Qt.PartiallyChecked ? "M3.5 8h9" : Theme.icons.check
            stroke: 2.2
            visible: tick.filled
        }
        FocusRing {
            controlRadius: Theme.tickRadius
            visible: tick.visualFocus
        }
    }

    Icon {
        anchors.centerIn: parent
        color: Theme.text3
        size: Theme.px(14)
        path: Theme.icons.lock
        visible: tick.refused
    }
    // A control that is not enabled is never hovered, and the refusal has to be readable.
    HoverHandler {
        id: pointer
    }
    Hint {
        text: RefusalAdvice.after(tick.refusal)
        visible: tick.refused && pointer.hovered
    }
}
