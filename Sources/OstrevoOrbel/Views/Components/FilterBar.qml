import QtQuick
import OstrevoOrbel

/// The ground of what decides which rows a screen lists.
Item {
    implicitHeight: Theme.filterBarHeight

    Hairline {}
}
