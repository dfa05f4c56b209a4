import QtQuick
import OstrevoOrbel

/// All applications, to choose one from.
FocusScope {
    id: pane

    required property AppsFlow flow
    property int padding: 16
    required property ItemActions actions
    readonly property alias table: table

    /// An application was chosen to be looked at, where the list alone is in sight.
    signal opened()

    function follow(): void {
        table.currentIndex = pane.flow.selectedRow;
        table.selectedRow = pane.flow.selectedRow;
    }
    Component.onCompleted: pane.follow()

    Connections {
        target: pane.flow

        function onChanged(): void {
            if (table.selectedRow !== pane.flow.selectedRow)
                pane.follow();
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    TableHead {
        id: head

        anchors.left: parent.left
        anchors.right: parent.right
        inset: pane.padding

        first: HeadCell {
            objectName: "uninstall.byName"
            order: pane.flow.list.bySize ? HeadCell.None
                : pane.flow.list.descending ? HeadCell.Descending : HeadCell.Ascending
            text: qsTr("App")

            onClicked: pane.flow.sortBy(false)
        }
        cells: HeadCell {
            alignment: Text.AlignRight
            objectName: "uninstall.bySize"
            order: !pane.flow.list.bySize ? HeadCell.None
                : pane.flow.list.descending ? HeadCell.Descending : HeadCell.Ascending
            text: qsTr("Size on disk")

            onClicked: pane.flow.sortBy(true)
        }
    }
    ItemTable {
        id: table

        Accessible.name: qsTr("Apps")
        anchors.bottom: foot.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        focus: true
        keepsPlaces: false
        menu: menu
        model: pane.flow.list
        objectName: "uninstall.apps"
        section.property: "section"

        // A section of Qt 6.4 cannot be what is bound to its context, so nothing in this file is.
        // qmllint disable unqualified
        delegate: ItemRow {
            id: row

            Accessible.description: detail
            detail: model.identity
            facts: [model.source, size].join(" · ")
            gap: 8
            iconWidth: Theme.px(28)
            inset: pane.padding
            nameElide: Text.ElideRight
            nameGap: 12
            opens: 1
            showsKind: false
            words: [name, model.section === "removed" ? qsTr("removed") : "", model.source, size].filter(
                text => text !== "").join(", ")

            icon: AppIcon {
                anchors.verticalCenter: parent.verticalCenter
                initial: row.model.initial
                picture: row.model.picture
            }
            cells: [
                Badge {
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.model.source
                    visible: text !== ""
                    width: Math.min(implicitWidth, row.width * 0.34)
                },
                ItemCell {
                    columnWidth: Theme.px(62)
                    text: row.size
                }
            ]
        }
        section.delegate: Item {
            id: heading

            required property string section
            // A list sets the visibility of its headings itself, and keeps those that it does not need.
            readonly property bool shown: section === "removed" && pane.flow.removedText !== ""

            height: shown ? Theme.tableHeadHeight : 0
            width: ListView.view.width

            Rectangle {
                anchors.fill: parent
                color: Theme.sunk
                visible: heading.shown

                Hairline {
                    edge: Qt.TopEdge
                }
                Hairline {}
                Heading {
                    anchors.left: parent.left
                    anchors.leftMargin: pane.padding
                    anchors.right: sum.left
                    anchors.rightMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    objectName: "uninstall.removed"
                    text: qsTr("Left by removed applications")
                }
                SmallText {
                    id: sum

                    anchors.right: parent.right
                    anchors.rightMargin: pane.padding
                    anchors.verticalCenter: parent.verticalCenter
                    elide: Text.ElideNone
                    text: pane.flow.removedText
                }
            }
        }
        // qmllint enable unqualified

        onActivated: pane.opened()
        onSelectedRowChanged: pane.flow.select(selectedRow)
    }
    ListState {
        action: qsTr("Show All")
        anchors.fill: table
        anchors.leftMargin: pane.padding
        anchors.rightMargin: pane.padding
        iconPath: Theme.icons.search
        objectName: "uninstall.noMatch"
        primary: false
        statement: qsTr("No app matches “%1”").arg(pane.flow.findText)
        visible: pane.flow.loaded && !pane.flow.anyShown

        onTriggered: pane.flow.findText = ""
    }
    Item {
        id: foot

        anchors.bottom: parent.bottom
        height: Theme.tableHeadHeight
        width: parent.width

        Hairline {
            edge: Qt.TopEdge
        }
        SmallText {
            anchors.left: parent.left
            anchors.leftMargin: pane.padding
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            objectName: "uninstall.summary"
            text: pane.flow.loading ? qsTr("%1 · reading again…").arg(pane.flow.shownText) : pane.flow.shownText
        }
    }

    ItemMenu {
        id: menu

        actions: pane.actions
        objectName: "uninstall.appMenu"
        openable: false
        tickable: false
    }
}
