import QtQuick
import OstrevoOrbel

/// What the text or the list below it is about.
ThemedText {
    Accessible.role: Accessible.Heading
    bold: true
}
