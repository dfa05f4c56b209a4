import QtQuick
import OstrevoOrbel

/// What stands in place of a list that is still being read: what is read, and three grey bars that do not move.
Item {
    id: state

    property string statement: ""

    Accessible.name: statement
    Accessible.role: Accessible.StaticText
    implicitHeight: column.implicitHeight
    implicitWidth: Theme.px(300)

    Column {
        id: column

        spacing: 12
        width: parent.width

        ThemedText {
            bold: true
            text: state.statement
            width: parent.width
        }
        Repeater {
            model: [0.7, 0.52, 0.6]

            Row {
                id: bar

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
                    width: (column.width - 40) * bar.modelData
                }
            }
        }
    }
}
