import QtQuick
import OstrevoOrbel

/// Stands in place of everything while the permission to read the disk is missing, and closes by itself.
FocusScope {
    id: view

    required property AppModel app

    Accessible.name: headline.text
    Accessible.role: Accessible.Pane
    focus: true
    objectName: "onboarding"

    Component.onCompleted: open.forceActiveFocus(Qt.TabFocusReason)

    component Advice: Item {
        property alias iconPath: icon.path
        property alias text: words.text

        implicitHeight: words.implicitHeight + 32
        width: parent.width

        Icon {
            id: icon

            anchors.left: parent.left
            anchors.leftMargin: 20
            y: 17
        }
        ThemedText {
            id: words

            anchors.left: parent.left
            anchors.leftMargin: 20 + Theme.icon + 14
            anchors.right: parent.right
            anchors.rightMargin: 20
            color: Theme.text2
            wrapMode: Text.Wrap
            y: 16
        }
    }

    Timer {
        interval: 1000
        repeat: true
        running: true

        onTriggered: view.app.scan.refreshFullDiskAccess()
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.window
    }
    ScrollPage {
        anchors.bottom: motto.top
        anchors.bottomMargin: 8
        anchors.top: parent.top
        centred: true
        columnWidth: Theme.px(560)
        focus: true
        padding: Math.max(24, Math.round((parent.height - Theme.px(460)) / 2) - 24)
        width: parent.width

        Mark {
            size: Theme.px(42)
        }
        Gap {
            height: 28
        }
        Heading {
            id: headline

            role: ThemedText.Figure
            text: qsTr("Ostrevo Vanto needs Full Disk Access to measure your whole disk.")
            width: parent.width
            wrapMode: Text.Wrap
        }
        Gap {
            height: 12
        }
        Paragraph {
            role: ThemedText.Lead
            text: Qt.platform.os === "osx"
                ? qsTr("Vanto reads your disk on this Mac and never uploads anything. Deletions go to the Trash.")
                : qsTr("Vanto reads your disk on this computer and never uploads anything. Deletions go to the Trash.")
        }
        Gap {
            height: 24
        }
        Flow {
            spacing: 16
            width: parent.width

            PushButton {
                id: open

                controlHeight: Theme.startButtonHeight
                focus: true
                objectName: "onboarding.open"
                ringAlways: true
                text: qsTr("Open Privacy Settings")
                variant: PushButton.Primary

                onClicked: view.app.scan.openPrivacySettings()
            }
            Row {
                height: open.height
                spacing: 10

                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.accent
                    height: 8
                    radius: 4
                    width: 8

                    SequentialAnimation on opacity {
                        loops: Animation.Infinite
                        running: Theme.pulseTime > 0

                        NumberAnimation {
                            duration: Theme.pulseTime / 2
                            easing.type: Theme.easing
                            to: 0.25
                        }
                        NumberAnimation {
                            duration: Theme.pulseTime / 2
                            easing.type: Theme.easing
                            to: 1
                        }
                    }
                }
                ThemedText {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.text2
                    text: qsTr("Waiting for access… this closes by itself.")
                }
            }
        }
        Gap {
            height: 40
        }
        Card {
            width: parent.width

            Column {
                width: parent.width

                Advice {
                    iconPath: Theme.icons.plus
                    text: qsTr("If Ostrevo Vanto is not in the list, click + and choose it from Applications, or drag it into the list.")
                }
                Hairline {
                    edge: Qt.TopEdge
                    soft: true
                }
                Advice {
                    iconPath: Theme.icons.rescan
                    text: qsTr("After an update, if the switch is on but Vanto still asks: remove Ostrevo Vanto from the list with −, then add it again.")
                }
            }
        }
    }
    SmallText {
        id: motto

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 24
        color: Theme.text3
        horizontalAlignment: Text.AlignHCenter
        text: view.app.motto
        width: parent.width
    }
}
