import QtQuick
import OstrevoOrbel

/// The selected application: what it is, and all that would go with it.
FocusScope {
    id: pane

    required property AppsFlow flow
    property bool narrow: false
    property int padding: 24

    readonly property appFacts facts: flow.selected
    /// What the status line says of the row with the focus.
    readonly property string status: table.selectedRow >= 0 ? flow.shownPath(table.selectedRow) : ""

    signal backWanted()

    function openMenu(row: int, item: Item, x: real, y: real): void {
        const shown = item as LeftoverRow;
        menu.item = row;
        menu.itemName = shown.title;
        menu.itemFacts = shown.size;
        menu.refusal = shown.refusal;
        menu.ticked = flow.isTicked(row);
        menu.popup(item, x, y);
    }
    function sectionTitle(section: string): string {
        return section === "app" ? qsTr("The app")
            : section === "leftovers" ? qsTr("Leftovers and why they belong to it")
            : qsTr("An administrator would have to remove");
    }
    function sectionRemark(section: string): string {
        return section === "app" ? "" : section === "leftovers" ? qsTr("exact matches only") : qsTr("shown only");
    }

    Keys.onEscapePressed: event => {
        event.accepted = pane.narrow;
        if (pane.narrow)
            pane.backWanted();
    }

    Connections {
        target: pane.flow.leftovers

        function onModelReset(): void {
            table.selectedRow = -1;
            table.currentRow = -1;
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    EmptyState {
        anchors.centerIn: parent
        height: implicitHeight
        iconPath: Theme.icons.uninstall
        objectName: "uninstall.noSelection"
        sentence: qsTr("What it would leave behind is listed here, with the evidence.")
        statement: qsTr("Choose an app")
        visible: !pane.facts.valid
        width: parent.width - 2 * pane.padding
    }
    Item {
        id: head

        height: visible ? Math.max(Theme.px(100), names.implicitHeight + 32) : 0
        visible: pane.facts.valid
        width: parent.width

        IconButton {
            id: back

            anchors.verticalCenter: parent.verticalCenter
            iconPath: Theme.icons.left
            objectName: "uninstall.back"
            text: qsTr("Back")
            visible: pane.narrow
            width: visible ? implicitWidth : 0
            x: visible ? 8 : 0

            onClicked: pane.backWanted()
        }
        AppIcon {
            id: icon

            anchors.left: back.right
            anchors.leftMargin: pane.narrow ? 8 : pane.padding
            anchors.verticalCenter: parent.verticalCenter
            initial: pane.facts.initial
            picture: pane.facts.icon
            size: Theme.px(56)
        }
        Column {
            id: names

            anchors.left: icon.right
            anchors.leftMargin: 16
            anchors.right: sums.left
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            spacing: 4

            ThemedText {
                Accessible.name: text
                Accessible.role: Accessible.Heading
                bold: true
                objectName: "uninstall.name"
                role: ThemedText.Title
                text: pane.facts.name
                width: parent.width
            }
            Row {
                spacing: 6
                width: parent.width

                ThemedText {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.text2
                    text: pane.facts.version
                    visible: text !== ""
                    width: Math.min(implicitWidth, parent.width * 0.35)
                }
                Badge {
                    anchors.verticalCenter: parent.verticalCenter
                    text: pane.facts.source
                    visible: text !== ""
                    width: Math.min(implicitWidth, parent.width * 0.4)
                }
                ThemedText {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.text2
                    objectName: "uninstall.running"
                    text: "· " + pane.facts.runningText
                    visible: !pane.narrow && pane.facts.runningText !== ""
                    width: Math.min(implicitWidth, parent.width * 0.3)
                }
            }
        }
        Column {
            id: sums

            anchors.right: parent.right
            anchors.rightMargin: pane.padding
            anchors.verticalCenter: parent.verticalCenter
            visible: pane.facts.total !== ""
            width: Math.ceil(Math.max(total.implicitWidth, parts.visible ? parts.implicitWidth : 0))

            ThemedText {
                id: total

                anchors.right: parent.right
                bold: true
                elide: Text.ElideNone
                objectName: "uninstall.total"
                role: ThemedText.Title
                text: pane.facts.total
            }
            ThemedText {
                id: parts

                anchors.right: parent.right
                color: Theme.text2
                elide: Text.ElideNone
                role: ThemedText.Small
                text: pane.facts.parts
                visible: !pane.narrow
            }
        }
        Rectangle {
            anchors.bottom: parent.bottom
            color: Theme.line
            height: 1
            width: parent.width
        }
    }
    LoadingState {
        anchors.left: parent.left
        anchors.leftMargin: pane.padding
        anchors.top: head.bottom
        anchors.topMargin: pane.padding
        objectName: "uninstall.planning"
        statement: qsTr("Looking for what belongs to %1").arg(pane.facts.name)
        visible: pane.flow.planning && table.count === 0
        width: Math.min(Theme.px(300), parent.width - 2 * pane.padding)
    }
    RowTable {
        id: table

        Accessible.name: qsTr("What goes with %1").arg(pane.facts.name)
        Accessible.role: Accessible.List
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        find: (text, row) => pane.flow.leftovers.findFrom(text, row)
        focus: true
        model: pane.flow.leftovers
        objectName: "uninstall.leftovers"
        section.property: "section"
        visible: pane.facts.valid

        onCopyWanted: row => pane.flow.copyLeftover(row)
        onMenuWanted: (row, item, x, y) => pane.openMenu(row, item, x, y)
        onTickWanted: row => pane.flow.toggleTick(row)

        delegate: LeftoverRow {
            focused: table.showsFocus && ListView.isCurrentItem
            narrow: pane.narrow
            padding: pane.padding
            selected: table.selectedRow === index
            width: ListView.view.width

            onChosen: table.choose(index)
            onMenuWanted: (x, y) => pane.openMenu(index, this, x, y)
            onTickWanted: {
                table.choose(index);
                pane.flow.toggleTick(index);
            }
        }
        // Between the application and its leftovers stands what has to be done first.
        section.delegate: Column {
            id: heading

            required property string section

            width: ListView.view.width

            AppNote {
                facts: pane.facts
                visible: heading.section === "leftovers" && facts.warning !== ""
                width: parent.width - 2 * pane.padding
                x: pane.padding

                onQuitWanted: pane.flow.askToQuit()
            }
            Rectangle {
                Accessible.name: title.text
                Accessible.role: Accessible.Heading
                color: Theme.sunk
                height: Theme.tableHeadHeight
                width: parent.width

                Rectangle {
                    color: Theme.line
                    height: 1
                    visible: heading.section !== "app"
                    width: parent.width
                }
                Rectangle {
                    anchors.bottom: parent.bottom
                    color: Theme.line
                    height: 1
                    width: parent.width
                }
                ThemedText {
                    id: title

                    anchors.left: parent.left
                    anchors.leftMargin: pane.padding
                    anchors.right: remark.left
                    anchors.rightMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    bold: true
                    text: pane.sectionTitle(heading.section)
                }
                ThemedText {
                    id: remark

                    anchors.right: parent.right
                    anchors.rightMargin: pane.padding
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.text2
                    elide: Text.ElideNone
                    role: ThemedText.Small
                    text: pane.sectionRemark(heading.section)
                }
            }
        }
    }

    ItemMenu {
        id: menu

        objectName: "uninstall.menu"
        zoomable: false

        onCopyWanted: row => pane.flow.copyLeftover(row)
        onOpenWanted: row => pane.flow.openLeftover(row)
        onShowWanted: row => pane.flow.showLeftover(row)
        onTickWanted: row => pane.flow.toggleTick(row)
    }
}
