import QtQuick
import OstrevoOrbel

/// What a screen reader says of the window wherever the focus is: that something has ended, and what it came to; while
/// something goes on, how far it is, every five seconds.
Item {
    id: announcements

    required property AppModel app
    readonly property string progress: app.moves.deleting ? app.moves.progressText
        : app.scan.running ? app.scan.measuredText : app.duplicates.running ? app.duplicates.comparedText : ""
    // What is moved later changes the figures, too, and is said by itself.
    readonly property bool measuring: app.scan.running
    readonly property bool searching: app.duplicates.running
    property string measured: ""
    property string found: ""

    onMeasuringChanged: measured = measuring ? "" : app.scan.measuredText
    onSearchingChanged: found = searching ? "" : app.duplicates.summary

    Announcement {
        id: progress

    }
    Timer {
        interval: 5000
        repeat: true
        running: announcements.progress !== ""

        onTriggered: progress.say(announcements.progress)
    }
    Announcement {
        words: announcements.measured
    }
    Announcement {
        words: announcements.found
    }
    Announcement {
        readonly property MoveReport report: announcements.app.moves.report

        words: !announcements.app.moves.reporting ? ""
            : [report.headline, report.note, report.skipped.count > 0 ? qsTr("Skipped (%1)").arg(report.skipped.count) : ""]
                .join(" ").trim()
    }
    Announcement {
        words: [announcements.app.putBack.statement, announcements.app.putBack.explanation].join(" ").trim()
    }
    Announcement {
        words: announcements.app.notice.text
    }
}
