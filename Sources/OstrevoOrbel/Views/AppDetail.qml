import QtQuick
import OstrevoOrbel

/// The selected application: what it is, and all that would go with it.
FocusScope {
    id: pane

    required property ItemActions actions
    required property AppsFlow flow
    property bool narrow: false
    property int padding: 24

    readonly property alias table: table
    readonly property appFacts facts: flow.selected
    /// What the status line says of the row with the focus.
    readonly property string status: table.selectedRow >= 0 ? table.status : ""

    signal backWanted()

    function sectionTitle(section: string): string {
        return section === "app" ? qsTr("The app")
            : section === "leftovers" ? pane.facts.removed ? qsTr("What it left and why it is taken for that")
                : qsTr("Leftovers and why they belong to it")
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

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    Hairline {
        edge: Qt.LeftEdge
        visible: !pane.narrow
        z: 1
    }
    ListState {
        anchors.fill: parent
        anchors.leftMargin: pane.padding
        anchors.rightMargin: pane.padding
        iconPath: Theme.icons.uninstall
        objectName: "uninstall.noSelection"
        sentence: qsTr("What it would leave behind is listed here, with the evidence.")
        statement: qsTr("Choose an app")
        visible: !pane.facts.valid
    }
    Item {
        id: head

        height: visible ? Math.max(Theme.px(100), names.implicitHeight + 32) : 0
        visible: pane.facts.valid
        width: parent.width

        IconButton {
            id: back

            anchors.left: parent.left
            anchors.leftMargin: visible ? 8 : 0
            anchors.verticalCenter: parent.verticalCenter
            iconPath: Theme.icons.back
            objectName: "uninstall.back"
            text: qsTr("Back")
            visible: pane.narrow
            width: visible ? implicitWidth : 0

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

            Heading {
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
            SmallText {
                id: parts

                anchors.right: parent.right
                elide: Text.ElideNone
                text: pane.facts.parts
                visible: !pane.narrow
            }
        }
        Hairline {}
    }
    ListState {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        looking: qsTr("Looking for what belongs to %1").arg(pane.facts.name)
        objectName: "uninstall.planning"
        padding: pane.padding
        visible: pane.flow.planning && table.count === 0
    }
    ItemTable {
        id: table

        Accessible.name: qsTr("What goes with %1").arg(pane.facts.name)
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        focus: true
        menu: menu
        model: pane.flow.leftovers
        objectName: "uninstall.leftovers"
        section.property: "section"
        visible: pane.facts.valid

        onAllWanted: ticked => {
            if (ticked)
                pane.flow.tickAll();
            else
                pane.flow.ticks.clear();
        }
        onTickWanted: row => pane.flow.toggleTick(row)

        // A section of Qt 6.4 cannot be what is bound to its context, so nothing in this file is.
        // qmllint disable unqualified
        delegate: ItemRow {
            id: row

            readonly property string remark: refusal || note
            /// Beside the size where there is room, else in place of the second line.
            readonly property bool showsBadge: listed && remark !== "" && !pane.narrow

            detail: !pane.narrow ? model.detail : refused ? refusal
                : [note, model.detail].filter(words => words !== "").join(" · ")
            inset: pane.padding
            lineHeight: Theme.tallRowHeight
            listed: model.listed
            status: model.path
            tickGap: 13
            tickName: "uninstall.tick." + name
            ticks: true
            words: listed ? [name, size, model.detail].filter(text => text !== "").join(", ") : name

            cells: [
                Badge {
                    anchors.verticalCenter: parent.verticalCenter
                    iconPath: row.refused ? Theme.icons.lock : Theme.icons.info
                    text: row.remark
                    visible: row.showsBadge
                    width: Math.min(implicitWidth, row.width * 0.42)
                },
                ItemCell {
                    color: row.refused ? Theme.text2 : Theme.ink
                    columnWidth: Theme.px(62)
                    text: row.size
                    visible: row.listed
                }
            ]
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
                onStayWanted: pane.flow.dismissRemoved()
            }
            Rectangle {
                color: Theme.sunk
                height: Theme.tableHeadHeight
                width: parent.width

                Hairline {
                    edge: Qt.TopEdge
                    visible: heading.section !== "app"
                }
                Hairline {}
                Heading {
                    id: title

                    anchors.left: parent.left
                    anchors.leftMargin: pane.padding
                    anchors.right: remark.left
                    anchors.rightMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    text: pane.sectionTitle(heading.section)
                }
                SmallText {
                    id: remark

                    anchors.right: parent.right
                    anchors.rightMargin: pane.padding
                    anchors.verticalCenter: parent.verticalCenter
                    elide: Text.ElideNone
                    text: pane.sectionRemark(heading.section)
                }
            }
        }
        // qmllint enable unqualified
    }

    ItemMenu {
        id: menu

        actions: pane.actions
        objectName: "uninstall.menu"
    }
}
