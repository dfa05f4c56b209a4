#pragma once

#include "AppModel/AlertSettings.h"
#include "AppModel/AppearanceSettings.h"
#include "AppModel/AppEnvironment.h"
#include "AppModel/AppsFlow.h"
#include "AppModel/ChangesFlow.h"
#include "AppModel/CompareFlow.h"
#include "AppModel/DiskState.h"
#include "AppModel/DropFlow.h"
#include "AppModel/DuplicatesFlow.h"
#include "AppModel/ExclusionFlow.h"
#include "AppModel/ItemActions.h"
#include "AppModel/JournalFlow.h"
#include "AppModel/KeptScanFlow.h"
#include "AppModel/KeptScanSettings.h"
#include "AppModel/LargeOldFlow.h"
#include "AppModel/MapModel.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/PutBackFlow.h"
#include "AppModel/RecentFolders.h"
#include "AppModel/RescanFlow.h"
#include "AppModel/ScanFlow.h"
#include "AppModel/SystemPlacesFlow.h"
#include "AppModel/TidyFlow.h"
#include "AppModel/TreeEdits.h"
#include "Util/AppVersion.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

namespace orbel {

/// The one object behind every screen: it makes the services and the flows, and ties them together. A flow is
/// what the user does in one place; it holds what the screens show of that.
///
/// Made, used and destroyed on the main thread; what takes long runs on threads of its own, which deliver
/// there. Screens get it as a property named `app` and call one intent for each action of the user.
class AppModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, made by the application.")

    /// "overview", "map", "large", "duplicates", "uninstall", "tidy" or "journal".
    /// Other words change nothing.
    Q_PROPERTY(QString screen READ screenName WRITE setScreenName NOTIFY screenChanged)
    /// The same as a number, in the order of the sidebar.
    Q_PROPERTY(int screenIndex READ screenIndex NOTIFY screenChanged)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString motto READ motto CONSTANT)
    Q_PROPERTY(QUrl homeFolder READ homeFolder CONSTANT)

    Q_PROPERTY(orbel::Notice* notice READ notice CONSTANT)
    Q_PROPERTY(orbel::DiskState* disk READ disk CONSTANT)
    Q_PROPERTY(orbel::ScanFlow* scan READ scan CONSTANT)
    /// Scans that were kept, shown in its place.
    Q_PROPERTY(orbel::KeptScanFlow* kept READ kept CONSTANT)
    Q_PROPERTY(orbel::KeptScanSettings* keeping READ keeping CONSTANT)
    /// One folder of it, measured again.
    Q_PROPERTY(orbel::RescanFlow* rescan READ rescan CONSTANT)
    /// What changed since an earlier scan.
    Q_PROPERTY(orbel::CompareFlow* compare READ compare CONSTANT)
    /// All of it, row by row.
    Q_PROPERTY(orbel::ChangesFlow* changes READ changes CONSTANT)
    /// Outside the home, freed by a command.
    Q_PROPERTY(orbel::SystemPlacesFlow* system READ system CONSTANT)
    /// What is left out of measuring.
    Q_PROPERTY(orbel::ExclusionFlow* exclusions READ exclusions CONSTANT)
    Q_PROPERTY(orbel::RecentFolders* recent READ recent CONSTANT)
    Q_PROPERTY(orbel::DropFlow* drop READ drop CONSTANT)
    Q_PROPERTY(orbel::MapModel* map READ map CONSTANT)
    Q_PROPERTY(orbel::LargeOldFlow* largeOld READ largeOld CONSTANT)
    Q_PROPERTY(orbel::DuplicatesFlow* duplicates READ duplicates CONSTANT)
    Q_PROPERTY(orbel::TidyFlow* tidy READ tidy CONSTANT)
    Q_PROPERTY(orbel::AppsFlow* apps READ apps CONSTANT)
    /// What the menu of an item offers, in every list.
    Q_PROPERTY(orbel::ItemActions* actions READ actions CONSTANT)
    /// What moves to the Trash, and back.
    Q_PROPERTY(orbel::MoveFlow* moves READ moves CONSTANT)
    Q_PROPERTY(orbel::PutBackFlow* putBack READ putBack CONSTANT)
    Q_PROPERTY(orbel::JournalFlow* journal READ journal CONSTANT)
    Q_PROPERTY(orbel::AlertSettings* alert READ alert CONSTANT)
    Q_PROPERTY(orbel::AppearanceSettings* appearance READ appearance CONSTANT)

public:
    explicit AppModel(AppEnvironment environment, QObject* parent = nullptr);

    // Intents of the screens.

    /// Lets the user choose a folder to measure.
    Q_INVOKABLE void chooseFolderAndScan();
    /// Lets the user choose the file of a scan to look at.
    Q_INVOKABLE void chooseScanToOpen() { Q_EMIT scanFileWanted(homeFolder(), false); }
    /// Lets the user choose the file of a scan that the one that is shown is compared with.
    Q_INVOKABLE void chooseScanToCompare() { Q_EMIT scanFileWanted(homeFolder(), true); }
    Q_INVOKABLE void showAbout() { Q_EMIT aboutWanted(); }
    /// Shows what is left out of measuring, where that is chosen.
    Q_INVOKABLE void showExclusions() { Q_EMIT exclusionsWanted(); }
    /// Shows all that changed since an earlier scan.
    Q_INVOKABLE void showChanges() { Q_EMIT changesWanted(); }
    Q_INVOKABLE void copyText(const QString& text) { environment_.desktop->copyText(text); }
    /// Shows a node of the current tree on the map.
    Q_INVOKABLE void showOnMap(quint32 node);
    /// Shows on the map, from its top, only what is of a kind, or has an extension.
    Q_INVOKABLE void showKindOnMap(int kind);
    Q_INVOKABLE void showExtensionOnMap(const QString& extension);

    // State.

    const LaunchOptions& options() const { return environment_.options; }
    const SafetyPolicy& policy() const { return *policy_; }
    Diagnostics* diagnostics() const { return environment_.diagnostics.get(); }
    Screen screen() const { return shown_.screen(); }
    void setScreen(Screen screen) {
        shown_.set(screen);
        Q_EMIT opened();
    }
    QString screenName() const { return shown_.name(); }
    void setScreenName(const QString& name);
    int screenIndex() const { return static_cast<int>(screen()); }
    /// Whether what the shown screen lists is still being found.
    bool isShownScreenBusy() const;
    QString version() const { return textOf(appVersion()); }
    QUrl homeFolder() const;
    QString motto() const { return QStringLiteral("Measure first. Change safely. Always reversible."); }

    Notice* notice() { return &notice_; }
    DiskState* disk() { return &disk_; }
    ScanFlow* scan() { return &scan_; }
    KeptScanFlow* kept() { return &kept_; }
    KeptScanSettings* keeping() { return &keeping_; }
    CompareFlow* compare() { return &compare_; }
    ChangesFlow* changes() { return &changes_; }
    SystemPlacesFlow* system() { return &system_; }
    RecentFolders* recent() { return &recent_; }
    DropFlow* drop() { return &drop_; }
    TreeEdits& treeEdits() { return treeEdits_; }
    RescanFlow* rescan() { return &rescan_; }
    ExclusionFlow* exclusions() { return &exclusions_; }
    MapModel* map() { return &map_; }
    LargeOldFlow* largeOld() { return &largeOld_; }
    DuplicatesFlow* duplicates() { return &duplicates_; }
    TidyFlow* tidy() { return &tidy_; }
    AppsFlow* apps() { return &apps_; }
    ItemActions* actions() { return &actions_; }
    MoveFlow* moves() { return &moves_; }
    PutBackFlow* putBack() { return &putBack_; }
    JournalFlow* journal() { return &journal_; }
    AlertSettings* alert() { return &alert_; }
    AppearanceSettings* appearance() { return &appearance_; }

Q_SIGNALS:
    void screenChanged();
    /// A screen is to be seen, whether or not it is another one.
    void opened();
    // Asks the window to do what only a window can.
    void folderWanted(const QString& prompt, const QUrl& startFolder);
    void scanFileWanted(const QUrl& startFolder, bool toCompare);
    void aboutWanted();
    void exclusionsWanted();
    void changesWanted();

private:
    // Each stands on those above it. Threads may outlive this, so they share the policy.
    AppEnvironment environment_;
    std::shared_ptr<const SafetyPolicy> policy_;
    std::shared_ptr<JournalStore> journalStore_;
    DeletionSession session_;
    PutBack putBackService_;
    Notice notice_;
    Activity activity_;
    ShownScreen shown_;
    DiskState disk_;
    ScanFlow scan_;
    KeptScanSettings keeping_;
    CompareFlow compare_;
    ChangesFlow changes_;
    KeptScanFlow kept_;
    SystemPlacesFlow system_;
    RecentFolders recent_;
    DropFlow drop_;
    TreeEdits treeEdits_;
    PutBackFlow putBack_;
    MoveFlow moves_;
    RescanFlow rescan_;
    ExclusionFlow exclusions_;
    JournalFlow journal_;
    MapModel map_;
    LargeOldFlow largeOld_;
    DuplicatesFlow duplicates_;
    TidyFlow tidy_;
    AppsFlow apps_;
    AlertSettings alert_;
    AppearanceSettings appearance_;
    ItemActions actions_;
};

} // namespace orbel
