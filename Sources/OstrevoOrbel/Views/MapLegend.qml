pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// The kinds on the map and what each takes up. Each is a toggle: what is not chosen is drawn pale.
FocusScope {
    id: bar

    required property RoleList legend
    property bool narrow: false
    property int padding: Theme.pagePadding

    signal toggled(kind: int)

    Accessible.name: qsTr("Kinds")
    Accessible.role: Accessible.Grouping

    Hairline {
        edge: Qt.TopEdge
    }
    Flickable {
        id: view

        /// To where reading begins.
        function rewind(): void {
            contentX = Theme.along(0, width, contentWidth);
        }

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.leftMargin: bar.padding - 8
        anchors.right: smaller.visible ? smaller.left : parent.right
        anchors.rightMargin: 8
        anchors.top: parent.top
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: height
        contentWidth: Math.max(width, entries.width)
        flickableDirection: Flickable.HorizontalFlick

        onContentWidthChanged: rewind()

        Connections {
            target: Theme

            function onMirroredChanged(): void {
                view.rewind();
            }
        }

        Row {
            id: entries

            anchors.verticalCenter: parent.verticalCenter
            spacing: 4
            x: Theme.along(0, width, view.contentWidth)

            Repeater {
                model: bar.legend

                T.AbstractButton {
                    id: entry

                    required property int kind
                    required property string title
                    required property string size
                    required property bool active

                    Accessible.checkable: true
                    Accessible.checked: active
                    Accessible.name: title + ", " + size
                    Accessible.role: Accessible.CheckBox
                    focusPolicy: Qt.StrongFocus
                    hoverEnabled: true
                    implicitHeight: Theme.smallButtonHeight
                    implicitWidth: contentItem.implicitWidth + 16
                    leftPadding: 8
                    objectName: "map.kind." + kind
                    rightPadding: 8

                    ButtonKeys.enterClicks: true
                    onClicked: bar.toggled(kind)

                    background: Rectangle {
                        border.color: Theme.accent
                        border.width: entry.active ? 1 : 0
                        color: entry.active ? Theme.accentSoft : entry.hovered ? Theme.hover : "transparent"
                        radius: Theme.controlRadius

                        FocusRing {
                            anchors.margins: -2
                            controlRadius: Theme.controlRadius - 2
                            visible: entry.visualFocus
                        }
                    }
                    contentItem: Row {
                        spacing: 8

                        KindChip {
                            anchors.verticalCenter: parent.verticalCenter
                            kind: entry.kind
                            size: Theme.px(18)
                        }
                        ThemedText {
                            anchors.verticalCenter: parent.verticalCenter
                            role: ThemedText.Small
                            text: entry.title
                        }
                        SmallText {
                            anchors.verticalCenter: parent.verticalCenter
                            text: entry.size
                            visible: !bar.narrow
                        }
                    }
                }
            }
        }
    }
    Row {
        id: smaller

        anchors.right: parent.right
        anchors.rightMargin: bar.padding
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8
        visible: !bar.narrow

        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            border.color: Theme.control
            color: Theme.hatchGround
            height: Theme.px(12)
            radius: 3
            width: height
        }
        SmallText {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Smaller items")
        }
    }
}
