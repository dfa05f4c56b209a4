import QtQuick
import OstrevoOrbel

/// What explains or belongs to what stands beside it.
ThemedText {
    color: Theme.text2
    role: ThemedText.Small
}
