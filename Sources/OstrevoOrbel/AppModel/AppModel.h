#pragma once

#include "Alerts/LowDiskAlert.h"
#include "Alerts/LowDiskSettings.h"
#include "AppModel/AppEnvironment.h"
#include "AppModel/Inbox.h"
#include "AppModel/ScanOutcome.h"
#include "Delete/DeletionSession.h"
#include "Journal/JournalStore.h"
#include "Journal/PutBack.h"
#include "Models/DiskLedger.h"
#include "Models/GrowthModel.h"
#include "Models/JournalHistory.h"
#include "Models/KindTotalsModel.h"
#include "Models/ScanFigures.h"
#include "Models/SizedFoldersModel.h"
#include "Models/TopLevelModel.h"
#include "Models/UnreadableModel.h"
#include "Models/VolumesModel.h"
#include "Safety/FileStamp.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/Coverage.h"
#include "Screen.h"
#include "Services/Appearance.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

namespace orbel {

class AppsFlow;
class DuplicatesFlow;
class ItemActions;
class JournalFlow;
class LargeOldFlow;
class MoveFlow;
class PutBackFlow;
class RescanFlow;
class TidyFlow;
class TreeEdits;

/// The one object behind every screen: it owns the services, holds all that the screens show, and runs what
/// takes long on threads of its own, publishing the results on the main thread.
///
/// Made, used and destroyed on the main thread. A result is taken only if it belongs to what was asked for
/// last: each scan has a token, and what comes with another token is dropped. Screens get it as a property
/// named `app` and call one of its intents for each action of the user.
class AppModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one, made by the application.")
    Q_MOC_INCLUDE("AppModel/AppsFlow.h")
    Q_MOC_INCLUDE("AppModel/DuplicatesFlow.h")
    Q_MOC_INCLUDE("AppModel/ItemActions.h")
    Q_MOC_INCLUDE("AppModel/JournalFlow.h")
    Q_MOC_INCLUDE("AppModel/LargeOldFlow.h")
    Q_MOC_INCLUDE("AppModel/MoveFlow.h")
    Q_MOC_INCLUDE("AppModel/PutBackFlow.h")
    Q_MOC_INCLUDE("AppModel/RescanFlow.h")
    Q_MOC_INCLUDE("AppModel/TidyFlow.h")

    // What is shown.

    /// "overview", "map", "large", "duplicates", "uninstall", "tidy" or "journal"; other words change
    /// nothing.
    Q_PROPERTY(QString screen READ screenName WRITE setScreenName NOTIFY screenChanged)
    /// The same as a number, in the order of the sidebar.
    Q_PROPERTY(int screenIndex READ screenIndex NOTIFY screenChanged)
    /// The permission to read the disk is missing: the onboarding stands in place of all screens.
    Q_PROPERTY(bool needsFullDiskAccess READ needsFullDiskAccess NOTIFY fullDiskAccessChanged)

    // The scan.

    /// "idle", "scanning", "done" or "cancelled".
    Q_PROPERTY(QString scanState READ scanStateName NOTIFY scanStateChanged)
    Q_PROPERTY(bool scanning READ isScanning NOTIFY scanStateChanged)
    /// Asked to stop and not there yet.
    Q_PROPERTY(bool stopping READ isStopping NOTIFY scanStateChanged)
    /// A scan is done, wholly or in part, and found something.
    Q_PROPERTY(bool measuredAny READ hasTree NOTIFY scanStateChanged)
    /// The last scan was stopped: what is shown is incomplete until the next one.
    Q_PROPERTY(bool partial READ isPartial NOTIFY scanStateChanged)
    /// The last scan found nothing, because its root could not be read.
    Q_PROPERTY(bool rootUnreadable READ isRootUnreadable NOTIFY scanStateChanged)
    /// What is or was measured last, for people: "~/Videos".
    Q_PROPERTY(QString scanRoot READ scanRootText NOTIFY scanRootChanged)
    /// It is the whole disk.
    Q_PROPERTY(bool wholeDisk READ isWholeDisk NOTIFY scanRootChanged)
    /// "This disk · measured today at 09:12 in 8.4 s", "Measuring ~/Videos…", "This disk · not measured yet".
    Q_PROPERTY(QString scopeText READ scopeText NOTIFY scanStateChanged)
    /// "Measured 390.3 GB · 1,284,301 entries · 8.4 s"; while scanning the figures so far; empty before.
    Q_PROPERTY(QString measuredText READ measuredText NOTIFY measuredTextChanged)
    /// Live while scanning, final afterwards.
    Q_PROPERTY(orbel::ScanFigures* figures READ figures CONSTANT)
    Q_PROPERTY(orbel::TopLevelModel* topLevel READ topLevel CONSTANT)
    /// One folder of it, measured again.
    Q_PROPERTY(orbel::RescanFlow* rescan READ rescan CONSTANT)
    /// Grows whenever the tree is replaced or edited.
    Q_PROPERTY(int treeVersion READ treeVersion NOTIFY treeChanged)

    // The disk.

    /// The volume of the user's data, and the one that was measured last (the same unless another was
    /// chosen).
    Q_PROPERTY(orbel::DiskLedger* disk READ disk CONSTANT)
    Q_PROPERTY(orbel::DiskLedger* ledger READ ledger CONSTANT)
    /// "5.8 GB", or "—" when it is not known.
    Q_PROPERTY(QString trashSize READ trashSizeText NOTIFY trashBytesChanged)
    Q_PROPERTY(orbel::VolumesModel* volumes READ volumes CONSTANT)
    Q_PROPERTY(orbel::KindTotalsModel* kinds READ kinds CONSTANT)
    Q_PROPERTY(orbel::SizedFoldersModel* largestFolders READ largestFolders CONSTANT)
    /// What grew since the scan before, once a complete one is done.
    Q_PROPERTY(orbel::GrowthModel* growth READ growth CONSTANT)
    Q_PROPERTY(orbel::UnreadableModel* unreadable READ unreadable CONSTANT)
    /// "3": mount points that were not entered.
    Q_PROPERTY(QString otherVolumesSkipped READ otherVolumesSkipped NOTIFY treeChanged)

    // What moves to the Trash, and back.

    Q_PROPERTY(orbel::MoveFlow* moves READ moves CONSTANT)
    Q_PROPERTY(orbel::PutBackFlow* putBack READ putBack CONSTANT)
    Q_PROPERTY(orbel::JournalFlow* journalFlow READ journalFlow CONSTANT)

    // The lists beside the map.

    Q_PROPERTY(orbel::LargeOldFlow* largeOld READ largeOld CONSTANT)
    Q_PROPERTY(orbel::DuplicatesFlow* duplicates READ duplicates CONSTANT)
    Q_PROPERTY(orbel::TidyFlow* tidy READ tidy CONSTANT)
    Q_PROPERTY(orbel::AppsFlow* apps READ apps CONSTANT)

    /// What the menu of an item offers, in every list.
    Q_PROPERTY(orbel::ItemActions* actions READ actions CONSTANT)

    // Settings; a change applies and is kept at once.

    Q_PROPERTY(orbel::Appearance* appearance READ appearance CONSTANT)
    Q_PROPERTY(bool lowDiskEnabled READ isLowDiskEnabled WRITE setLowDiskEnabled NOTIFY lowDiskChanged)
    /// Bytes; one of `lowDiskThresholds`.
    Q_PROPERTY(quint64 lowDiskThreshold READ lowDiskThreshold WRITE setLowDiskThreshold NOTIFY lowDiskChanged)
    /// Their labels, in order, and which of them is chosen; -1 for a threshold that is none of them.
    Q_PROPERTY(QStringList lowDiskThresholds READ lowDiskThresholds CONSTANT)
    Q_PROPERTY(int lowDiskChoice READ lowDiskChoice WRITE setLowDiskChoice NOTIFY lowDiskChanged)
    /// The notification as it would look now.
    Q_PROPERTY(QString sampleTitle READ sampleTitle NOTIFY volumeChanged)
    Q_PROPERTY(QString sampleBody READ sampleBody NOTIFY volumeChanged)
    Q_PROPERTY(bool openAtLogin READ opensAtLogin WRITE setOpenAtLogin NOTIFY openAtLoginChanged)
    Q_PROPERTY(QString journalPath READ journalPathText CONSTANT)

    // The application.

    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString motto READ motto CONSTANT)
    /// What went wrong or has to be known, until it is dismissed; empty when there is nothing.
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)

public:
    enum class ScanState { idle, scanning, done, cancelled };

    explicit AppModel(AppEnvironment environment, QObject* parent = nullptr);
    ~AppModel() override;

    // Intents of the screens.

    /// Measures a folder, the disk, or what was measured last. Ignored while a scan runs.
    Q_INVOKABLE void scanFolder(const QUrl& folder);
    Q_INVOKABLE void scanVolume(int row);
    Q_INVOKABLE void scanDisk();
    Q_INVOKABLE void measureAgain();
    /// Stops the scan that runs; what it has found so far is then shown as partial.
    Q_INVOKABLE void stopScan();
    /// Lets the user choose a folder to measure.
    Q_INVOKABLE void chooseFolderAndScan();
    Q_INVOKABLE void refreshFullDiskAccess();
    Q_INVOKABLE void openPrivacySettings();
    Q_INVOKABLE void refreshVolume();
    Q_INVOKABLE void refreshVolumes();
    Q_INVOKABLE void openTrash();
    Q_INVOKABLE void showJournalInFileManager();
    Q_INVOKABLE void showAbout();
    Q_INVOKABLE void copyText(const QString& text);
    Q_INVOKABLE void dismissNotice();
    /// Shows a node of the current tree on the map.
    Q_INVOKABLE void showOnMap(quint32 node);
    /// Shows on the map, from its top, only what is of a kind.
    Q_INVOKABLE void showKindOnMap(int kind);
    /// How many tiles the map shows, for the diagnostics.
    Q_INVOKABLE void noteTiles(int tiles);

    /// Starts a scan of that path. Ignored while one runs, while something moves to the Trash or back, and
    /// while Full Disk Access is missing.
    void startScan(const std::string& root);

    /// Settles what an earlier process could not write, and reads the journal again.
    void loadJournal();
    /// An edited copy of the tree `base`; dropped unless that is still the tree that is shown.
    void takeEdit(const std::shared_ptr<const FileTree>& base, ScanOutcome edited);
    /// Shows these words as the notice.
    void tell(const QString& words) { setNotice(words); }

    // State.

    const std::string& home() const { return environment_.home; }
    const LaunchOptions& options() const { return environment_.options; }
    const SafetyPolicy& policy() const { return policy_; }
    const std::shared_ptr<JournalStore>& journal() const { return journal_; }
    DeletionSession& session() { return session_; }
    MoveFlow* moves() { return moves_.get(); }
    PutBackFlow* putBack() { return putBack_.get(); }
    RescanFlow* rescan() { return rescan_.get(); }
    JournalFlow* journalFlow() { return journalFlow_.get(); }
    LargeOldFlow* largeOld() { return largeOld_.get(); }
    DuplicatesFlow* duplicates() { return duplicates_.get(); }
    TidyFlow* tidy() { return tidy_.get(); }
    AppsFlow* apps() { return apps_.get(); }
    ItemActions* actions() { return actions_.get(); }
    DiskReader diskReader() const { return DiskReader(environment_); }
    /// What measures a folder; any thread may call it.
    const auto& scanner() const { return environment_.scan; }
    TreeEdits& treeEdits() { return *treeEdits_; }
    const PutBack& putBackService() const { return putBackService_; }
    const std::vector<JournalEntry>& journalEntries() const { return journalHistory_->entries(); }
    /// Never null; empty until the journal has been read, and while it cannot be.
    const std::shared_ptr<const JournalHistory>& journalHistory() const { return journalHistory_; }
    /// The journal has been read, or could not be.
    bool isJournalRead() const { return isJournalRead_; }
    /// Why the journal could not be read, or must not be believed; empty when it could.
    QString journalFailure() const { return journalFailure_; }
    Screen screen() const { return screen_; }
    /// "Large and Old"
    QString screenTitle() const;
    void setScreen(Screen screen);
    const std::optional<VolumeInfo>& volume() const { return volume_; }
    std::optional<std::uint64_t> trashBytes() const { return trashBytes_; }
    /// Absent: not checked yet.
    std::optional<bool> fullDiskAccess() const { return fullDiskAccess_; }
    ScanState scanState() const { return scanState_; }
    const std::string& scanRootPath() const { return scanRoot_; }
    /// Of the running scan, the latest.
    const std::optional<ScanProgress>& progress() const { return progress_; }
    /// Never null; empty before the first scan and while one runs. It never changes: an edited tree is
    /// another one. Whoever works with it on another thread holds its own reference.
    const std::shared_ptr<const FileTree>& tree() const { return tree_; }
    /// Only for a scan of the whole disk.
    const std::optional<Coverage>& coverage() const { return coverage_; }
    int treeVersion() const { return treeVersion_; }
    const LowDiskSettings& lowDisk() const { return lowDisk_; }
    std::chrono::system_clock::time_point now() const { return environment_.now(); }
    const AppEnvironment::FindLargeOld& findLargeOld() const { return environment_.findLargeOld; }
    /// The model's tie to the threads that work for it.
    const Inbox& inbox() const { return inbox_; }
    Diagnostics* diagnostics() const { return environment_.diagnostics.get(); }
    Desktop& desktop() const { return *environment_.desktop; }
    const AppEnvironment& environment() const { return environment_; }
    /// Whether what the shown screen lists is still being found.
    bool isShownScreenBusy() const;

    QString screenName() const;
    void setScreenName(const QString& name);
    int screenIndex() const { return static_cast<int>(screen_); }
    bool needsFullDiskAccess() const;
    QString scanStateName() const;
    bool isScanning() const { return scanState_ == ScanState::scanning; }
    bool isStopping() const;
    bool hasTree() const { return !isScanning() && tree_->count() > 0; }
    bool isPartial() const { return scanState_ == ScanState::cancelled; }
    bool isRootUnreadable() const;
    QString scanRootText() const;
    bool isWholeDisk() const { return scanRoot_ == environment_.dataVolumePath; }
    QString scopeText() const;
    QString measuredText() const;
    ScanFigures* figures() { return &figures_; }
    TopLevelModel* topLevel() { return &topLevel_; }
    DiskLedger* disk() { return &disk_; }
    DiskLedger* ledger() { return &ledger_; }
    QString trashSizeText() const;
    VolumesModel* volumes() { return &volumes_; }
    KindTotalsModel* kinds() { return &kinds_; }
    SizedFoldersModel* largestFolders() { return &largestFolders_; }
    GrowthModel* growth() { return &growth_; }
    UnreadableModel* unreadable() { return &unreadable_; }
    QString otherVolumesSkipped() const;
    Appearance* appearance() { return &appearance_; }
    bool isLowDiskEnabled() const { return lowDisk_.enabled; }
    void setLowDiskEnabled(bool enabled);
    quint64 lowDiskThreshold() const { return lowDisk_.threshold; }
    void setLowDiskThreshold(quint64 bytes);
    QStringList lowDiskThresholds() const;
    int lowDiskChoice() const;
    void setLowDiskChoice(int choice);
    QString sampleTitle() const;
    QString sampleBody() const;
    bool opensAtLogin() const;
    void setOpenAtLogin(bool opens);
    QString journalPathText() const;
    QString version() const;
    QString motto() const;
    QString notice() const { return notice_; }

Q_SIGNALS:
    void screenChanged();
    void fullDiskAccessChanged();
    void scanStateChanged();
    void scanRootChanged();
    void measuredTextChanged();
    void treeChanged();
    void volumeChanged();
    void trashBytesChanged();
    void lowDiskChanged();
    void openAtLoginChanged();
    void journalEntriesChanged();
    void noticeChanged();

    /// A scan's result, whole or partial, has been taken.
    void scanFinished();
    // Asks the window to do what only a window can.
    void folderWanted(const QString& prompt, const QUrl& startFolder);
    void aboutWanted();
    /// The map is to show this node: zoomed when it is a folder, else selected.
    void mapNodeWanted(quint32 node);
    /// The map is to show only this kind.
    void mapKindWanted(int kind);

private:
    /// What a scan and the edits since have counted.
    struct Counted {
        KindTotals kinds{};
        KindTotals trashedKinds{}; ///< the part of it that lies in the Trash
        DiskMoment atScan;
        std::uint64_t bytesAtScan = 0;      ///< without the Trash
        std::int64_t outsideTreeAtScan = 0; ///< see outsideTree()

        std::uint64_t bytes() const; ///< without the Trash
        /// By how much the Trash is larger than the tree has it.
        std::int64_t outsideTree(const DiskMoment& moment) const;
    };

    void watchTrash();
    void takeTrashChange();

    // The scan (AppModelScan.cpp).
    void takeProgress(const ScanCancellation* token, ScanProgress progress);
    void takeOutcome(const ScanCancellation* token, ScanOutcome outcome);
    void showTree(std::shared_ptr<const FileTree> tree);
    void takeMoment(const DiskMoment& moment);
    void updateLedgers();
    void addCounted(DiskLedger::Figures& figures, bool holdsTrash) const;
    void mark(std::string_view name);
    void setNotice(const QString& words);

    // The alert (AppModelAlert.cpp).
    static LowDiskSettings loadLowDiskSettings(const QSettings& settings);
    void saveLowDisk();
    void restartAlertLoop();
    void checkFreeSpace();

    AppEnvironment environment_;
    SafetyPolicy policy_;
    std::shared_ptr<JournalStore> journal_;
    DeletionSession session_;
    PutBack putBackService_;
    std::shared_ptr<const JournalHistory> journalHistory_;
    bool isJournalRead_ = false;
    QString journalFailure_;
    std::optional<FileStamp> journalStamp_; ///< of the file when it was read
    int journalJob_ = 0; ///< of several readings, only the one that was asked for last counts

    Screen screen_ = Screen::overview;
    std::optional<VolumeInfo> volume_;
    std::optional<std::uint64_t> trashBytes_;
    std::optional<bool> fullDiskAccess_;
    QString notice_;

    ScanState scanState_ = ScanState::idle;
    std::string scanRoot_;
    std::optional<ScanProgress> progress_;
    std::shared_ptr<const FileTree> tree_;
    std::optional<Coverage> coverage_;
    int treeVersion_ = 0;
    std::shared_ptr<ScanCancellation> cancellation_;
    std::chrono::system_clock::time_point scannedAt_;
    double scanSeconds_ = 0;
    std::optional<VolumeInfo> scannedVolume_;
    std::optional<VolumeInfo> ledgerVolume_; ///< of the disk, read at one moment with `trashBytes_`
    std::uint64_t momentNumber_ = 0;
    std::optional<Counted> counted_; ///< absent before the first scan and while one runs
    std::vector<platform::Mount> mounts_;

    ScanFigures figures_;
    TopLevelModel topLevel_;
    DiskLedger disk_;
    DiskLedger ledger_;
    VolumesModel volumes_;
    KindTotalsModel kinds_;
    SizedFoldersModel largestFolders_;
    GrowthModel growth_;
    UnreadableModel unreadable_;
    Appearance appearance_;

    LowDiskSettings lowDisk_;
    LowDiskAlert lowDiskAlert_;
    QTimer alertTimer_;
    QFileSystemWatcher trashWatch_;
    QTimer trashTimer_; ///< many changes at once are one

    std::unique_ptr<TreeEdits> treeEdits_;
    std::unique_ptr<PutBackFlow> putBack_;
    std::unique_ptr<RescanFlow> rescan_;
    std::unique_ptr<MoveFlow> moves_;
    std::unique_ptr<JournalFlow> journalFlow_;
    std::unique_ptr<LargeOldFlow> largeOld_;
    std::unique_ptr<DuplicatesFlow> duplicates_;
    std::unique_ptr<TidyFlow> tidy_;
    std::unique_ptr<AppsFlow> apps_;
    std::unique_ptr<ItemActions> actions_;

    Inbox inbox_; ///< the last member: what it delivers finds all others alive
};

} // namespace orbel
