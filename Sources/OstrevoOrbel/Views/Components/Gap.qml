import QtQuick

/// Room between two items of a column.
Item {
    width: 1
}
