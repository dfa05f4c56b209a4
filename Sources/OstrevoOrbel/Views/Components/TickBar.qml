import QtQuick
import QtQuick.Layouts
import QtQuick.Window
import OstrevoOrbel

/// What is ticked, and the way to review it. Nothing moves from here.
Rectangle {
    id: bar

    /// What the words below are taken from; a screen without them gives its own words.
    property Ticks ticks: null
    property int count: ticks?.count ?? 0
    property string statement: ticks?.statement ?? ""
    property string sum: ticks?.bytes.text ?? ""
    property string remark: ticks?.remark ?? ""
    property string reviewText: ticks?.reviewText ?? ""
    property bool reviewable: true
    property bool narrow: false

    signal reviewed()
    signal cleared()

    // A report tells itself what has become of what was ticked.
    function sayTicks(): void {
        if (bar.parent?.visible)
            heard.say(bar.count > 0 ? bar.Accessible.name : qsTr("Nothing is ticked"));
    }

    Accessible.description: remark
    Accessible.name: [statement, sum].join(" · ")
    Accessible.role: Accessible.StatusBar
    clip: true
    color: Theme.surface
    height: count > 0 ? Theme.tickBarHeight : 0
    visible: count > 0 || height > 0 // its key works before it has grown

    onCountChanged: Qt.callLater(bar.sayTicks)

    Behavior on height {
        NumberAnimation {
            duration: Theme.tickBarTime
            easing.type: Theme.easing
        }
    }

    Announcement {
        id: heard

        // The bar is gone as soon as nothing is ticked.
        parent: bar.Window.contentItem
    }
    Hairline {
        edge: Qt.TopEdge
    }
    // Also while nothing is ticked, which is said then.
    Shortcut {
        enabled: bar.parent?.visible ?? false
        sequence: "Del"

        onActivated: bar.reviewed()
    }
    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: bar.narrow ? Theme.pagePaddingNarrow : Theme.pagePadding
        anchors.rightMargin: anchors.leftMargin
        spacing: 12

        Rectangle {
            Layout.preferredHeight: Theme.tick
            Layout.preferredWidth: Theme.tick
            color: Theme.commit
            radius: Theme.tickRadius

            Icon {
                anchors.centerIn: parent
                color: Theme.commitText
                size: Theme.px(14)
                path: Theme.icons.check
                stroke: 2.2
            }
        }
        Sentence {
            ThemedText {
                bold: true
                text: bar.statement
            }
            ThemedText {
                color: Theme.text2
                text: " · " + bar.sum
            }
        }
        SmallText {
            Layout.fillWidth: true
            Layout.leftMargin: 8
            color: Theme.text3
            text: bar.remark
        }
        PushButton {
            objectName: bar.objectName + ".clear"
            text: qsTr("Clear Ticks")

            onClicked: {
                bar.cleared();
                bar.ticks?.clear();
            }
        }
        PushButton {
            enabled: bar.reviewable
            objectName: bar.objectName + ".review"
            text: bar.reviewText
            variant: PushButton.Commit

            onClicked: bar.reviewed()
        }
    }
}
