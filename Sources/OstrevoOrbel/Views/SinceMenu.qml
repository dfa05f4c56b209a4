import QtQuick
import OstrevoOrbel

/// The earlier scan that the one that is shown is compared with: a kept one, or one in a file.
ChipMenu {
    id: chip

    required property AppModel app
    readonly property bool compared: app.compare.scan >= 0

    about: compared ? qsTr("Since") : qsTr("Compare with…")
    choice: app.compare.scan
    choices: app.compare.scans
    lastAction: qsTr("A Scan File…")
    menuWidth: Theme.px(320)
    value: app.compare.growth.since
    visible: app.compare.possible

    onActed: app.chooseScanToCompare()
    onChosen: choice => app.compare.scan = choice
}
