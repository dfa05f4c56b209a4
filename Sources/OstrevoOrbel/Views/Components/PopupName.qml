import QtQml
import QtQuick
import QtQuick.Templates as T
import OstrevoOrbel // qmllint disable unused-imports

/// Names a popup to a screen reader, which sees the item that Qt puts the content into. What is imported has `Spoken`.
QtObject {
    id: name

    required property T.Popup popup
    property string text: ""
    property int role: Accessible.Dialog

    readonly property list<Binding> bindings: [
        Binding {
            property: "Spoken.name"
            target: name.popup.contentItem.parent
            value: name.text
        },
        Binding {
            property: "Spoken.role"
            target: name.popup.contentItem.parent
            value: name.role
        }
    ]
}
