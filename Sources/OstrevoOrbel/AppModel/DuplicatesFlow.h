#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/MoveFlow.h"
#include "Find/DuplicateFinder.h"
#include "Models/DuplicateGroupsModel.h"
#include "Models/TickedItem.h"
#include "Safety/SafetyPolicy.h"

#include <chrono>
#include <memory>
#include <optional>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QtQml/qqmlregistration.h>
#include <QUrl>
#include <string>
#include <vector>

namespace orbel {

/// The search for files of the same content, the groups that it found, which copy of each is kept and which
/// are ticked. Belongs to the AppModel; used on the main thread, while what takes long runs on threads of its
/// own.
///
/// A search starts only on request, since it reads every file that it compares. A scan that
/// starts meanwhile ends it, and its result is dropped; groups that were found before stay, told as stale.
class DuplicatesFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// "41"; empty until known.
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// "41 groups · up to 52.8 GB"; empty until known.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    /// Its two parts; the first tells how many the filters leave: "3 of 41 groups".
    Q_PROPERTY(QString groupsText READ groupsText NOTIFY changed)
    Q_PROPERTY(QString potentialText READ potentialText NOTIFY changed)
    Q_PROPERTY(orbel::DuplicateGroupsModel* groups READ groups CONSTANT)

    // The search.

    Q_PROPERTY(bool running READ duplicatesRunning NOTIFY changed)
    /// Asked to stop and not there yet.
    Q_PROPERTY(bool stopping READ isStopping NOTIFY changed)
    /// There is a result, complete or not.
    Q_PROPERTY(bool searched READ duplicatesSearched NOTIFY changed)
    /// The search was stopped: there may be more groups than were found.
    Q_PROPERTY(bool partial READ isPartial NOTIFY changed)
    /// What was found is of an earlier measurement.
    Q_PROPERTY(bool stale READ isStale NOTIFY changed)
    /// The search began with larger files than are wanted now.
    Q_PROPERTY(bool tooFew READ isTooFew NOTIFY changed)
    /// "Home folder · every byte compared · searched today at 09:14"
    Q_PROPERTY(QString scopeText READ scopeText NOTIFY changed)
    /// What was measured has nothing of the home folder in it.
    Q_PROPERTY(bool outsideHome READ isOutsideHome NOTIFY changed)
    /// From 0 to 1, of the bytes to compare.
    Q_PROPERTY(double share READ share NOTIFY progressChanged)
    /// "41.6 GB of 109.4 GB compared"
    Q_PROPERTY(QString comparedText READ comparedText NOTIFY progressChanged)
    /// "17", and its noun
    Q_PROPERTY(QString foundCount READ foundCount NOTIFY progressChanged)
    Q_PROPERTY(QString foundNoun READ foundNoun NOTIFY progressChanged)

    // What is wanted of the groups.

    /// "1 MB or more"
    Q_PROPERTY(QStringList minimumChoices READ minimumChoices CONSTANT)
    Q_PROPERTY(int minimumChoice READ minimumChoice WRITE setMinimumChoice NOTIFY changed)
    Q_PROPERTY(QString minimumText READ minimumText NOTIFY changed)
    /// What the path of a copy has to hold for its group to be shown.
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY changed)
    /// 0: newest, 1: oldest, 2: folder first.
    Q_PROPERTY(int rule READ ruleNumber NOTIFY changed)
    /// "~/Videos", of the last one.
    Q_PROPERTY(QString ruleFolder READ ruleFolderText NOTIFY changed)

    // What is ticked.

    Q_PROPERTY(int tickedCount READ tickedCount NOTIFY changed)
    /// "2 copies ticked"
    Q_PROPERTY(QString tickedText READ tickedText NOTIFY changed)
    /// "frees 29.2 GB"
    Q_PROPERTY(QString tickedFrees READ tickedFrees NOTIFY changed)
    /// "in 1 group; its kept copy is checked again before the move"
    Q_PROPERTY(QString tickedRemark READ tickedRemark NOTIFY changed)
    Q_PROPERTY(QString reviewText READ reviewText NOTIFY changed)
    /// What is ticked is being asked about, before the confirmation.
    Q_PROPERTY(bool reviewing READ isReviewing NOTIFY changed)

public:
    /// The references outlive this.
    DuplicatesFlow(const AppEnvironment& environment, std::shared_ptr<const SafetyPolicy> policy,
                   const ScanFlow& scan, MoveFlow& moves, const ShownScreen& shown, Notice& notice);

    // Intents. Rows are those of `groups`; what is out of their range changes nothing.

    Q_INVOKABLE void search();
    /// Ends the search; the groups that were proved by then stay.
    Q_INVOKABLE void stop();
    Q_INVOKABLE void toggleTick(int row);
    Q_INVOKABLE void tickAllOthers();
    Q_INVOKABLE void clearTicks();
    Q_INVOKABLE void keep(int row);
    Q_INVOKABLE void keepNewest();
    Q_INVOKABLE void keepOldest();
    Q_INVOKABLE void keepFolderFirst(const QUrl& folder);
    Q_INVOKABLE void setFolded(int row, bool folded);
    Q_INVOKABLE void setAllFolded(bool folded);
    Q_INVOKABLE int headOf(int row) const;
    /// Asks the disk about all that is ticked, then for a confirmation of what may be moved.
    Q_INVOKABLE void review();
    /// Finds out again which copies may move.
    void checkAll();

    // State.

    std::uint64_t duplicateMinimumBytes() const { return duplicateMinimumBytes_; }
    void setDuplicateMinimumBytes(std::uint64_t bytes);
    const std::vector<CopyGroup>& duplicateGroups() const { return groups_.groups(); }
    const std::optional<DuplicateProgress>& duplicateProgress() const { return duplicateProgress_; }
    bool duplicatesRunning() const { return searching_.isRunning(); }
    bool duplicatesSearched() const { return duplicatesSearched_; }
    DuplicateGroupsModel* groups() { return &groups_; }
    QString countText() const;
    QString summary() const;
    QString groupsText() const;
    QString potentialText() const;
    bool isStopping() const { return searching_.isStopping(); }
    bool isPartial() const { return isPartial_; }
    bool isStale() const { return isStale_; }
    bool isTooFew() const { return duplicatesSearched_ && duplicateMinimumBytes_ < searchedMinimum_; }
    bool isOutsideHome() const;
    QString scopeText() const;
    double share() const;
    QString comparedText() const;
    QString foundCount() const;
    QString foundNoun() const;
    QStringList minimumChoices() const;
    int minimumChoice() const;
    void setMinimumChoice(int choice);
    QString minimumText() const;
    QString filter() const { return filter_; }
    void setFilter(const QString& text);
    int ruleNumber() const { return static_cast<int>(rule_); }
    QString ruleFolderText() const;
    int tickedCount() const { return static_cast<int>(groups_.totals().ticked); }
    QString tickedText() const;
    QString tickedFrees() const;
    QString tickedRemark() const;
    QString reviewText() const;
    bool isReviewing() const { return reviewing_.isRunning(); }
    bool isBusy() const { return duplicatesRunning(); }

Q_SIGNALS:
    void changed();
    void progressChanged();

private:
    struct Found {
        std::vector<CopyGroup> groups;
        DuplicateProgress progress; ///< the last that was reported
        bool isStopped = false;
    };
    /// A copy that was ticked and may not be moved any more; without an item it is gone.
    struct Refused {
        std::size_t group = 0;
        std::string path;
        std::optional<DeletionItem> item;
    };
    struct Reviewed {
        std::vector<TickedItem> items;
        std::vector<Refused> refused;
    };

    void takeGroups(Found found);
    void takeTree();
    void check(const std::vector<std::size_t>& groups);
    void takeReviewed(int choice, Reviewed reviewed);
    void setRule(KeepRule rule, std::string folder);
    /// What was found is of the disk that is shown.
    bool isKnown() const { return duplicatesSearched_ && !scan_.isForeign(); }
    void noteChoice() { ++choice_; }

    const AppEnvironment& environment_;
    std::shared_ptr<const SafetyPolicy> policy_;
    const ScanFlow& scan_;
    MoveFlow& moves_;
    const ShownScreen& shown_;
    Notice& notice_;
    DuplicateGroupsModel groups_;
    std::uint64_t duplicateMinimumBytes_ = DuplicateFinder::defaultMinimumBytes;
    std::optional<DuplicateProgress> duplicateProgress_;
    QTimer progressTimer_; ///< sizes can be done faster than they can be read
    bool duplicatesSearched_ = false;
    bool isPartial_ = false;
    bool isStale_ = false;
    std::uint64_t searchedMinimum_ = 0;
    std::size_t searchedNodes_ = 0; ///< of the tree that was searched
    std::string searchedRoot_;
    std::chrono::system_clock::time_point searchedAt_;
    QString filter_;
    KeepRule rule_ = KeepRule::newest;
    std::string ruleFolder_;
    int choice_ = 0; ///< grows with every tick and every choice of a copy to keep
    LatestJob searching_{"orbel.duplicates"};
    LatestJob reviewing_{"orbel.tick"};
    LatestJob checking_{"orbel.duplicates"}; ///< what may not move, batch after batch
};

} // namespace orbel
