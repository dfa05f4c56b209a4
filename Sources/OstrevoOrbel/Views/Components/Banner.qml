import QtQuick
import QtQuick.Layouts
import OstrevoOrbel

/// A statement across the content, with an explanation and at most one button.
Rectangle {
    id: banner

    enum Tone { Ok, Warn, Error, Info }

    property int tone: Banner.Warn
    property string statement: ""
    property string explanation: ""
    property string action: ""
    /// Whether it can be closed beside that.
    property bool closable: false

    readonly property color foreground: [Theme.ok, Theme.warn, Theme.error, Theme.accent][tone]

    signal triggered()
    signal closed()

    Accessible.description: explanation
    Accessible.name: statement
    Accessible.role: Accessible.AlertMessage
    border.color: [Theme.okSoft, Theme.warnLine, Theme.errorLine, Theme.accentLine][tone]
    color: [Theme.okSoft, Theme.warnSoft, Theme.errorSoft, Theme.accentSoft][tone]
    implicitHeight: Math.max(Theme.bannerHeight, row.implicitHeight + 12)
    implicitWidth: row.implicitWidth + 32
    radius: Theme.controlRadius

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        spacing: 12

        PathIcon {
            Layout.preferredHeight: Theme.icon
            Layout.preferredWidth: Theme.icon
            color: banner.foreground
            path: [Theme.icons.check, Theme.icons.warn, Theme.icons.warn, Theme.icons.info][banner.tone]
        }
        Flow {
            Layout.alignment: Qt.AlignVCenter
            Layout.fillWidth: true
            spacing: 4

            ThemedText {
                bold: true
                text: banner.statement
                width: Math.min(implicitWidth, parent.width)
                wrapMode: Text.Wrap
            }
            ThemedText {
                color: Theme.text2
                text: banner.explanation
                visible: text !== ""
                width: Math.min(implicitWidth, parent.width)
                wrapMode: Text.Wrap
            }
        }
        PushButton {
            controlHeight: Theme.smallButtonHeight
            objectName: banner.objectName + ".action"
            text: banner.action
            visible: banner.action !== ""

            onClicked: banner.triggered()
        }
        IconButton {
            iconPath: Theme.icons.close
            objectName: banner.objectName + ".close"
            text: qsTr("Close")
            visible: banner.closable

            onClicked: banner.closed()
        }
    }
}
