pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// The way to the folder that the map shows, and the ways back, forward and up.
FocusScope {
    id: bar

    required property MapModel map
    property int padding: Theme.pagePadding

    signal upWanted()

    Row {
        id: ways

        anchors.left: parent.left
        anchors.leftMargin: bar.padding - 8
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        IconButton {
            enabled: bar.map.canGoBack
            iconPath: Theme.icons.back
            objectName: "map.back"
            text: qsTr("Back")

            onClicked: bar.map.goBack()
        }
        IconButton {
            enabled: bar.map.canGoForward
            iconPath: Theme.icons.forward
            objectName: "map.forward"
            text: qsTr("Forward")

            onClicked: bar.map.goForward()
        }
        IconButton {
            enabled: bar.map.canGoUp
            iconPath: Theme.icons.up
            objectName: "map.up"
            text: qsTr("Up")

            onClicked: bar.upWanted()
        }
    }
    Rectangle {
        id: divider

        anchors.left: ways.right
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.line
        height: Theme.px(20)
        width: 1
    }
    // The end of the way is what matters: where there is no room, its beginning is left out.
    Item {
        id: way

        anchors.bottom: parent.bottom
        anchors.left: divider.right
        anchors.leftMargin: 8
        anchors.right: share.left
        anchors.rightMargin: 16
        anchors.top: parent.top
        clip: true

        readonly property bool cut: crumbs.width > width
        /// How many parts at the beginning do not fit.
        readonly property int hiddenParts: {
            let room = way.width - dots.implicitWidth;
            let parts = 0;
            for (let i = repeater.count - 1; i >= 0; --i) {
                const part = repeater.itemAt(i);
                if (!part)
                    return 0;
                room -= part.fullWidth;
                if (room < 0)
                    break;
                ++parts;
            }
            return cut ? Math.min(repeater.count - 1, repeater.count - parts) : 0;
        }

        ThemedText {
            id: dots

            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            color: Theme.text2
            leftPadding: Theme.mirrored ? 4 : 8
            rightPadding: 12 - leftPadding
            text: "…"
            visible: way.hiddenParts > 0
        }
        Row {
            id: crumbs

            anchors.verticalCenter: parent.verticalCenter
            // Measured at full length, drawn from the first part that fits.
            x: {
                const first = way.hiddenParts > 0 ? repeater.itemAt(way.hiddenParts) : null;
                const left = first ? Theme.along(first.x, first.width, width) : 0;
                return Theme.along(first ? dots.width - left : 0, width, way.width);
            }

            Repeater {
                id: repeater

                model: bar.map.crumbs

                Row {
                    id: crumb

                    required property int index
                    required property int node
                    required property string name
                    required property string size

                    readonly property bool last: index === repeater.count - 1
                    readonly property real fullWidth: width
                    readonly property int seen: index < way.hiddenParts ? 0 : 1

                    Icon {
                        anchors.verticalCenter: parent.verticalCenter
                        color: Theme.text3
                        size: Theme.px(12)
                        opacity: crumb.seen
                        path: Theme.icons.forward
                        visible: crumb.index > 0
                    }
                    T.AbstractButton {
                        id: button

                        Spoken.name: crumb.name + ", " + crumb.size
                        anchors.verticalCenter: parent.verticalCenter
                        enabled: crumb.index >= way.hiddenParts
                        focusPolicy: Qt.StrongFocus
                        hoverEnabled: true
                        implicitHeight: Theme.smallButtonHeight
                        implicitWidth: contentItem.implicitWidth + 16
                        leftPadding: 8
                        objectName: "map.crumb." + crumb.index
                        rightPadding: 8

                        ButtonKeys.enterClicks: true
                        onClicked: bar.map.show(crumb.node)

                        background: Rectangle {
                            color: button.down ? Theme.pressed(Theme.hover)
                                : button.hovered ? Theme.hover : "transparent"
                            radius: Theme.controlRadius

                            FocusRing {
                                anchors.margins: -2
                                visible: button.visualFocus
                            }
                        }
                        contentItem: Row {
                            spacing: 6

                            ThemedText {
                                anchors.verticalCenter: parent.verticalCenter
                                bold: crumb.last
                                opacity: crumb.seen
                                text: crumb.name
                                width: Math.min(implicitWidth, Theme.px(280))
                            }
                            SmallText {
                                anchors.verticalCenter: parent.verticalCenter
                                opacity: crumb.seen
                                text: crumb.size
                                visible: crumb.last || crumb.index === 0
                            }
                        }
                    }
                }
            }
        }
    }
    SmallText {
        id: share

        anchors.right: parent.right
        anchors.rightMargin: bar.padding
        anchors.verticalCenter: parent.verticalCenter
        objectName: "map.share"
        text: bar.map.share
        width: Math.min(implicitWidth, bar.width * 0.4)
    }
    Hairline {}
}
