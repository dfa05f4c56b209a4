import OstrevoOrbel

/// In the menus of what can be measured: shows a scan that was kept instead.
MenuEntry {
    required property AppModel app

    iconPath: Theme.icons.open
    keys: qsTr("Ctrl Shift O")
    text: qsTr("Open Scan…")

    onTriggered: app.chooseScanToOpen()
}
