import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel

/// The head of a column. A click sorts by it where it can be sorted by.
T.AbstractButton {
    id: cell

    enum Order { None, Ascending, Descending }

    property int order: HeadCell.None
    property bool sortable: true
    property int alignment: Text.AlignLeft

    readonly property string sorting: order === HeadCell.Ascending ? qsTr("sorted ascending")
        : order === HeadCell.Descending ? qsTr("sorted descending") : ""

    Accessible.description: sorting
    Spoken.role: Accessible.ColumnHeader
    enabled: sortable
    focusPolicy: sortable ? Qt.TabFocus : Qt.NoFocus
    hoverEnabled: true
    implicitHeight: Theme.tableHeadHeight
    implicitWidth: contentItem.implicitWidth

    ButtonKeys.enterClicks: true

    background: Item {
        FocusRing {
            anchors.margins: 2
            controlRadius: 2
            visible: cell.visualFocus
        }
    }
    onSortingChanged: if (activeFocus) heard.say(sorting)

    Announcement {
        id: heard
    }

    contentItem: SmallText {
        bold: cell.order !== HeadCell.None
        color: cell.order !== HeadCell.None || cell.hovered ? Theme.ink : Theme.text2
        horizontalAlignment: cell.alignment
        text: cell.order === HeadCell.None ? cell.text
            : cell.text + (cell.order === HeadCell.Ascending ? " ↑" : " ↓")
    }
}
