import QtQuick

/// Has a screen reader say words when they change, wherever the focus is. Nothing of it can be seen.
Item {
    id: announcement

    property string words: ""
    /// For how long they must stay the same, in milliseconds: what is typed changes them letter by letter.
    property int after: 0
    /// What is being said.
    property string said: ""

    function say(words: string): void {
        if (words === "")
            return;
        // A notification is said when it appears.
        visible = false;
        said = words;
        visible = true;
        gone.restart();
    }

    Accessible.name: said
    Accessible.role: Accessible.Notification
    height: 1
    visible: false
    width: 1

    onWordsChanged: settled.restart()

    Timer {
        id: settled

        interval: announcement.after

        onTriggered: announcement.say(announcement.words)
    }
    Timer {
        id: gone

        interval: 4000

        onTriggered: announcement.visible = false
    }
}
