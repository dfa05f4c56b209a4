pragma ComponentBehavior: Bound

import QtQuick
import OstrevoOrbel

/// What grew most since an earlier scan, which scan that is, and the way to all that changed.
Card {
    id: card

    required property AppModel app
    required property ItemMenu menu
    readonly property GrowthModel growth: app.compare.growth
    readonly property bool compared: app.compare.scan >= 0
    /// As high as it has to be for all that it shows.
    readonly property int need: headHeight + foot.height + (list.count > 0
        ? 14 + Theme.compactRowHeight * list.count : nothing.implicitHeight + 48)

    title: qsTr("Grew most")

    aside: SinceMenu {
        app: card.app
        implicitHeight: Theme.smallButtonHeight
        // Where the words have no room, the day alone.
        mostValue: card.width - 2 * Theme.cardPadding - Theme.px(160)
        narrow: card.compared && card.width < Theme.px(330)
        objectName: "overview.since"
        width: visible ? implicitWidth : 0
    }

    ItemTable {
        id: list

        Accessible.name: [card.title, qsTr("since %1").arg(card.growth.since)].join(" ")
        // Whole rows only.
        height: Theme.compactRowHeight * Math.min(count,
            Math.floor((card.height - card.headHeight - foot.height - 10) / Theme.compactRowHeight))
        menu: card.menu
        model: card.growth.folders
        objectName: "overview.growth"
        scrolls: false
        selects: false
        visible: count > 0
        width: parent.width
        y: 6

        delegate: GrowthRow {
            key: card.app.actions.keyOf(model.node)
        }

        onActivated: row => card.app.actions.showOnMap(itemAt(row).key)
    }
    ListState {
        id: nothing

        anchors.bottom: foot.top
        anchors.left: parent.left
        anchors.margins: Theme.cardPadding
        anchors.right: parent.right
        anchors.top: parent.top
        iconPath: Theme.icons.up
        objectName: "overview.nogrowth"
        sentence: card.growth.sentence
        statement: card.growth.statement
        visible: list.count === 0
    }
    Item {
        id: foot

        anchors.bottom: parent.bottom
        height: visible ? Theme.px(40) : 0
        visible: card.compared
        width: parent.width

        Hairline {
            edge: Qt.TopEdge
            soft: true
        }
        LinkButton {
            anchors.left: parent.left
            anchors.leftMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            objectName: "overview.changes"
            text: qsTr("All Changes")

            onClicked: card.app.showChanges()
        }
    }
}
