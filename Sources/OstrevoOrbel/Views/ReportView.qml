pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Window
import OstrevoOrbel

/// What the last batch did, in place of the screen that it began on.
ScreenFrame {
    id: screen

    readonly property MoveReport report: app.moves.report
    readonly property bool whole: !report.untrustworthy
    readonly property bool nothingMoved: report.moved.count === 0
    readonly property bool fine: whole && !nothingMoved && !report.putBackFailed

    signal closed()
    signal exportWanted()

    firstFocus: done
    objectName: "report"
    scope: report.scope
    status: report.times
    title: qsTr("Report")

    actions: [
        PushButton {
            iconOnly: screen.narrow
            iconPath: Theme.icons.exporting
            objectName: "report.export"
            text: qsTr("Export…")

            onClicked: screen.exportWanted()
        },
        PushButton {
            id: done

            objectName: "report.done"
            ringAlways: true
            text: qsTr("Done")
            variant: PushButton.Primary

            onClicked: screen.closed()
        }
    ]

    component Rows: Card {
        id: rows

        property RoleList entries

        visible: entries.count > 0
        width: parent.width

        Column {
            Accessible.name: rows.title
            Accessible.role: Accessible.List
            width: parent.width

            Repeater {
                model: rows.entries

                ItemRow {
                    id: row

                    readonly property bool skipped: model.stage === "skipped"
                    readonly property string outcome: skipped ? note : model.stage === "moved" ? qsTr("In the Trash")
                        : model.stage === "putBack" ? qsTr("Put back") : qsTr("Not put back")

                    Accessible.description: skipped ? RefusalAdvice.on(note) : note
                    detail: model.path
                    last: index === rows.entries.count - 1
                    lineHeight: Math.max(Theme.rowHeight, namesHeight + 12)
                    words: [name, detail, outcome, size].filter(word => word !== "").join(", ")

                    below: Paragraph {
                        color: row.skipped ? Theme.text2 : Theme.warn
                        text: row.skipped ? RefusalAdvice.on(row.note) : row.note
                        visible: text !== ""
                        role: ThemedText.Small
                    }
                    cells: [
                        Badge {
                            anchors.verticalCenter: parent.verticalCenter
                            iconPath: row.model.stage === "moved" ? Theme.icons.trash
                                : row.model.stage === "putBack" ? Theme.icons.putBack : Theme.icons.warn
                            text: row.outcome
                            tone: row.model.stage === "moved" ? Badge.Accent
                                : row.model.stage === "putBack" ? Badge.Ok : Badge.Warn
                            width: Math.min(implicitWidth, row.width * 0.6)
                        },
                        ItemCell {
                            columnWidth: Theme.px(92)
                            text: row.size
                            visible: !row.skipped
                        }
                    ]
                }
            }
        }
    }

    // Where something is measured, Esc stops that.
    Shortcut {
        enabled: screen.visible && !screen.app.scan.running && !screen.app.rescan.running
        sequence: "Esc"

        onActivated: screen.closed()
    }
    Keys.onPressed: event => page.scrollBy(event)

    ScrollPage {
        id: page

        anchors.fill: parent
        centred: true
        objectName: "report.page"
        padding: screen.padding
        spacing: Theme.cardGap

        Repeater {
            model: screen.report.stops

            Banner {
                required property string modelData

                objectName: "report.stop"
                statement: modelData
                tone: screen.report.untrustworthy ? Banner.Error : Banner.Warn
                width: parent.width
            }
        }
        Card {
            width: parent.width

            Item {
                implicitHeight: Math.max(words.height, glyph.height) + 48 + (screen.narrow ? buttons.height + 12 : 0)
                width: parent.width

                Rectangle {
                    id: glyph

                    anchors.left: parent.left
                    anchors.leftMargin: 24
                    color: screen.fine ? Theme.okSoft : Theme.warnSoft
                    height: Theme.px(44)
                    radius: height / 2
                    width: height
                    y: 24

                    Icon {
                        anchors.centerIn: parent
                        color: screen.fine ? Theme.ok : Theme.warn
                        size: Theme.px(20)
                        path: screen.fine ? Theme.icons.check : Theme.icons.warn
                    }
                }
                Column {
                    id: words

                    anchors.left: glyph.right
                    anchors.leftMargin: 20
                    anchors.right: screen.narrow ? parent.right : buttons.left
                    anchors.rightMargin: 20
                    y: 24

                    Heading {
                        objectName: "report.headline"
                        role: ThemedText.Title
                        text: screen.report.headline
                        width: parent.width
                        wrapMode: Text.Wrap
                    }
                    Paragraph {
                        objectName: "report.note"
                        text: screen.report.note
                    }
                }
                Row {
                    id: buttons

                    anchors.right: parent.right
                    anchors.rightMargin: 24
                    spacing: 12
                    y: screen.narrow ? parent.height - height - 16 : (parent.height - height) / 2

                    PushButton {
                        enabled: screen.report.canPutBack && screen.app.putBack.ready
                        iconPath: Theme.icons.putBack
                        objectName: "report.putBack"
                        text: qsTr("Put Back All")

                        onClicked: screen.app.moves.putBackAll()
                    }
                    PushButton {
                        iconPath: Theme.icons.trash
                        objectName: "report.openTrash"
                        text: qsTr("Open Trash")

                        onClicked: screen.app.disk.openTrash()
                    }
                }
            }
        }
        Rows {
            entries: screen.report.moved
            objectName: "report.moved"
            remark: screen.report.movedSize
            title: screen.report.movedTitle
        }
        Rows {
            entries: screen.report.skipped
            objectName: "report.skipped"
            remark: screen.whole ? qsTr("left where it is") : ""
            title: qsTr("Skipped (%1)").arg(entries.count)
        }
        Card {
            visible: screen.report.unchecked !== ""
            width: parent.width

            Item {
                implicitHeight: Theme.px(46)
                width: parent.width

                Icon {
                    id: info

                    anchors.left: parent.left
                    anchors.leftMargin: 16
                    anchors.verticalCenter: parent.verticalCenter
                    path: Theme.icons.info
                }
                ThemedText {
                    anchors.left: info.right
                    anchors.leftMargin: 12
                    anchors.right: parent.right
                    anchors.rightMargin: 16
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.text2
                    objectName: "report.unchecked"
                    text: screen.report.unchecked
                }
            }
        }
    }
}
