pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Dialogs
import OstrevoOrbel

/// What can be chosen; a change applies at once.
ScreenFrame {
    id: view

    readonly property KeptScanSettings keeping: app.keeping
    readonly property var appearances: ["system", "light", "dark"]

    firstFocus: page
    objectName: "settings"
    scope: qsTr("Changes apply at once")
    status: qsTr("Settings")
    title: qsTr("Settings")

    /// Brings the folders that are left out of measuring into sight.
    function showExclusions(marked: bool): void {
        addFolder.forceActiveFocus(marked ? Qt.ShortcutFocusReason : Qt.OtherFocusReason);
        page.show(exclusions);
    }

    onVisibleChanged: if (visible) keeping.refresh()
    Component.onCompleted: keeping.refresh()

    ScrollPage {
        id: page

        anchors.fill: parent
        columnWidth: Theme.settingsWidth
        focus: true
        padding: view.padding
        spacing: 8

        Heading {
            text: qsTr("Appearance")
            width: parent.width
        }
        Card {
            width: parent.width

            SettingRow {
                explanation: qsTr("System follows the desktop’s setting.")
                label: qsTr("Light or dark")
                last: true
                width: parent.width

                control: Segmented {
                    current: view.appearances.indexOf(view.app.appearance.choice)
                    focus: true
                    name: qsTr("Light or dark")
                    objectName: "settings.appearance"
                    options: [qsTr("System"), qsTr("Light"), qsTr("Dark")]

                    onChosen: index => view.app.appearance.choice = view.appearances[index]
                }
            }
        }
        Gap {
            height: 12
        }
        Heading {
            text: qsTr("Low-disk alert")
            width: parent.width
        }
        Card {
            width: parent.width

            Column {
                width: parent.width

                SettingRow {
                    explanation: view.app.alert.explanation
                    objectName: "settings.alertRow"
                    label: qsTr("Notify me when free space is low")
                    width: parent.width

                    control: ToggleSwitch {
                        Spoken.name: qsTr("Notify me when free space is low")
                        checked: view.app.alert.enabled
                        objectName: "settings.alert"

                        onToggled: view.app.alert.enabled = checked
                    }
                }
                SettingRow {
                    label: qsTr("Below")
                    width: parent.width

                    control: DropDown {
                        Accessible.name: qsTr("Below")
                        currentIndex: view.app.alert.choice
                        enabled: view.app.alert.enabled
                        model: view.app.alert.thresholds
                        objectName: "settings.threshold"

                        onActivated: index => view.app.alert.choice = index
                    }
                }
                Item {
                    height: sample.height + 28
                    width: parent.width

                    SmallText {
                        id: sampleLabel

                        anchors.left: parent.left
                        anchors.leftMargin: 20
                        anchors.verticalCenter: parent.verticalCenter
                        color: Theme.text3
                        text: qsTr("What you will see")
                        width: Math.min(Theme.px(120), parent.width * 0.3)
                        wrapMode: Text.Wrap
                    }
                    Rectangle {
                        id: sample

                        anchors.left: sampleLabel.right
                        anchors.leftMargin: 20
                        anchors.right: parent.right
                        anchors.rightMargin: 20
                        anchors.verticalCenter: parent.verticalCenter
                        border.color: Theme.line
                        color: Theme.sunk
                        height: words.height + 24
                        radius: Theme.cardRadius

                        Icon {
                            anchors.left: parent.left
                            anchors.leftMargin: 14
                            color: Theme.accent
                            path: Theme.icons.bell
                            y: 14
                        }
                        Column {
                            id: words

                            anchors.left: parent.left
                            anchors.leftMargin: 14 + Theme.icon + 12
                            anchors.right: parent.right
                            anchors.rightMargin: 12
                            y: 12

                            ThemedText {
                                bold: true
                                text: view.app.alert.sampleTitle
                                width: parent.width
                                wrapMode: Text.Wrap
                            }
                            Paragraph {
                                text: view.app.alert.sampleBody
                            }
                        }
                    }
                }
            }
        }
        Gap {
            height: 12
        }
        Heading {
            text: qsTr("Left out of measuring")
            width: parent.width
        }
        Card {
            id: exclusions

            objectName: "settings.exclusions"
            width: parent.width

            Column {
                width: parent.width

                Repeater {
                    model: view.app.exclusions.folders

                    SettingRow {
                        id: folder

                        required property int index
                        required property string path

                        isPath: true
                        label: path
                        width: parent?.width ?? 0

                        control: PushButton {
                            Spoken.name: qsTr("Remove %1").arg(folder.path)
                            objectName: "settings.include." + folder.index
                            text: qsTr("Remove")

                            onClicked: {
                                // The row goes with what it has.
                                if (visualFocus)
                                    addFolder.forceActiveFocus(Qt.TabFocusReason);
                                view.app.exclusions.remove(folder.index);
                            }
                        }
                    }
                }
                SettingRow {
                    explanation: qsTr("A folder that is left out is not entered: its space counts as not measured, and it is in no list. Measuring such a folder itself is still possible.")
                    label: view.app.exclusions.any ? qsTr("Leave another folder out") : qsTr("No folder is left out")
                    last: true
                    objectName: "settings.addRow"
                    width: parent.width

                    control: PushButton {
                        id: addFolder

                        iconOnly: view.narrow
                        iconPath: view.narrow ? Theme.icons.plus : ""
                        objectName: "settings.addFolder"
                        text: qsTr("Add Folder…")

                        onClicked: folderDialog.open()
                    }
                }
            }
        }
        Gap {
            height: 12
        }
        Heading {
            text: qsTr("Kept scans")
            width: parent.width
        }
        Card {
            width: parent.width

            Column {
                width: parent.width

                SettingRow {
                    explanation: qsTr("The window opens with the last scan, and what grew is told from those before. They stay on this computer; older ones are thinned out.")
                        + (view.keeping.any ? "\n" + qsTr("%1: %2 on disk.").arg(view.keeping.count).arg(view.keeping.size) : "")
                    label: qsTr("Keep scans")
                    objectName: "settings.keepRow"
                    width: parent.width

                    control: ToggleSwitch {
                        id: keep

                        Spoken.name: qsTr("Keep scans")
                        checked: view.keeping.keeps
                        objectName: "settings.keep"

                        onToggled: {
                            if (checked)
                                view.keeping.keep();
                            else if (view.keeping.any)
                                clearing.open();
                            else
                                view.keeping.keepNone();
                        }
                    }
                }
                SettingRow {
                    explanation: qsTr("What was shown last stays in use meanwhile.")
                    label: qsTr("Measure again when the window opens")
                    last: true
                    width: parent.width

                    control: ToggleSwitch {
                        Spoken.name: qsTr("Measure again when the window opens")
                        checked: view.keeping.measuresAtStart
                        enabled: view.keeping.keeps
                        objectName: "settings.measureAtStart"

                        onToggled: view.keeping.measuresAtStart = checked
                    }
                }
            }
        }
        Gap {
            height: 12
        }
        Heading {
            text: qsTr("General")
            width: parent.width
        }
        Card {
            width: parent.width

            Column {
                width: parent.width

                SettingRow {
                    label: qsTr("Open Ostrevo Vanto at login")
                    width: parent.width

                    control: ToggleSwitch {
                        Spoken.name: qsTr("Open Ostrevo Vanto at login")
                        checked: view.app.alert.openAtLogin
                        objectName: "settings.login"

                        onToggled: view.app.alert.openAtLogin = checked
                    }
                }
                SettingRow {
                    explanation: qsTr("Vanto never uploads anything. The journal stays on this computer.")
                        + "\n" + view.app.journal.path
                    label: qsTr("Journal")
                    last: true
                    width: parent.width

                    control: PushButton {
                        iconOnly: view.narrow
                        iconPath: view.narrow ? Theme.icons.folders : ""
                        objectName: "settings.journal"
                        text: qsTr("Show in File Manager")

                        onClicked: view.app.journal.showFile()
                    }
                }
            }
        }
        Gap {
            height: 12
        }
        Paragraph {
            color: Theme.text3
            text: qsTr("Ostrevo Vanto %1 · %2").arg(view.app.version).arg(view.app.motto)
            role: ThemedText.Small
        }
    }

    ClearScansSheet {
        id: clearing

        keeping: view.keeping

        onClosed: {
            // A switch that was turned shows its setting again.
            keep.checked = Qt.binding(() => view.keeping.keeps);
            keep.forceActiveFocus(Qt.OtherFocusReason);
        }
    }
    FolderDialog {
        id: folderDialog

        acceptLabel: qsTr("Leave Out")
        currentFolder: view.app.homeFolder
        title: qsTr("Leave this folder out of measuring")

        onAccepted: view.app.exclusions.addFolder(selectedFolder)
    }
}
