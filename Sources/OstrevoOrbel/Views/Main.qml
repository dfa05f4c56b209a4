import QtQuick
import QtQuick.Dialogs
import QtQuick.Templates as T
import OstrevoOrbel

/// The window: a sidebar beside the screen, a status line below both.
T.ApplicationWindow {
    id: window

    required property AppModel app
    /// The page that stands in place of a screen: "settings", "help", "changes" of the overview, or none.
    property string page: ""

    readonly property bool narrow: width < Theme.narrowBelow
    readonly property ScreenFrame shownScreen: (app.moves.reporting && page === "" ? report.item
        // There are none before they are counted, and nothing but the count tells of them.
        : page !== "" ? pages.count > 0 ? (pages.itemAt(window.pageNames.indexOf(page)) as Loader).item : null
        : screens.count > app.screenIndex ? (screens.itemAt(app.screenIndex) as Loader).item : null) as ScreenFrame
    readonly property var pageViews: ({ settings: "SettingsView", help: "AboutView", changes: "ChangesView" })
    readonly property var pageNames: Object.keys(pageViews)
    /// Why the screen that is being opened gets the focus, where that is known; else the mark of the focus shows where
    /// it showed before.
    property int openingReason: -1

    /// Wanted closed while something moves: closes as soon as it may.
    property bool closeWanted: false
    readonly property bool busy: app.moves.deleting || app.moves.puttingBack

    // What other programs did meanwhile shows in the figures.
    onActiveChanged: {
        if (!active)
            return;
        app.disk.refreshVolume();
        // While it was not, nothing held the focus.
        Qt.callLater(window.holdFocus);
    }
    onActiveFocusItemChanged: Qt.callLater(window.holdFocus)
    onBusyChanged: {
        if (busy || !closeWanted)
            return;
        closeWanted = false;
        close();
    }
    onClosing: closing => {
        if (!busy)
            return;
        closing.accepted = false;
        closeWanted = true;
        app.moves.stopAfterThisItem();
        app.putBack.stopAfterThisItem();
    }

    function showScreen(screen: string, reason: int): void {
        openingReason = reason;
        app.screen = screen;
        openingReason = -1;
    }
    function showPage(name: string, reason: int): void {
        openingReason = reason;
        page = name;
        openingReason = -1;
        window.takeFocus(reason);
    }
    function takeFocus(reason: int): void {
        // The onboarding, and what has opened over the screen, keep the focus for as long as they are there.
        if (shownScreen && !app.scan.needsFullDiskAccess && !isOverScreen(activeFocusItem))
            shownScreen.takeFocus(reason);
    }
    function focusContent(): void {
        window.takeFocus(openingReason >= 0 ? openingReason
            : isMarked(activeFocusItem) ? Qt.ShortcutFocusReason : Qt.OtherFocusReason);
    }
    function isMarked(item: var): bool {
        return item?.visualFocus === true || item?.showsFocus === true || item?.focusShown === true;
    }
    function isOverScreen(item: Item): bool {
        for (let at = item; at; at = at.parent) {
            if (at === content.overlay)
                return true;
        }
        return false;
    }
    /// What is hidden, disabled or gone has left the focus where no key is of use, or acts unseen: the keyboard goes on
    /// with the screen.
    function holdFocus(): void {
        const item = activeFocusItem;
        const isAScope = item instanceof FocusScope || item instanceof Loader;
        if (active && (!item?.parent || !item.visible || !item.enabled || item === contentItem || isAScope))
            window.focusContent();
    }

    color: Theme.window
    height: 900
    minimumHeight: 560
    minimumWidth: 800
    objectName: "main"
    title: "Ostrevo Vanto"
    visible: true
    width: 1440

    LayoutMirroring.childrenInherit: true
    LayoutMirroring.enabled: Theme.mirrored

    onShownScreenChanged: window.focusContent()

    Component.onCompleted: window.takeFocus(Qt.TabFocusReason)

    Connections {
        target: window.activeFocusItem

        // What is disabled loses the focus by itself.
        function onVisibleChanged(): void {
            Qt.callLater(window.holdFocus);
        }
    }

    Binding {
        property: "dark"
        target: Theme
        value: window.app.appearance.dark
    }
    Binding {
        property: "reducedMotion"
        target: Theme
        value: window.app.appearance.reducedMotion
    }
    Binding {
        property: "highContrast"
        target: Theme
        value: window.app.appearance.highContrast
    }

    // A Loader of Qt 6.4 cannot make what is bound to its context, so nothing in this file is.
    // qmllint disable unqualified
    component Place: Loader {
        required property string view
        required property bool shown

        // A screen is made when it is first shown, and kept.
        function make(): void {
            if (shown && status === Loader.Null)
                setSource(view + ".qml", { app: window.app });
        }

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: putBackStrip.bottom
        visible: shown

        Component.onCompleted: make()
        onShownChanged: make()
    }
    // qmllint enable unqualified

    // The frame. What is declared first comes first for Tab: the screen, then the sidebar.
    Item {
        anchors.fill: parent
        visible: !window.app.scan.needsFullDiskAccess

        FocusScope {
            id: content

            // Of the window, which has no such attached property itself.
            readonly property Item overlay: T.Overlay.overlay

            anchors.bottom: statusLine.top
            anchors.left: sidebar.right
            anchors.right: parent.right
            anchors.top: parent.top
            focus: true

            Banner {
                id: notice

                action: window.app.notice.action || qsTr("Close")
                closable: window.app.notice.action !== ""
                height: visible ? implicitHeight : 0
                objectName: "notice"
                radius: 0
                statement: window.app.notice.text
                tone: closable ? Banner.Ok : Banner.Warn
                visible: window.app.notice.text !== ""
                width: parent.width

                onClosed: window.app.notice.dismiss()
                onTriggered: {
                    if (closable)
                        window.app.notice.act();
                    else
                        window.app.notice.dismiss();
                }
            }
            // That what is shown is of earlier, with the way to measure where the screen has none.
            Banner {
                id: kept

                readonly property bool foreign: window.app.scan.foreign
                readonly property string screen: window.app.screen

                action: foreign && ["map", "large"].includes(screen) ? qsTr("Measure a Folder…")
                    : !foreign && ["duplicates", "tidy"].includes(screen) ? qsTr("Measure Again") : ""
                anchors.top: notice.bottom
                explanation: window.app.scan.keptSentence
                height: visible ? implicitHeight : 0
                objectName: "kept"
                radius: 0
                statement: window.app.scan.keptStatement
                tone: Banner.Info
                visible: statement !== "" && (foreign || window.page === "" && !window.app.moves.reporting
                    && !["uninstall", "journal"].includes(screen))
                width: parent.width

                onTriggered: {
                    if (foreign)
                        window.app.chooseFolderAndScan();
                    else
                        window.app.scan.measureAgain();
                }
            }
            // The journal's screen shows it in its own place.
            PutBackStrip {
                id: putBackStrip

                anchors.top: kept.bottom
                height: visible ? implicitHeight : 0
                objectName: "putBack.strip"
                putBack: window.app.putBack
                visible: putBack.statement !== "" && (window.page !== "" || window.app.moves.reporting
                    || window.app.screen !== "journal")
                width: parent.width
            }
            // qmllint disable unqualified
            Repeater {
                id: screens

                model: sidebar.all

                Place {
                    required property int index
                    required property var modelData

                    shown: window.page === "" && !window.app.moves.reporting && window.app.screenIndex === index
                    view: modelData.view
                }
            }
            Repeater {
                id: pages

                model: window.pageNames

                Place {
                    required property string modelData

                    shown: window.page === modelData
                    view: window.pageViews[modelData]
                }
            }
            Loader {
                id: report

                active: window.app.moves.reporting
                anchors.bottom: parent.bottom
                anchors.top: putBackStrip.bottom
                visible: window.page === ""
                width: parent.width

                sourceComponent: ReportView {
                    app: window.app

                    onClosed: window.app.moves.closeReport()
                    onExportWanted: exportDialog.ask()
                }
            }
            // qmllint enable unqualified
        }
        Sidebar {
            id: sidebar

            anchors.bottom: statusLine.top
            anchors.left: parent.left
            anchors.top: parent.top
            app: window.app
            objectName: "sidebar"
            page: window.page
            rail: window.narrow
            width: rail ? Theme.railWidth : Theme.sidebarWidth

            onPageWanted: page => window.showPage(page, Qt.OtherFocusReason)
            onScreenWanted: screen => window.showScreen(screen, Qt.OtherFocusReason)
        }
        StatusLine {
            id: statusLine

            anchors.bottom: parent.bottom
            measured: window.app.scan.measuredText !== "" ? window.app.scan.measuredText : qsTr("Nothing measured yet")
            words: window.app.moves.progressText || window.app.rescan.text
                || (window.app.putBack.running ? qsTr("Putting back…") : "")
                || window.shownScreen?.status || qsTr("Vanto never uploads anything. The journal stays on this computer.")
            width: parent.width
        }
    }
    Loader {
        active: window.app.scan.needsFullDiskAccess
        anchors.fill: parent
        focus: active

        sourceComponent: OnboardingView {
            app: window.app // qmllint disable unqualified
        }
    }

    DropOverlay {
        anchors.fill: parent
        enabled: !window.app.scan.needsFullDiskAccess && !window.app.moves.confirming
        flow: window.app.drop
    }
    ConfirmSheet {
        app: window.app
    }
    Announcements {
        app: window.app
    }
    SaveDialog {
        id: exportDialog

        app: window.app
        proposal: "Vanto report"
        title: qsTr("Export the report")

        onAccepted: window.app.moves.exportReport(selectedFile)
    }
    FolderDialog {
        id: folderDialog

        acceptLabel: qsTr("Choose")

        onAccepted: window.app.scan.scanFolder(selectedFolder)
    }
    FileDialog {
        id: scanFileDialog

        property bool compares: false

        acceptLabel: compares ? qsTr("Compare") : qsTr("Open")
        title: compares ? qsTr("Compare with a scan that was kept") : qsTr("Open a scan that was kept")

        onAccepted: {
            if (compares)
                window.app.compare.openFile(selectedFile);
            else
                window.app.kept.openFile(selectedFile);
        }
    }

    Connections {
        target: window.app

        function onFolderWanted(prompt: string, startFolder: url): void {
            folderDialog.title = prompt;
            folderDialog.currentFolder = startFolder;
            folderDialog.open();
        }
        function onScanFileWanted(startFolder: url, toCompare: bool): void {
            scanFileDialog.compares = toCompare;
            scanFileDialog.currentFolder = startFolder;
            scanFileDialog.open();
        }
        function onAboutWanted(): void {
            window.showPage("help", Qt.OtherFocusReason);
        }
        function onChangesWanted(): void {
            window.showPage("changes",
                window.isMarked(window.activeFocusItem) ? Qt.ShortcutFocusReason : Qt.OtherFocusReason);
        }
        function onExclusionsWanted(): void {
            const marked = window.isMarked(window.activeFocusItem);
            window.showPage("settings", Qt.OtherFocusReason);
            (window.shownScreen as SettingsView)?.showExclusions(marked);
        }
        // Another screen, or the same one again, in place of a page or a report.
        function onOpened(): void {
            window.page = "";
            window.app.moves.closeReport();
            window.focusContent();
        }
    }
    Connections {
        target: window.app.scan

        function onFullDiskAccessChanged(): void {
            window.takeFocus(Qt.OtherFocusReason);
        }
    }

    Instantiator {
        model: sidebar.all

        Shortcut {
            required property int index
            required property var modelData

            // qmllint disable unqualified
            enabled: !window.app.scan.needsFullDiskAccess
            sequence: "Ctrl+" + (index + 1)

            onActivated: window.showScreen(modelData.name, Qt.ShortcutFocusReason)
            // qmllint enable unqualified
        }
    }
    Shortcut {
        enabled: !window.app.scan.running && !window.app.scan.needsFullDiskAccess
        sequence: "Ctrl+O"

        onActivated: window.app.chooseFolderAndScan()
    }
    Shortcut {
        enabled: !window.app.scan.running && !window.app.scan.needsFullDiskAccess
        sequence: "Ctrl+Shift+O"

        onActivated: window.app.chooseScanToOpen()
    }
    Shortcut {
        enabled: !window.app.scan.running && !window.app.scan.foreign
        sequence: "F5"

        onActivated: window.app.scan.measureAgain()
    }
    Shortcut {
        enabled: window.app.scan.running || window.app.rescan.running
        sequence: "Esc"

        onActivated: {
            window.app.scan.stop();
            window.app.rescan.stop();
        }
    }
    Shortcut {
        enabled: !window.app.moves.confirming && !window.app.moves.deleting && !window.app.scan.needsFullDiskAccess
        sequence: "Ctrl+Z"

        onActivated: window.app.putBack.putBackLast()
    }
    Shortcut {
        sequence: "Ctrl+,"

        onActivated: window.showPage("settings", Qt.ShortcutFocusReason)
    }
    Shortcut {
        sequence: "F1"

        onActivated: window.showPage("help", Qt.ShortcutFocusReason)
    }
    Shortcut {
        sequences: ["F6", "Shift+F6"]

        onActivated: {
            if (content.activeFocus)
                sidebar.takeFocus();
            else
                window.takeFocus(Qt.TabFocusReason);
        }
    }
}
