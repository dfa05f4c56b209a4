pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// One choice of two to four, all in sight. One Tab stop: the arrows move the choice.
T.Control {
    id: segmented

    /// The words to choose from.
    property var options: []
    property int current: 0
    property string name: ""

    signal chosen(int index)

    function step(by: int): void {
        const next = segmented.current + by;
        if (next >= 0 && next < segmented.options.length)
            segmented.chosen(next);
    }

    Accessible.name: name
    Spoken.part: segments.count > 0 ? segments.itemAt(current) : null
    Spoken.role: Accessible.Grouping
    focusPolicy: Qt.StrongFocus
    implicitHeight: Theme.controlHeight
    implicitWidth: row.implicitWidth

    Keys.onLeftPressed: segmented.step(Theme.mirrored ? 1 : -1)
    Keys.onRightPressed: segmented.step(Theme.mirrored ? -1 : 1)

    background: Rectangle {
        color: Theme.surface
        radius: Theme.controlRadius
    }
    contentItem: Item {
        Row {
            id: row

            anchors.left: parent.left
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

                    Spoken.name: modelData
                    Spoken.role: Accessible.RadioButton
                    checked: segmented.current === index
                    focusPolicy: Qt.NoFocus
                    height: row.height
                    hoverEnabled: true
                    implicitWidth: Math.ceil(widest.implicitWidth) + 28
                    objectName: segmented.objectName + "." + index

                    onClicked: {
                        segmented.forceActiveFocus(Qt.MouseFocusReason);
                        segmented.chosen(index);
                    }

                    background: Item {
                        Rectangle {
                            id: fill

                            anchors.bottomMargin: 1
                            anchors.fill: parent
                            anchors.leftMargin: segment.first ? 1 : 0
                            anchors.rightMargin: segment.last ? 1 : 0
                            anchors.topMargin: 1
                            color: segment.checked ? Theme.accentSoft : segment.down ? Theme.pressed(Theme.hover)
                                : segment.hovered ? Theme.hover : Theme.surface
                            radius: segment.first || segment.last ? Theme.controlRadius - 1 : 0

                            // Squares the side that meets the next segment.
                            Rectangle {
                                color: fill.color
                                height: parent.height
                                visible: segment.first !== segment.last
                                width: fill.radius
                                x: segment.first !== Theme.mirrored ? parent.width - width : 0
                            }
                        }
                        Rectangle {
                            anchors.left: parent.left
                            color: Theme.line
                            height: parent.height
                            visible: !segment.first
                            width: 1
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
        FocusRing {
            readonly property Item chosen: segments.count > 0 ? segments.itemAt(segmented.current) : null

            anchors.fill: undefined
            height: row.height + 8
            visible: segmented.visualFocus && chosen
            width: (chosen?.width ?? 0) + 8
            x: row.x + (chosen?.x ?? 0) - 4
            y: -4
        }
    }
}
