import QtQuick
import OstrevoOrbel

/// What the text or the list below it is about.
ThemedText {
    Accessible.name: text
    Accessible.role: Accessible.Heading
    bold: true
}
