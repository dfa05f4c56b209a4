import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// One choice of two to four, all in sight. One Tab stop: the arrows move the choice.
FocusScope {
    id: segmented

    /// The words to choose from.
    property var options: []
    property int current: 0
    property string name: ""

    signal chosen(int index)

    function step(by: int): void {
        const next = segmented.current + by;
        if (next < 0 || next >= segmented.options.length)
            return;
        segmented.chosen(next);
        const chosenSegment = segments.itemAt(segmented.current);
        if (chosenSegment)
            chosenSegment.forceActiveFocus(Qt.TabFocusReason);
    }

    Accessible.name: name
    Accessible.role: Accessible.Grouping
    implicitHeight: Theme.controlHeight
    implicitWidth: row.implicitWidth

    Keys.onLeftPressed: segmented.step(-1)
    Keys.onRightPressed: segmented.step(1)

    Rectangle {
        anchors.fill: row
        color: Theme.surface
        radius: Theme.controlRadius
    }
    Row {
        id: row

        height: parent.height

        Repeater {
            id: segments

            model: segmented.options

            T.AbstractButton {
                id: segment

                required property int index
                required property string modelData

                readonly property bool first: index === 0
                readonly property bool last: index === segmented.options.length - 1

                Accessible.checkable: true
                Accessible.checked: checked
                Accessible.name: modelData
                Accessible.role: Accessible.RadioButton
                activeFocusOnTab: checked
                checked: segmented.current === index
                focus: checked
                focusPolicy: checked ? Qt.StrongFocus : Qt.ClickFocus
                height: row.height
                hoverEnabled: true
                implicitWidth: widest.implicitWidth + 28
                objectName: segmented.objectName + "." + modelData.toLowerCase()

                onClicked: segmented.chosen(index)

                background: Item {
                    Rectangle {
                        anchors.fill: parent
                        anchors.leftMargin: segment.first ? 1 : 0
                        anchors.rightMargin: segment.last ? 1 : 0
                        anchors.topMargin: 1
                        anchors.bottomMargin: 1
                        color: segment.checked ? Theme.accentSoft : segment.down ? Theme.pressed(Theme.hover)
                            : segment.hovered ? Theme.hover : "transparent"
                        radius: segment.first || segment.last ? Theme.controlRadius - 1 : 0

                        // Squares the side that meets the next segment.
                        Rectangle {
                            color: parent.color
                            height: parent.height
                            visible: segment.first !== segment.last
                            width: parent.radius
                            x: segment.first ? parent.width - width : 0
                        }
                    }
                    Rectangle {
                        color: Theme.line
                        height: parent.height
                        visible: !segment.first
                        width: 1
                    }
                    FocusRing {
                        visible: segment.visualFocus
                        z: 1
                    }
                }
                contentItem: Item {
                    ThemedText {
                        anchors.centerIn: parent
                        bold: segment.checked
                        text: segment.modelData
                    }
                    // The width does not change with the choice.
                    ThemedText {
                        id: widest

                        bold: true
                        text: segment.modelData
                        visible: false
                    }
                }
            }
        }
    }
    Rectangle {
        anchors.fill: row
        border.color: Theme.control
        color: "transparent"
        radius: Theme.controlRadius
    }
}
