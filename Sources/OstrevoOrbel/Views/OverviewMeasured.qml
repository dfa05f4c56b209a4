import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// After measuring: the ledger, what takes the space, and the ways on.
FocusScope {
    id: measured

    required property AppModel app
    property int padding: Theme.pagePadding
    property int columns: 3
    /// What the pointer is on.
    property string status: ""

    component Fact: Item {
        property alias label: label.text
        property alias value: value.text

        Accessible.name: label.text + ": " + value.text
        Accessible.role: Accessible.StaticText
        implicitHeight: Theme.px(22)

        ThemedText {
            id: label

            anchors.left: parent.left
            anchors.right: value.left
            anchors.rightMargin: 8
            color: Theme.text2
            role: ThemedText.Small
        }
        ThemedText {
            id: value

            anchors.right: parent.right
            color: Theme.text2
            elide: Text.ElideNone
            role: ThemedText.Small
        }
    }

    component WayOn: T.AbstractButton {
        id: way

        property string iconPath: ""
        /// What the screen has to list, and how many: empty until that is known.
        property string summary: ""
        property string count: ""
        /// What stands there until then.
        property string unknown: ""
        property bool first: false

        readonly property string remark: summary !== "" ? summary : unknown

        Accessible.name: text + ", " + remark
        Accessible.role: Accessible.Link
        focusPolicy: Qt.StrongFocus
        hoverEnabled: true
        implicitHeight: Theme.linkCardHeight

        ButtonKeys.enterClicks: true

        background: RowGround {
            anchors.fill: parent
            anchors.margins: 1
            focused: way.visualFocus
            hovered: way.hovered
            radius: Theme.cardRadius - 1
            separated: false

            Rectangle {
                color: Theme.lineSoft
                height: measured.columns === 1 ? 1 : way.height
                visible: !way.first
                width: measured.columns === 1 ? way.width : 1
                x: -1
                y: -1
            }
        }
        contentItem: Item {
            PathIcon {
                id: icon

                anchors.verticalCenter: parent.verticalCenter
                color: Theme.accent
                height: Theme.px(20)
                path: way.iconPath
                stroke: 1.3
                width: height
                x: Theme.cardPadding
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
                ThemedText {
                    color: Theme.text2
                    role: ThemedText.Small
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
            PathIcon {
                id: chevron

                anchors.right: parent.right
                anchors.rightMargin: Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.text2
                height: Theme.icon
                path: Theme.icons.right
                width: height
            }
        }
    }

    Flickable {
        id: page

        readonly property int cardWidth: Math.min(width - 2 * measured.padding, Theme.contentWidth)

        // Keeps what has the focus in sight.
        function reveal(item: Item): void {
            if (!item)
                return;
            const top = item.mapToItem(column, 0, 0).y + column.y;
            if (top < contentY || top + item.height > contentY + height)
                contentY = Math.max(0, Math.min(contentHeight - height, top - (height - item.height) / 2));
        }

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: column.height + 2 * measured.padding
        interactive: contentHeight > height
        objectName: "overview.page"

        T.ScrollBar.vertical: ScrollThumb {}

        Column {
            id: column

            spacing: Theme.cardGap
            width: page.cardWidth
            x: Math.round((page.width - width) / 2)
            y: measured.padding

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
                termColumns: measured.columns === 3 ? 5 : 3
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
                readonly property int kindsNeed: headHeight + kindCard.listHeight + facts.height + 20
                /// The last thing to stay where the page is low.
                readonly property bool explains: !aside
                    || room >= headHeight + kindCard.listHeight + factRows.height + explanation.implicitHeight + 31
                readonly property int foldersNeed: headHeight + 14
                    + Theme.compactRowHeight * Math.max(4, Math.min(10, folderList.model ? folderList.count : 0))
                readonly property int growthNeed: growthList.count > 0
                    ? headHeight + 14 + Theme.compactRowHeight * growthList.count
                    : headHeight + noGrowth.implicitHeight + 48
                readonly property int tallest: Math.max(kindsNeed,
                    aside ? Math.min(room, Math.max(foldersNeed, Theme.px(440))) : foldersNeed)
                readonly property int barWidth: measured.columns === 1 ? Math.round(width * 0.4) : Theme.px(84)

                height: aside ? tallest
                    : measured.columns === 2 ? tallest + Theme.cardGap + growthNeed
                    : kindsNeed + foldersNeed + growthNeed + 2 * Theme.cardGap
                width: parent.width

                Card {
                    id: kindCard

                    readonly property int listHeight: kindList.count * Theme.compactRowHeight

                    height: measured.columns === 1 ? cards.kindsNeed : cards.tallest
                    remark: qsTr("%1 measured").arg(measured.app.scan.figures.measured.text)
                    title: qsTr("By kind")
                    width: cards.aside ? Theme.px(348) : measured.columns === 2 ? cards.half : cards.width

                    RowList {
                        id: kindList

                        Accessible.name: kindCard.title
                        focus: true
                        height: kindCard.listHeight
                        model: measured.app.scan.kinds
                        objectName: "overview.kinds"
                        width: parent.width
                        y: 6

                        delegate: BarRow {
                            required property int index
                            required property string title
                            required property string size
                            required property real fraction
                            required kind

                            barWidth: cards.barWidth
                            focused: kindList.visualFocus && ListView.isCurrentItem
                            name: title
                            nameElide: Text.ElideRight
                            share: fraction
                            sizeWords: size
                            width: ListView.view.width

                            onClicked: measured.app.showKindOnMap(kind)
                            onHoveredChanged: measured.status = hovered ? title + " · " + size : ""
                        }

                        onVisualFocusChanged: if (visualFocus) page.reveal(kindList)
                        onActivated: index => measured.app.showKindOnMap(kindList.itemAtIndex(index).kind)
                    }
                    Column {
                        id: facts

                        width: parent.width - 2 * Theme.cardPadding
                        x: Theme.cardPadding
                        y: kindList.y + kindList.height + 6

                        Rectangle {
                            color: Theme.lineSoft
                            height: 1
                            width: parent.width
                        }
                        Item {
                            height: 10
                            width: 1
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
                        ThemedText {
                            id: explanation

                            color: Theme.text3
                            role: ThemedText.Small
                            text: qsTr("Space on disk; a hard-linked file counts once.")
                            topPadding: 6
                            visible: cards.explains
                            width: parent.width
                            wrapMode: Text.Wrap
                        }
                    }
                }
                Card {
                    id: folderCard

                    height: measured.columns === 1 ? cards.foldersNeed : cards.tallest
                    remark: qsTr("on disk")
                    title: qsTr("Largest folders")
                    width: cards.aside ? cards.rest : kindCard.width
                    x: measured.columns === 1 ? 0 : kindCard.width + Theme.cardGap
                    y: measured.columns === 1 ? kindCard.height + Theme.cardGap : 0

                    RowList {
                        id: folderList

                        Accessible.name: folderCard.title
                        // Whole rows only.
                        height: Theme.compactRowHeight * Math.min(count,
                            Math.floor((folderCard.height - cards.headHeight - 10) / Theme.compactRowHeight))
                        model: measured.app.scan.largestFolders
                        objectName: "overview.folders"
                        visible: count > 0
                        width: parent.width
                        y: 6

                        delegate: BarRow {
                            required property int index
                            required property int node
                            required property string path
                            required property string size
                            required property real fraction
                            required kind

                            barWidth: cards.barWidth
                            focused: folderList.visualFocus && ListView.isCurrentItem
                            name: path
                            share: fraction
                            sizeWords: size
                            width: ListView.view.width

                            onClicked: measured.app.showOnMap(node)
                            onHoveredChanged: measured.status = hovered ? path + " · " + size : ""
                        }

                        onVisualFocusChanged: if (visualFocus) page.reveal(folderList)
                        onActivated: index => measured.app.showOnMap(folderList.itemAtIndex(index).node)
                    }
                    EmptyState {
                        anchors.fill: parent
                        anchors.margins: Theme.cardPadding
                        iconPath: Theme.icons.folders
                        sentence: qsTr("What was measured has no folders in it.")
                        statement: qsTr("No folders")
                        visible: folderList.count === 0
                    }
                }
                Card {
                    id: growthCard

                    height: cards.aside ? cards.tallest : cards.growthNeed
                    remark: measured.app.scan.growth.since
                    title: qsTr("Grew most")
                    width: cards.aside ? cards.rest : cards.width
                    x: cards.aside ? cards.width - width : 0
                    y: cards.aside ? 0 : folderCard.y + folderCard.height + Theme.cardGap

                    RowList {
                        id: growthList

                        Accessible.name: growthCard.title + " " + growthCard.remark
                        // Whole rows only.
                        height: Theme.compactRowHeight * Math.min(count,
                            Math.floor((growthCard.height - cards.headHeight - 10) / Theme.compactRowHeight))
                        model: measured.app.scan.growth.folders
                        objectName: "overview.growth"
                        visible: count > 0
                        width: parent.width
                        y: 6

                        delegate: GrowthRow {
                            required property int index
                            required property int node
                            required property string path
                            required property string size
                            required kind

                            focused: growthList.visualFocus && ListView.isCurrentItem
                            name: path
                            sizeWords: size
                            width: ListView.view.width

                            onClicked: measured.app.showOnMap(node)
                        }

                        onActiveFocusChanged: if (activeFocus) page.reveal(growthList)
                        onActivated: index => measured.app.showOnMap(growthList.itemAtIndex(index).node)
                    }
                    EmptyState {
                        id: noGrowth

                        anchors.fill: parent
                        anchors.margins: Theme.cardPadding
                        iconPath: Theme.icons.up
                        objectName: "overview.nogrowth"
                        sentence: measured.app.scan.growth.sentence
                        statement: measured.app.scan.growth.statement
                        visible: growthList.count === 0
                    }
                }
            }
            Card {
                id: ways

                readonly property int cell: measured.columns === 1 ? width : Math.floor(width / 3)

                height: waysGrid.implicitHeight
                width: parent.width

                Grid {
                    id: waysGrid

                    columns: measured.columns === 1 ? 1 : 3
                    x: -1
                    y: -1

                    WayOn {
                        id: large

                        count: measured.app.largeOld.countText
                        first: true
                        iconPath: Theme.icons.large
                        objectName: "overview.large"
                        summary: measured.app.largeOld.summary
                        text: qsTr("Large and Old")
                        unknown: qsTr("not looked for")
                        width: ways.cell

                        onActiveFocusChanged: if (activeFocus) page.reveal(large)
                        onClicked: measured.app.screen = "large"
                    }
                    WayOn {
                        id: duplicates

                        count: measured.app.duplicates.countText
                        iconPath: Theme.icons.duplicates
                        objectName: "overview.duplicates"
                        summary: measured.app.duplicates.summary
                        text: qsTr("Duplicates")
                        unknown: qsTr("not searched")
                        width: ways.cell

                        onActiveFocusChanged: if (activeFocus) page.reveal(duplicates)
                        onClicked: measured.app.screen = "duplicates"
                    }
                    WayOn {
                        id: tidy

                        count: measured.app.tidy.countText
                        iconPath: Theme.icons.tidy
                        objectName: "overview.tidy"
                        summary: measured.app.tidy.summary
                        text: qsTr("Tidy")
                        unknown: qsTr("not looked for")
                        width: ways.cell

                        onActiveFocusChanged: if (activeFocus) page.reveal(tidy)
                        onClicked: measured.app.screen = "tidy"
                    }
                }
            }
        }
    }

    UnreadableSheet {
        id: sheet

        app: measured.app
    }
}
