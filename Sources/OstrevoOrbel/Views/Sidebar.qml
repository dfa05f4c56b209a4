pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// The way to the screens, and the disk in short. On the narrow rail only the icons show.
Rectangle {
    id: sidebar

    required property AppModel app
    property bool rail: false
    /// The page that stands in place of a screen, or none: "settings", "help", "changes".
    property string page: ""
    /// Whether a screen is shown, or a page that belongs to it.
    readonly property bool onScreen: page === "" || page === "changes"

    /// All screens in their order: the names that `app.screen` has, and the files that show them.
    readonly property var all: [
        { name: "overview", view: "OverviewView", title: qsTr("Overview"), icon: Theme.icons.overview },
        { name: "map", view: "MapView", title: qsTr("Map"), icon: Theme.icons.map },
        { name: "large", view: "LargeView", title: qsTr("Large and Old"), icon: Theme.icons.large },
        { name: "duplicates", view: "DuplicatesView", title: qsTr("Duplicates"), icon: Theme.icons.duplicates },
        { name: "uninstall", view: "UninstallView", title: qsTr("Uninstall"), icon: Theme.icons.uninstall },
        { name: "tidy", view: "TidyView", title: qsTr("Tidy"), icon: Theme.icons.tidy },
        { name: "journal", view: "JournalView", title: qsTr("Journal"), icon: Theme.icons.journal }
    ]

    signal screenWanted(string screen)
    signal pageWanted(string page)

    /// The item of the screen that is shown.
    function takeFocus(): void {
        const place = (onScreen ? screens.itemAt(app.screenIndex) : page === "settings" ? settings : help) as Item;
        place.forceActiveFocus(Qt.TabFocusReason);
    }

    readonly property int side: rail ? 8 : 12
    /// How much each screen has to list, as far as that is known.
    readonly property var counts: ({
        large: app.largeOld.countText,
        duplicates: app.duplicates.countText,
        uninstall: app.scan.foreign ? "" : app.apps.countText,
        tidy: app.tidy.countText,
        journal: app.journal.countText
    })

    color: Theme.side

    Row {
        id: head

        spacing: 10
        x: Theme.along(sidebar.rail ? Math.round((parent.width - width) / 2) : 20, width, parent.width)
        y: 16

        Mark {}
        ThemedText {
            anchors.verticalCenter: parent.verticalCenter
            bold: true
            role: ThemedText.Lead
            font.pixelSize: Theme.px(14)
            text: "Ostrevo Vanto"
            visible: !sidebar.rail
            width: Math.min(implicitWidth, sidebar.width - 62)
        }
    }
    // What does not fit is scrolled to, which takes a large font in a low window.
    Flickable {
        id: list

        anchors.bottom: disk.top
        anchors.bottomMargin: 8
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        anchors.topMargin: 10
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: column.height + 8
        interactive: contentHeight > height

        function reveal(item: Item): void {
            contentY = Math.max(Math.min(contentY, item.y), item.y + item.height + 8 - height);
        }

        Column {
            id: column

            Accessible.name: qsTr("Screens")
            Accessible.role: Accessible.PageTabList
            spacing: 2
            width: list.width - 2 * sidebar.side
            x: sidebar.side
            y: 4

            Repeater {
                id: screens

                model: sidebar.all

                NavItem {
                    id: item

                    required property int index
                    required property var modelData

                    count: sidebar.counts[modelData.name] ?? ""
                    current: sidebar.onScreen && sidebar.app.screenIndex === index
                    iconPath: modelData.icon
                    objectName: "sidebar." + modelData.name
                    rail: sidebar.rail
                    text: modelData.title
                    width: column.width

                    onActiveFocusChanged: if (activeFocus) list.reveal(item)
                    onClicked: sidebar.screenWanted(modelData.name)
                }
            }
        }
    }
    Column {
        id: disk

        anchors.bottom: foot.top
        anchors.bottomMargin: 12
        anchors.left: parent.left
        anchors.leftMargin: 20
        anchors.right: parent.right
        anchors.rightMargin: 20
        spacing: 6
        visible: !sidebar.rail && sidebar.app.disk.ownLedger.known
        height: visible ? implicitHeight : 0

        Sentence {
            anchors.left: parent.left
            spacing: 5

            ThemedText {
                id: free

                bold: true
                elide: Text.ElideNone
                role: ThemedText.Small
                text: sidebar.app.disk.ownLedger.free.text
            }
            SmallText {
                text: qsTr("free of %1").arg(sidebar.app.disk.ownLedger.total.text)
                width: Math.min(implicitWidth, disk.width - free.width - parent.spacing)
            }
        }
        VolumeBar {
            Accessible.name: sidebar.app.disk.ownLedger.summary
            Accessible.role: Accessible.Graphic
            height: 8
            plain: true
            segments: sidebar.app.disk.ownLedger.segments
            width: parent.width
        }
        T.AbstractButton {
            id: trash

            Spoken.name: qsTr("In the Trash: %1").arg(sidebar.app.disk.trashSize)
            focusPolicy: Qt.TabFocus
            height: Theme.smallButtonHeight
            hoverEnabled: true
            objectName: "sidebar.trash"
            width: parent.width

            ButtonKeys.enterClicks: true
            onClicked: sidebar.app.disk.openTrash()

            background: Rectangle {
                anchors.fill: parent
                anchors.leftMargin: -8
                anchors.rightMargin: -8
                color: trash.down ? Theme.pressed(Theme.hover) : trash.hovered ? Theme.hover : "transparent"
                radius: Theme.controlRadius

                FocusRing {
                    anchors.margins: -2
                    visible: trash.visualFocus
                }
            }
            contentItem: Item {
                SmallText {
                    anchors.left: parent.left
                    anchors.right: trashSize.left
                    anchors.rightMargin: 6
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("In the Trash")
                }
                SmallText {
                    id: trashSize

                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    elide: Text.ElideNone
                    text: sidebar.app.disk.trashSize
                }
            }

            Hint {
                text: qsTr("Open Trash")
                visible: trash.hovered || trash.visualFocus
                y: -height - 6
            }
        }
    }
    Column {
        id: foot

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 12
        spacing: 2
        width: parent.width - 2 * sidebar.side
        x: sidebar.side

        Rectangle {
            color: Theme.line
            height: 1
            width: parent.width - 16
            x: 8
        }
        Gap {
            height: 8
        }
        NavItem {
            id: settings

            current: sidebar.page === "settings"
            iconPath: Theme.icons.settings
            objectName: "sidebar.settings"
            rail: sidebar.rail
            text: qsTr("Settings")
            width: parent.width

            onClicked: sidebar.pageWanted("settings")
        }
        NavItem {
            id: help

            current: sidebar.page === "help"
            iconPath: Theme.icons.help
            objectName: "sidebar.help"
            rail: sidebar.rail
            text: qsTr("Help")
            width: parent.width

            onClicked: sidebar.pageWanted("help")
        }
    }
    Rectangle {
        anchors.right: parent.right
        color: Theme.line
        height: parent.height
        width: 1
    }
}
