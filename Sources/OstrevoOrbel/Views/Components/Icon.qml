import QtQuick
import OstrevoOrbel

/// A glyph in its usual size and colour.
PathIcon {
    property int size: Theme.icon

    color: Theme.text2
    height: size
    width: size
}
