import QtQuick
import OstrevoOrbel

/// Where the space of the disk went, in figures that add up.
ScreenFrame {
    id: view

    readonly property string phase: app.scan.running ? "scanning" : app.scan.rootUnreadable ? "unreadable"
        : app.scan.measuredAny ? "measured" : app.kept.opening ? "opening" : "first"

    firstFocus: (phase === "scanning" ? stop : body.item?.firstFocus ?? body.item) as Item
    objectName: "overview"
    scope: app.scan.scopeText
    scopeLink: phase === "measured" && !app.scan.foreign ? app.exclusions.leftOutText : ""
    status: app.scan.running ? app.scan.scopeText : body.item?.status ?? ""
    title: qsTr("Overview")

    onScopeLinkClicked: app.showExclusions()

    /// A measured disk is shown from its top, without a mark on the list that has the focus.
    function takeFocus(reason: int): void {
        const isQuiet = phase === "measured" && reason === Qt.ShortcutFocusReason;
        focusPlace.forceActiveFocus(isQuiet ? Qt.OtherFocusReason : reason);
    }

    actions: [
        FindButton {
            app: view.app
            objectName: "overview.find"
            reachable: view.visible && visible
            visible: view.phase === "measured"
        },
        RecentButton {
            app: view.app
            iconOnly: view.narrow
            visible: view.phase !== "scanning" && recent.any
        },
        PushButton {
            iconOnly: view.narrow
            iconPath: view.narrow ? Theme.icons.folders : ""
            objectName: "overview.choose"
            text: qsTr("Choose Folder…")
            variant: view.app.scan.foreign ? PushButton.Primary : PushButton.Plain
            visible: view.phase === "measured" || view.phase === "unreadable"

            onClicked: view.app.chooseFolderAndScan()
        },
        PushButton {
            Spoken.name: qsTr("Measure again")
            iconOnly: view.narrow
            iconPath: Theme.icons.rescan
            objectName: "overview.again"
            text: qsTr("Measure Again")
            variant: PushButton.Primary
            visible: (view.phase === "measured" || view.phase === "unreadable") && !view.app.scan.foreign

            onClicked: view.app.scan.measureAgain()
        },
        PushButton {
            id: stop

            enabled: !view.app.scan.stopping
            iconPath: Theme.icons.stop
            keys: "Esc"
            objectName: "overview.stop"
            ringAlways: true
            text: view.app.scan.stopping ? qsTr("Stopping…") : qsTr("Stop")
            visible: view.phase === "scanning"

            onClicked: view.app.scan.stop()
        }
    ]

    Loader {
        id: body

        anchors.fill: parent
        focus: true
        sourceComponent: view.phase === "scanning" ? scanning : view.phase === "measured" ? measured
            : view.phase === "unreadable" ? unreadable : view.phase === "first" ? first : null
    }

    // A Loader of Qt 6.4 cannot make what is bound to its context.
    // qmllint disable unqualified
    Component {
        id: first

        OverviewFirstRun {
            app: view.app
            padding: view.padding
        }
    }
    Component {
        id: scanning

        OverviewScanning {
            app: view.app
            padding: view.padding
        }
    }
    Component {
        id: measured

        OverviewMeasured {
            app: view.app
            columns: view.narrow ? 1 : view.middling ? 2 : 3
            padding: view.padding
        }
    }
    Component {
        id: unreadable

        ListState {
            app: view.app
            objectName: "overview.unreadable"
        }
    }
    // qmllint enable unqualified
}
