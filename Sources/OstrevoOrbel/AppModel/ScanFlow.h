#pragma once

#include "AppModel/Activity.h"
#include "AppModel/AppEnvironment.h"
#include "AppModel/DiskState.h"
#include "AppModel/ExcludedFolders.h"
#include "AppModel/KnownRoots.h"
#include "AppModel/LatestJob.h"
#include "AppModel/Notice.h"
#include "AppModel/ScanOutcome.h"
#include "Models/KindTotalsModel.h"
#include "Models/ScanFigures.h"
#include "Models/SizedFoldersModel.h"
#include "Models/TopLevelModel.h"
#include "Models/UnreadableModel.h"
#include "Models/Wording.h"
#include "Scan/Coverage.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

namespace orbel {

/// A scan, and the tree that it gives: the one that all screens show. Used on the main thread, while the scan
/// runs on threads of its own.
class ScanFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// Nothing has been measured yet.
    Q_PROPERTY(bool idle READ isIdle NOTIFY scanStateChanged)
    Q_PROPERTY(bool running READ isScanning NOTIFY scanStateChanged)
    /// Asked to stop and not there yet.
    Q_PROPERTY(bool stopping READ isStopping NOTIFY scanStateChanged)
    /// A scan is done, wholly or in part, and found something.
    Q_PROPERTY(bool measuredAny READ hasTree NOTIFY scanStateChanged)
    /// The last scan was stopped: what is shown is incomplete until the next one.
    Q_PROPERTY(bool partial READ isPartial NOTIFY scanStateChanged)
    /// The last scan found nothing, because its root could not be read.
    Q_PROPERTY(bool rootUnreadable READ isRootUnreadable NOTIFY scanStateChanged)
    /// What is shown was measured elsewhere: it can be looked at and searched, while nothing of it can be
    /// moved, opened or measured again.
    Q_PROPERTY(bool foreign READ isForeign NOTIFY scanStateChanged)
    /// What a scan of earlier is to be known by: "Measured on larch; nothing can be moved from here", and
    /// "A scan of /srv, made yesterday at 14:02." Empty for one of this run.
    Q_PROPERTY(QString keptStatement READ keptStatement NOTIFY scanStateChanged)
    Q_PROPERTY(QString keptSentence READ keptSentence NOTIFY scanStateChanged)
    /// The permission to read the disk is missing: the onboarding stands in place of all screens.
    Q_PROPERTY(bool needsFullDiskAccess READ needsFullDiskAccess NOTIFY fullDiskAccessChanged)

    // What is or was measured last.

    /// For people: "~/Videos".
    Q_PROPERTY(QString root READ rootText NOTIFY scanRootChanged)
    /// It is the whole disk.
    Q_PROPERTY(bool wholeDisk READ isWholeDisk NOTIFY scanRootChanged)
    /// "This disk · measured today at 09:12 in 8.4 s", "Measuring ~/Videos…", "This disk · not measured yet".
    Q_PROPERTY(QString scopeText READ scopeText NOTIFY scanStateChanged)
    /// "Measured 390.3 GB · 1,284,301 entries · 8.4 s"; while scanning the figures so far; empty before.
    Q_PROPERTY(QString measuredText READ measuredText NOTIFY measuredTextChanged)
    /// While a root is measured that was before: the entries so far in relation to those of its last scan,
    /// which is 1 when there are as many or more; -1 where there is nothing to compare with.
    Q_PROPERTY(double share READ share NOTIFY measuredTextChanged)
    /// "About 62 % of the 1,284,301 entries of the last scan"
    Q_PROPERTY(QString shareText READ shareWords NOTIFY measuredTextChanged)
    /// Live while scanning, final afterwards.
    Q_PROPERTY(orbel::ScanFigures* figures READ figures CONSTANT)
    Q_PROPERTY(orbel::RoleList* topLevel READ topLevel CONSTANT)
    Q_PROPERTY(orbel::RoleList* kinds READ kinds CONSTANT)
    Q_PROPERTY(orbel::RoleList* extensions READ extensions CONSTANT)
    Q_PROPERTY(orbel::RoleList* largestFolders READ largestFolders CONSTANT)
    Q_PROPERTY(orbel::UnreadableModel* unreadable READ unreadable CONSTANT)
    /// "3": mount points that were not entered.
    Q_PROPERTY(QString otherVolumesSkipped READ otherVolumesSkipped NOTIFY treeChanged)

public:
    enum class ScanState { idle, scanning, done, cancelled };

    /// The arguments outlive this.
    ScanFlow(const AppEnvironment& environment, DiskState& disk, Activity& activity, Notice& notice);

    // Intents. Nothing is measured while a scan runs, while something moves to the Trash or back, and while
    // Full Disk Access is missing.

    void startScan(const std::string& root);
    Q_INVOKABLE void scanFolder(const QUrl& folder);
    /// A row of the disk's volumes.
    Q_INVOKABLE void scanVolume(int row);
    Q_INVOKABLE void scanDisk() { startScan(environment_.dataVolumePath); }
    /// Not what was measured elsewhere.
    Q_INVOKABLE void measureAgain() {
        if (!isForeign())
            startScan(std::string(scanRoot_));
    }
    /// Stops the scan that runs; what it has found so far is then shown as partial.
    Q_INVOKABLE void stop();
    /// Looks for the permission again. When it is there for the first time, starts the scan of
    /// the command line.
    Q_INVOKABLE void refreshFullDiskAccess();
    Q_INVOKABLE void openPrivacySettings();

    /// Shows a scan that was kept. Not while another runs.
    void takeKept(KeptOutcome kept);
    /// A whole new scan of the root that is shown, which ran beside it. Not while another runs.
    void takeFresh(ScanOutcome fresh);

    /// An edited copy of the tree `base`; dropped unless that is still the tree that is shown.
    void takeEdit(const std::shared_ptr<const FileTree>& base, ScanOutcome edited);

    // State.

    /// What "~" stands for.
    const std::string& home() const { return environment_.home; }
    ScanState scanState() const { return scanState_; }
    const std::string& scanRoot() const { return scanRoot_; }
    /// Of the running scan, the latest.
    const std::optional<ScanProgress>& progress() const { return progress_; }
    /// Never null; empty before the first scan and while one runs. It never changes: an edited tree is
    /// another one. A thread that works with it holds a reference of its own.
    const std::shared_ptr<const FileTree>& tree() const { return tree_; }
    /// Grows whenever the tree is replaced or edited.
    int treeVersion() const { return treeVersion_; }
    /// Of the scan that ended last, also once its tree was edited.
    const ScanOrigin& origin() const { return origin_; }
    /// Only for a scan of the whole disk.
    const std::optional<Coverage>& coverage() const { return coverage_; }
    bool isIdle() const { return scanState_ == ScanState::idle; }
    bool isScanning() const { return scanState_ == ScanState::scanning; }
    bool isStopping() const { return job_.isStopping(); }
    bool hasTree() const { return !isScanning() && tree_->count() > 0; }
    bool isPartial() const { return scanState_ == ScanState::cancelled; }
    /// There is a tree, and what is in it can be looked at on this disk.
    bool isMeasuredHere() const { return hasTree() && !isForeign(); }
    bool isKept() const { return provenance_ != Provenance::now; }
    bool isForeign() const { return provenance_ == Provenance::elsewhere; }
    QString keptStatement() const;
    QString keptSentence() const;
    bool isRootUnreadable() const;
    bool needsFullDiskAccess() const {
        return !environment_.options.allowWithoutFullDiskAccess && fullDiskAccess_ == false;
    }
    QString rootText() const;
    bool isWholeDisk() const { return !isForeign() && scanRoot_ == environment_.dataVolumePath; }
    QString scopeText() const;
    QString measuredText() const;
    KnownRoots& knownRoots() { return known_; }
    /// What scans leave out from now on.
    ExcludedFolders& excluded() { return excluded_; }
    const ExcludedFolders& excluded() const { return excluded_; }
    double share() const;
    QString shareWords() const;
    ScanFigures* figures() { return &figures_; }
    TopLevelModel* topLevel() { return &topLevel_; }
    KindTotalsModel* kinds() { return &kinds_; }
    ExtensionTotalsModel* extensions() { return &extensions_; }
    SizedFoldersModel* largestFolders() { return &largestFolders_; }
    UnreadableModel* unreadable() { return &unreadable_; }
    QString otherVolumesSkipped() const { return countText(tree_->otherVolumeCount); }

Q_SIGNALS:
    void scanStateChanged();
    void scanRootChanged();
    void measuredTextChanged();
    void treeChanged();
    void fullDiskAccessChanged();
    /// A scan's result, whole or partial, has been taken.
    void scanFinished();

private:
    /// Exports of other programs do not tell it.
    bool isDurationKnown() const { return !isForeign() || scanSeconds_ > 0; }
    /// Where what is shown is from: this run, an earlier one, or the file of another computer's scan.
    enum class Provenance : std::uint8_t { now, earlier, elsewhere };

    void takeProgress(const ScanProgress& progress);
    void takeOutcome(ScanOutcome outcome);
    void settle(ScanOutcome outcome);
    void tellEnd();
    void show(ScanOutcome outcome);

    const AppEnvironment& environment_;
    DiskState& disk_;
    Activity& activity_;
    Notice& notice_;
    std::optional<bool> fullDiskAccess_; ///< absent: not checked yet
    ScanState scanState_ = ScanState::idle;
    std::string scanRoot_;
    std::optional<ScanProgress> progress_;
    Provenance provenance_ = Provenance::now;
    KnownRoots known_;
    ExcludedFolders excluded_;
    std::optional<std::uint64_t> lastEntries_; ///< of the root that is being measured
    std::shared_ptr<const FileTree> tree_;
    ScanOrigin origin_;
    int treeVersion_ = 0;
    std::optional<Coverage> coverage_;
    std::chrono::system_clock::time_point scannedAt_;
    double scanSeconds_ = 0;
    ScanFigures figures_;
    TopLevelModel topLevel_;
    KindTotalsModel kinds_;
    ExtensionTotalsModel extensions_;
    SizedFoldersModel largestFolders_;
    UnreadableModel unreadable_;
    LatestJob job_{"orbel.scan"};
};

} // namespace orbel
