import QtQuick
import OstrevoOrbel

/// The icon of an application, or the letter that its name begins with.
Item {
    id: icon

    property int size: Theme.px(28)
    property string picture: ""
    property string initial: ""

    implicitHeight: size
    implicitWidth: size

    Image {
        id: image

        // What cannot be drawn comes as a single dot.
        readonly property bool drawn: status === Image.Ready && implicitWidth > 1
        readonly property int pixels: Math.ceil(icon.size * Screen.devicePixelRatio)

        anchors.fill: parent
        asynchronous: true
        fillMode: Image.PreserveAspectFit
        smooth: true
        source: icon.picture
        // At once: for each of its two numbers the icon would be drawn again.
        sourceSize: Qt.size(pixels, pixels)
        visible: drawn
    }
    Rectangle {
        anchors.fill: parent
        border.color: Theme.control
        color: Theme.sunk
        radius: icon.size > Theme.px(40) ? Theme.cardRadius : Theme.controlRadius
        visible: !image.drawn

        ThemedText {
            anchors.centerIn: parent
            bold: true
            color: Theme.text2
            font.pixelSize: Math.round(icon.size * 0.43)
            lineHeight: icon.size
            text: icon.initial
        }
    }
}
