#pragma once

#include "AppModel/AppPlan.h"
#include "AppModel/LatestJob.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/RemovedLook.h"
#include "Models/AppFacts.h"
#include "Models/AppsModel.h"
#include "Models/LeftoversModel.h"
#include "Models/Ticks.h"

#include <memory>
#include <optional>
#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <vector>

namespace orbel {

/// The applications that are installed, what would go with the one that is selected, and what those left that
/// were removed. Belongs to the AppModel; used on the main thread. What takes long runs on
/// threads of its own.
///
/// The inventory is read when the screen is first shown, on request, and after moves to the Trash and back. A
/// plan is made for the application that is selected; one that was made for another selection, or from an
/// older inventory, is dropped. Only the first plan after a selection ticks anything. While the command that
/// removes the selected one is shown, its launcher is watched: once it is gone, the inventory is read again,
/// and what it left is selected in its place.
class AppsFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// "34"; empty until known.
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// "34 apps"; empty until known.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    /// "34 apps", "3 of 34 apps" when only those are shown; empty until known.
    Q_PROPERTY(QString shownText READ shownText NOTIFY changed)
    /// "3 apps · 1.2 GB": those shown that were removed, and what they left; empty when there are none.
    Q_PROPERTY(QString removedText READ removedText NOTIFY changed)

    Q_PROPERTY(orbel::AppsModel* list READ list CONSTANT)
    Q_PROPERTY(orbel::LeftoversModel* leftovers READ leftovers CONSTANT)
    Q_PROPERTY(orbel::Ticks* ticks READ ticks CONSTANT)
    /// The inventory is being read.
    Q_PROPERTY(bool loading READ isLoading NOTIFY changed)
    /// It has been read at least once.
    Q_PROPERTY(bool loaded READ isLoaded NOTIFY changed)
    Q_PROPERTY(bool anyListed READ isAnyListed NOTIFY changed)
    Q_PROPERTY(bool anyShown READ isAnyShown NOTIFY changed)
    Q_PROPERTY(QString findText READ findText WRITE setFindText NOTIFY changed)
    /// -1 when none is selected, or the selected one is not shown.
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY changed)
    Q_PROPERTY(orbel::AppFacts selected READ selected NOTIFY changed)
    /// A plan of the selected one is being made.
    Q_PROPERTY(bool planning READ isPlanning NOTIFY changed)

public:
    /// The references outlive this.
    AppsFlow(const AppEnvironment& environment, std::shared_ptr<const SafetyPolicy> policy,
             const ScanFlow& scan, MoveFlow& moves, const ShownScreen& shown, Notice& notice);

    // Intents.

    /// The screen is shown: reads the inventory, the first time.
    Q_INVOKABLE void open();
    Q_INVOKABLE void readAgain();
    /// Finds out again what goes with the selected one, and what removed ones left.
    void checkAgain();
    Q_INVOKABLE void select(int row);
    /// The other way round when the list is sorted by that already.
    Q_INVOKABLE void sortBy(bool size);
    Q_INVOKABLE void askToQuit();
    /// Of the selected one, which was removed: leaves what it left where it is, and takes it out of the list.
    Q_INVOKABLE void dismissRemoved();
    Q_INVOKABLE void toggleTick(int leftoverRow);
    /// Ticks all rows of the selected application that may move.
    Q_INVOKABLE void tickAll();

    /// Selects the application of that name, id or path as soon as the inventory is known; says so when there
    /// is none.
    void selectNamed(const std::string& name);

    // State.

    QString countText() const;
    QString summary() const;
    QString shownText() const;
    QString removedText() const;
    /// Something is still being read, measured or planned.
    bool isBusy() const {
        return isLoading() || isPlanning() || sizing_.isRunning() || removing_.isRunning();
    }
    AppsModel* list() { return &list_; }
    LeftoversModel* leftovers() { return &leftovers_; }
    Ticks* ticks() { return &ticks_; }
    bool isLoading() const { return loading_.isRunning(); }
    bool isLoaded() const { return inventory_ != nullptr; }
    bool isAnyListed() const { return !list_.entries().empty(); }
    bool isAnyShown() const { return list_.rowCount() > 0; }
    const QString& findText() const { return findText_; }
    void setFindText(const QString& text);
    int selectedRow() const { return list_.rowOf(selectedPath_); }
    AppFacts selected() const;
    bool isPlanning() const { return planDelay_.isActive() || planning_.isRunning(); }
    /// All applications, hidden ones as well; null until read.
    const std::shared_ptr<const std::vector<InstalledApp>>& apps() const { return inventory_; }
    /// Of the selected application; absent until made.
    const std::optional<UninstallPlan>& uninstallPlan() const { return plan_; }

Q_SIGNALS:
    void changed();

private:
    /// What one reading of the inventory gives.
    struct Inventory {
        std::shared_ptr<const std::vector<InstalledApp>> apps;
        std::shared_ptr<const LeftoverMatcher> matcher;
        std::vector<AppsModel::Entry> entries;
    };
    enum class Quitting { notAsked, asked, refused };

    void takeInventory(Inventory inventory);
    void measure();
    void lookForRemoved();
    void takeRemoved(RemovedLook look);
    void selectAwaited();
    void dropRemovedItems(const std::vector<std::string>& paths);
    const RemovedLook::App* selectedRemoved() const;
    void makePlan();
    void selectPath(const std::string& path);
    void clearSelection();
    void takePlan(AppPlan made);
    void takeRemovedPlan(const RemovedLook::App& removed);
    void showItems(std::vector<TickedItem> items, std::size_t ownItems,
                   const std::vector<Leftover>& forAdministrators, const QString& noneText);
    void watchRunning();
    void selectWanted();

    const AppEnvironment& environment_;
    std::shared_ptr<const SafetyPolicy> policy_;
    const ScanFlow& scan_;
    const ShownScreen& shown_;
    Notice& notice_;
    std::shared_ptr<const std::vector<InstalledApp>> inventory_;
    std::shared_ptr<const LeftoverMatcher> matcher_;
    std::vector<RemovedLook::App> removed_;
    AppsModel list_;
    Ticks ticks_;
    LeftoversModel leftovers_;
    std::string selectedPath_; ///< empty: none
    std::optional<UninstallPlan> plan_;
    bool preselects_ = false; ///< the next plan is the first one of its selection
    Quitting quitting_ = Quitting::notAsked;
    QString findText_;
    std::optional<std::string> wanted_; ///< what the command line asked to select
    /// It was selected and is gone: what it left is selected in its place.
    std::optional<InstalledApp> awaited_;
    bool isLauncherSeen_ = false; ///< the selected one was there when it was looked for last
    QTimer planDelay_;
    QTimer runningPoll_;
    LatestJob loading_{"orbel.apps"};
    LatestJob sizing_{"orbel.app-sizes"};
    LatestJob removing_{"orbel.removed"};
    LatestJob planning_{"orbel.app-plan"};
    LatestJob polling_{"orbel.running"};
    LatestJob quitJob_{"orbel.quit"};
};

} // namespace orbel
