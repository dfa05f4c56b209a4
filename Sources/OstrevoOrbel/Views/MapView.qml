import QtQuick
import OstrevoOrbel

/// What was measured, as a map.
ScreenFrame {
    required property AppModel app

    objectName: "map"
    scope: app.scopeText
    title: qsTr("Map")
}
