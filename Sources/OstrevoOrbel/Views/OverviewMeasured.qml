pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// After measuring: the ledger, what takes the space, and the ways on.
FocusScope {
    id: measured

    required property AppModel app
    property int padding: Theme.pagePadding
    property int columns: 3
    readonly property Item firstFocus: kindList
    /// What the pointer is on.
    readonly property string status: (kindList.hoveredRow ?? folderList.hoveredRow)?.status ?? ""

    component Fact: Item {
        property alias label: label.text
        property alias value: value.text

        Accessible.name: label.text + ": " + value.text
        Accessible.role: Accessible.StaticText
        implicitHeight: Theme.px(22)

        SmallText {
            id: label

            anchors.left: parent.left
            anchors.right: value.left
            anchors.rightMargin: 8
        }
        SmallText {
            id: value

            anchors.right: parent.right
            elide: Text.ElideNone
        }
    }

    component WayOn: T.AbstractButton {
        id: way

        required property int index
        required property var modelData
        /// What the screen has to list, and how many: empty until that is known.
        readonly property string summary: modelData.flow.summary
        readonly property string count: modelData.flow.countText
        readonly property string remark: summary !== "" ? summary : modelData.unknown

        Spoken.name: text + ", " + remark
        Spoken.role: Accessible.Link
        focusPolicy: Qt.StrongFocus
        hoverEnabled: true
        implicitHeight: Theme.linkCardHeight
        objectName: "overview." + modelData.screen
        text: modelData.text
        width: ways.cell

        ButtonKeys.enterClicks: true
        onClicked: measured.app.screen = modelData.screen

        background: RowGround {
            anchors.fill: parent
            anchors.margins: 1
            focused: way.visualFocus
            hovered: way.hovered
            radius: Theme.cardRadius - 1
            separated: false

            Hairline {
                edge: measured.columns === 1 ? Qt.TopEdge : Qt.LeftEdge
                soft: true
                visible: way.index > 0
                x: Theme.along(-1, width, parent.width)
                y: -1
            }
        }
        contentItem: Item {
            Icon {
                id: icon

                anchors.left: parent.left
                anchors.leftMargin: Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.accent
                size: Theme.px(20)
                path: way.modelData.icon
                stroke: 1.3
            }
            Column {
                anchors.left: icon.right
                anchors.leftMargin: 14
                anchors.right: value.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter

                ThemedText {
                    text: way.text
                    width: parent.width
                }
                SmallText {
                    text: way.remark
                    width: parent.width
                }
            }
            ThemedText {
                id: value

                anchors.right: chevron.left
                anchors.rightMargin: 16
                anchors.verticalCenter: parent.verticalCenter
                bold: true
                elide: Text.ElideNone
                role: ThemedText.Lead
                text: way.count !== "" ? way.count : "—"
            }
            Icon {
                id: chevron

                anchors.right: parent.right
                anchors.rightMargin: Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter
                path: Theme.icons.forward
            }
        }
    }

    ScrollPage {
        id: page

        anchors.fill: parent
        centred: true
        objectName: "overview.page"
        padding: measured.padding
        spacing: Theme.cardGap

        Banner {
            id: partial

            action: qsTr("Measure Again")
            explanation: qsTr("Measuring stopped after %1. Everything below counts only what was measured.")
                .arg(measured.app.scan.figures.duration)
            objectName: "overview.partial"
            statement: qsTr("Scan cancelled — partial")
            visible: measured.app.scan.partial
            width: parent.width

            onTriggered: measured.app.scan.measureAgain()
        }
        LedgerCard {
            id: ledger

            app: measured.app
            objectName: "overview.ledgercard"
            visible: measured.app.disk.ledger.known
            width: parent.width

            onUnreadableWanted: sheet.open()
        }
        Item {
            id: cards

            readonly property bool aside: measured.columns === 3
            readonly property int headHeight: Theme.px(40)
            readonly property int half: Math.floor((width - Theme.cardGap) / 2)
            readonly property int rest: Math.floor((width - Theme.px(348) - 2 * Theme.cardGap) / 2)
            /// What the other cards leave of the page.
            readonly property int room: page.height - 2 * measured.padding - ways.height - Theme.cardGap
                - (partial.visible ? partial.height + Theme.cardGap : 0)
                - (ledger.visible ? ledger.height + Theme.cardGap : 0)
            /// Whole rows only; those that have no room are scrolled to.
            readonly property int kindRows: aside ? Math.min(kindList.count, Math.max(8,
                Math.floor((room - headHeight - factRows.height - 31) / Theme.compactRowHeight))) : kindList.count
            readonly property int kindsNeed: headHeight + kindCard.listHeight + facts.height + 20
            /// The last thing to stay where the page is low.
            readonly property bool explains: !aside
                || room >= headHeight + kindCard.listHeight + factRows.height + explanation.implicitHeight + 31
            readonly property int foldersNeed: headHeight + 14
                + Theme.compactRowHeight * Math.max(4, Math.min(10, folderList.model ? folderList.count : 0))
            readonly property int tallest: Math.max(kindsNeed,
                aside ? Math.min(room, Math.max(foldersNeed, Theme.px(440))) : foldersNeed)
            readonly property int barWidth: measured.columns === 1 ? Math.round(width * 0.4) : Theme.px(84)

            height: aside ? tallest
                : measured.columns === 2 ? tallest + Theme.cardGap + growthCard.need
                : kindsNeed + foldersNeed + growthCard.need + 2 * Theme.cardGap
            width: parent.width

            Card {
                id: kindCard

                readonly property int listHeight: cards.kindRows * Theme.compactRowHeight
                property bool byExtension: false

                height: measured.columns === 1 ? cards.kindsNeed : cards.tallest
                remark: measured.app.scan.figures.measured.text
                title: byExtension ? qsTr("By extension") : qsTr("By kind")
                width: cards.aside ? Theme.px(348) : measured.columns === 2 ? cards.half : cards.width
                x: Theme.along(0, width, cards.width)

                choice: Segmented {
                    current: kindCard.byExtension ? 1 : 0
                    implicitHeight: Theme.smallButtonHeight
                    name: qsTr("What was measured")
                    objectName: "overview.by"
                    options: [qsTr("By kind"), qsTr("By extension")]

                    onChosen: index => kindCard.byExtension = index === 1
                }

                ItemTable {
                    id: kindList

                    Accessible.name: kindCard.title
                    focus: true
                    height: kindCard.listHeight
                    model: kindCard.byExtension ? measured.app.scan.extensions : measured.app.scan.kinds
                    objectName: "overview.kinds"
                    scrolls: cards.kindRows < count
                    selects: false
                    width: parent.width
                    y: 6

                    delegate: BarRow {
                        barWidth: cards.barWidth
                        nameElide: Text.ElideRight
                    }

                    onActivated: row => {
                        if (kindCard.byExtension)
                            measured.app.showExtensionOnMap(itemAt(row).model.extension);
                        else
                            measured.app.showKindOnMap(itemAt(row).kind);
                    }
                }
                Column {
                    id: facts

                    width: parent.width - 2 * Theme.cardPadding
                    x: Theme.cardPadding
                    y: kindList.y + kindList.height + 6

                    Hairline {
                        edge: Qt.TopEdge
                        soft: true
                    }
                    Gap {
                        height: 10
                    }
                    Column {
                        id: factRows

                        width: parent.width

                        Fact {
                            label: qsTr("Could not be read")
                            value: measured.app.scan.unreadable.total === 1 ? qsTr("1 entry")
                                : qsTr("%1 entries").arg(measured.app.scan.figures.unreadable)
                            width: parent.width
                        }
                        Fact {
                            label: qsTr("Other volumes skipped")
                            value: measured.app.scan.otherVolumesSkipped
                            width: parent.width
                        }
                    }
                    Paragraph {
                        id: explanation

                        color: Theme.text3
                        text: qsTr("Space on disk; a hard-linked file counts once.")
                        topPadding: 6
                        visible: cards.explains
                        role: ThemedText.Small
                    }
                }
            }
            Card {
                id: folderCard

                height: measured.columns === 1 ? cards.foldersNeed : cards.tallest
                remark: qsTr("on disk")
                title: qsTr("Largest folders")
                width: cards.aside ? cards.rest : kindCard.width
                x: Theme.along(measured.columns === 1 ? 0 : kindCard.width + Theme.cardGap, width, cards.width)
                y: measured.columns === 1 ? kindCard.height + Theme.cardGap : 0

                ItemTable {
                    id: folderList

                    Accessible.name: folderCard.title
                    // Whole rows only.
                    height: Theme.compactRowHeight * Math.min(count,
                        Math.floor((folderCard.height - cards.headHeight - 10) / Theme.compactRowHeight))
                    menu: menu
                    model: measured.app.scan.largestFolders
                    objectName: "overview.folders"
                    scrolls: false
                    selects: false
                    visible: count > 0
                    width: parent.width
                    y: 6

                    delegate: BarRow {
                        barWidth: cards.barWidth
                        key: measured.app.actions.keyOf(model.node)
                    }

                    onActivated: row => measured.app.actions.showOnMap(itemAt(row).key)
                }
                ListState {
                    anchors.fill: parent
                    anchors.margins: Theme.cardPadding
                    iconPath: Theme.icons.folders
                    sentence: qsTr("What was measured has no folders in it.")
                    statement: qsTr("No folders")
                    visible: folderList.count === 0
                }
            }
            GrowthCard {
                id: growthCard

                app: measured.app
                height: cards.aside ? cards.tallest : need
                menu: menu
                width: cards.aside ? cards.rest : cards.width
                x: Theme.along(cards.aside ? cards.width - width : 0, width, cards.width)
                y: cards.aside ? 0 : folderCard.y + folderCard.height + Theme.cardGap
            }
        }
        Card {
            id: ways

            readonly property int cell: measured.columns === 1 ? width : Math.floor(width / 3)

            height: waysGrid.implicitHeight
            width: parent.width

            Grid {
                id: waysGrid

                readonly property string elsewhere: qsTr("needs a folder of this computer")

                columns: measured.columns === 1 ? 1 : 3
                x: -1
                y: -1

                Repeater {
                    model: [
                        { screen: "large", text: qsTr("Large and Old"), unknown: qsTr("not looked for"),
                            icon: Theme.icons.large, flow: measured.app.largeOld },
                        { screen: "duplicates", text: qsTr("Duplicates"),
                            unknown: measured.app.scan.foreign ? waysGrid.elsewhere : qsTr("not searched"),
                            icon: Theme.icons.duplicates, flow: measured.app.duplicates },
                        { screen: "tidy", text: qsTr("Tidy"),
                            unknown: measured.app.scan.foreign ? waysGrid.elsewhere : qsTr("not looked for"),
                            icon: Theme.icons.tidy, flow: measured.app.tidy }
                    ]

                    WayOn {}
                }
            }
        }
        // The last, since it comes when the rest is there already.
        SystemPlacesCard {
            flow: measured.app.system
            objectName: "overview.freed"
            stacked: measured.columns === 1
            visible: count > 0
            width: parent.width
        }
    }

    ItemMenu {
        id: menu

        actions: measured.app.actions
        elsewhere: measured.app.scan.foreign
        objectName: "overview.menu"
        tickable: false
    }
    UnreadableSheet {
        id: sheet

        app: measured.app
    }
}
