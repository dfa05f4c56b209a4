import QtQuick
import OstrevoOrbel

/// Text that goes on in as many lines as it takes, as wide as what it is in.
ThemedText {
    color: Theme.text2
    width: parent.width
    wrapMode: Text.Wrap
}
