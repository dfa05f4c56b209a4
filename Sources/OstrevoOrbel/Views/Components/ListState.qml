pragma ComponentBehavior: Bound

import QtQuick
import OstrevoOrbel

/// What stands where a list would be: that nothing was measured yet, what is being looked for, what could not be read,
/// or that nothing was found. A glyph, a statement, one sentence, and at most one button; while it looks, three grey
/// bars that do not move.
FocusScope {
    id: state

    /// For a list of what was measured: says by itself why there is nothing measured, with `unmeasured` for what the
    /// list would show, and `waiting` for when.
    property AppModel app: null
    property string unmeasured: ""
    property string waiting: qsTr("The list appears when everything has been measured.")
    /// The list is of this computer's disk, and not of a scan that was made elsewhere.
    property bool needsDisk: false
    /// What is being looked for or read; empty when nothing is.
    property string looking: ""

    property string iconPath: ""
    property string statement: ""
    property string sentence: ""
    property string action: ""
    property bool primary: true
    property bool failed: false
    /// From the edges to the words while it looks.
    property int padding: 20

    readonly property bool scanning: app !== null && app.scan.running
    readonly property bool unreadable: app !== null && app.scan.rootUnreadable
    readonly property bool elsewhere: needsDisk && app !== null && app.scan.foreign
    /// Whether there is a measurement that a list can be of.
    readonly property bool measured: app === null || app.scan.measuredAny && !unreadable && !elsewhere

    /// The button that belongs to `action`.
    signal triggered()

    function act(): void {
        if (scanning)
            app.scan.stop();
        else if (unreadable || elsewhere)
            app.chooseFolderAndScan();
        else if (!measured)
            app.scan.scanDisk();
        else
            triggered();
    }

    Accessible.description: looking === "" ? words.text : ""
    Accessible.name: looking || title.text
    Accessible.role: Accessible.Grouping
    implicitHeight: looking === "" ? column.implicitHeight : bars.implicitHeight
    implicitWidth: Theme.px(440)

    Column {
        id: bars

        spacing: 12
        visible: state.looking !== ""
        width: Math.min(Theme.px(440), parent.width - 2 * state.padding)
        x: Theme.along(state.padding, width, parent.width)
        y: state.padding

        ThemedText {
            bold: true
            text: state.looking
            width: parent.width
        }
        Repeater {
            model: [0.7, 0.52, 0.6]

            Row {
                id: bar

                anchors.left: parent.left
                required property real modelData

                spacing: 12

                Rectangle {
                    color: Theme.lineSoft
                    height: 28
                    radius: Theme.controlRadius
                    width: 28
                }
                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Theme.lineSoft
                    height: 8
                    width: (bars.width - 40) * bar.modelData
                }
            }
        }
    }
    Column {
        id: column

        anchors.centerIn: parent
        visible: state.looking === ""
        width: Math.min(parent.width, Theme.px(440))

        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            color: state.failed || state.unreadable ? Theme.error : Theme.text3
            size: Theme.px(24)
            path: state.unreadable ? Theme.icons.warn : state.iconPath
            stroke: 1.2
        }
        Gap {
            height: 12
        }
        ThemedText {
            id: title

            bold: true
            horizontalAlignment: Text.AlignHCenter
            text: state.scanning ? state.app.scan.scopeText
                : state.unreadable ? qsTr("%1 could not be read").arg(state.app.scan.root)
                : state.elsewhere ? qsTr("This needs a folder of this computer")
                : !state.measured ? qsTr("Not measured yet") : state.statement
            width: parent.width
            wrapMode: Text.Wrap
        }
        Paragraph {
            id: words

            horizontalAlignment: Text.AlignHCenter
            text: state.scanning ? state.waiting
                : state.unreadable ? qsTr("Nothing in it can be shown.")
                : state.elsewhere ? qsTr("What is shown was measured elsewhere.")
                : !state.measured ? state.unmeasured : state.sentence
            topPadding: 4
            visible: text !== ""
        }
        Gap {
            height: 16
            visible: button.visible
        }
        PushButton {
            id: button

            anchors.horizontalCenter: parent.horizontalCenter
            controlHeight: Theme.smallButtonHeight
            focus: visible
            objectName: state.objectName + ".action"
            text: state.scanning ? qsTr("Stop")
                : state.unreadable ? qsTr("Choose Folder…")
                : state.elsewhere ? qsTr("Measure a Folder…")
                : !state.measured ? qsTr("Measure This Disk") : state.action
            variant: state.primary && !state.scanning || !state.measured && !state.scanning ? PushButton.Primary
                : PushButton.Plain
            visible: text !== ""

            onClicked: state.act()
        }
    }
}
