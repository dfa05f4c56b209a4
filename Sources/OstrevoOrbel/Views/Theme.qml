pragma Singleton

import QtQuick

QtObject {
    /// Set by the window from the application's appearance.
    property bool dark: false

    readonly property color window: dark ? "#131819" : "#F2F5F5"
    readonly property color ink: dark ? "#E7EDEC" : "#15211F"
}
