#include "AppModel/AppsFlow.h"

#include "Find/CommonWords.h"
#include "Models/IconAddress.h"
#include "Models/Wording.h"
#include "Platform/FileStatus.h"
#include "Scan/TreeScanner.h"
#include "Util/Iso8601.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <utility>

namespace orbel {

namespace {

using Status = InstalledApp::Status;

/// Long enough that walking down the list makes no plan for every row on the way.
constexpr std::chrono::milliseconds planDelay(120);
constexpr std::chrono::milliseconds runningInterval(1500);

/// What is measured for the size of an application; empty when its package tells.
std::string measuredPlace(const InstalledApp& app) {
    if (app.packageBytes)
        return {};
    return app.status == Status::removable ? app.path : app.programFolder;
}

/// "Remove the app with Flatpak first." where something can be named that removes it.
QString whatRemoves(const InstalledApp& app) {
    constexpr std::string_view with = "Remove it with ";
    if (!app.reason.starts_with(with))
        return textOf(app.reason) + QLatin1Char('.');
    return AppsFlow::tr("Remove the app with %1 first.").arg(textOf(app.reason.substr(with.size())));
}

/// Once a command has removed the application.
QString staysBehind(std::size_t leftovers, std::uint64_t bytes) {
    if (leftovers == 0)
        return AppsFlow::tr("Nothing was found that would stay behind.");
    return AppsFlow::tr(
               "What stays behind afterwards is listed below and can be moved to the Trash then: %1, %2.")
        .arg(countOf(leftovers, AppsFlow::tr("item"), AppsFlow::tr("items")), ByteFigure(bytes).text());
}

QString sourceOf(RemovedApp::Kind kind) {
    switch (kind) {
    case RemovedApp::Kind::flatpak:
        return QStringLiteral("Flatpak");
    case RemovedApp::Kind::snap:
        return QStringLiteral("Snap");
    case RemovedApp::Kind::package:
        return AppsFlow::tr("Package");
    case RemovedApp::Kind::id:
        break;
    }
    return AppsFlow::tr("Known by its id");
}

/// What is said of one that was removed, besides its names.
AppFacts factsOf(const RemovedApp& app, AppFacts facts) {
    facts.removed = true;
    const bool wasInstalled = app.kind != RemovedApp::Kind::id;
    facts.runningText = wasInstalled ? AppsFlow::tr("not installed any more") : AppsFlow::tr("not installed");
    facts.total = ByteFigure(app.bytes()).text();
    facts.parts = countOf(app.items.size(), AppsFlow::tr("item"), AppsFlow::tr("items"));
    facts.warning = (wasInstalled ? AppsFlow::tr("%1 is not installed any more.")
                                  : AppsFlow::tr("Nothing that is installed is called %1."))
                        .arg(facts.name);
    // At noon, so that it is the same day in nearly every time zone.
    if (const auto day = parseIso8601(app.lastSeen + "T12:00:00Z"))
        facts.explanation = AppsFlow::tr("It was on %1.").arg(dayText(*day)) + QLatin1Char(' ');
    facts.explanation +=
        AppsFlow::tr("What it left stays in this list until it is moved, or until you let it stay.");
    return facts;
}

bool isCalled(const InstalledApp& app, const std::string& name) {
    const auto wanted = lowerCase(name);
    return app.path == name || lowerCase(app.name) == wanted
           || lowerCase(app.bundleID.value_or("")) == wanted;
}

} // namespace

AppsFlow::AppsFlow(const AppEnvironment& environment, std::shared_ptr<const SafetyPolicy> policy,
                   const ScanFlow& scan, MoveFlow& moves, const ShownScreen& shown, Notice& notice)
    : environment_(environment),
      policy_(std::move(policy)),
      scan_(scan),
      shown_(shown),
      notice_(notice),
      list_(environment.home),
      leftovers_(environment.home, ticks_),
      wanted_(environment.options.selectApp) {
    moves.watch(ticks_);
    ticks_.setPosition([this](const TickedItem& ticked) { return leftovers_.positionOf(ticked.item.path); });
    planDelay_.setSingleShot(true);
    planDelay_.setInterval(planDelay);
    connect(&planDelay_, &QTimer::timeout, this, &AppsFlow::makePlan);
    runningPoll_.setInterval(runningInterval);
    connect(&runningPoll_, &QTimer::timeout, this, &AppsFlow::watchRunning);
    connect(&moves, &MoveFlow::moved, this, [this](const std::vector<std::string>& paths) {
        if (!isLoaded())
            return;
        leftovers_.remove(paths);
        for (const auto& path : paths)
            list_.remove(path);
        dropRemovedItems(paths);
        readAgain();
    });
    connect(&moves, &MoveFlow::restored, this, [this] {
        if (isLoaded())
            readAgain();
    });
}

void AppsFlow::open() {
    if (!isLoaded() && !isLoading())
        readAgain();
}

void AppsFlow::readAgain() {
    const auto& ownHome = environment_.home;
    loading_.run(
        [home = policy_->canonical(ownHome).value_or(ownHome), installed = environment_.installedApps] {
            Inventory read{.apps = std::make_shared<const std::vector<InstalledApp>>(installed()),
                           .matcher = std::make_shared<const LeftoverMatcher>(home, "/Library"),
                           .entries = {}};
            for (const auto& app : *read.apps)
                if (!app.isHidden)
                    read.entries.push_back({.app = app, .bytes = app.packageBytes});
            return read;
        },
        [this](Inventory inventory) { takeInventory(std::move(inventory)); });
    Q_EMIT changed();
}

void AppsFlow::takeInventory(Inventory inventory) {
    inventory_ = std::move(inventory.apps);
    matcher_ = std::move(inventory.matcher);
    const auto* const selected = list_.find(selectedPath_);
    const auto was = selected == nullptr ? std::nullopt : std::optional(selected->app);
    // What was measured before stays until it is measured again.
    for (auto& entry : inventory.entries)
        if (const auto* known = list_.find(entry.app.path); known != nullptr && !entry.bytes)
            entry.bytes = known->bytes;
    list_.setEntries(std::move(inventory.entries));
    measure();
    selectWanted();
    if (list_.find(selectedPath_) != nullptr) {
        makePlan();
    } else {
        clearSelection();
        if (was && !was->manager.empty())
            awaited_ = was;
    }
    lookForRemoved();
    Q_EMIT changed();
}

void AppsFlow::lookForRemoved() {
    removing_.run(
        [look = RemovedLook::at(environment_, inventory_, matcher_, policy_, scan_.excluded().exclusions())](
            const LatestJob::Run& run) { return look(run.cancellation()); },
        [this](RemovedLook look) { takeRemoved(std::move(look)); });
}

void AppsFlow::takeRemoved(RemovedLook look) {
    const bool wasRemoved = selectedRemoved() != nullptr;
    removed_ = std::move(look.apps);
    std::vector<AppsModel::Entry> entries;
    entries.reserve(removed_.size());
    for (const auto& [app, items] : removed_)
        entries.push_back({.app = {.path = app.key(),
                                   .name = app.name,
                                   .bundleID = app.name == app.id ? "" : lossyUtf8(app.id),
                                   .source = sourceOf(app.kind).toStdString()},
                           .bytes = app.bytes(),
                           .removedPath = app.items.front().path});
    std::ranges::stable_sort(entries, {},
                             [](const AppsModel::Entry& entry) { return lowerCase(entry.app.name); });
    list_.setRemoved(std::move(entries));
    for (const auto& failure : look.failures)
        notice_.show(textOf(failure));
    if (const auto* const removed = selectedRemoved())
        takeRemovedPlan(*removed);
    else if (wasRemoved)
        clearSelection();
    selectAwaited();
    Q_EMIT changed();
}

void AppsFlow::selectAwaited() {
    const auto gone = std::exchange(awaited_, std::nullopt);
    if (!gone || !selectedPath_.empty())
        return;
    const auto found = std::ranges::find_if(removed_, [&](const RemovedLook::App& removed) {
        const auto id = lowerCase(removed.app.id);
        return id == lowerCase(gone->bundleID.value_or("")) || id == lowerCase(gone->package);
    });
    if (found != removed_.end())
        selectPath(found->app.key());
    else
        notice_.show(tr("%1 is not installed any more, and left nothing that is certainly its own.")
                         .arg(textOf(gone->name)));
}

const RemovedLook::App* AppsFlow::selectedRemoved() const {
    const auto found = std::ranges::find_if(
        removed_, [this](const RemovedLook::App& removed) { return removed.app.key() == selectedPath_; });
    return found == removed_.end() ? nullptr : &*found;
}

/// What has moved is no leftover any more, before the next look says so.
void AppsFlow::dropRemovedItems(const std::vector<std::string>& paths) {
    const auto hasMoved = [&](const DeletionItem& item) {
        return std::ranges::find(paths, item.path) != paths.end();
    };
    for (auto& [app, items] : removed_) {
        std::erase_if(app.items, hasMoved);
        std::erase_if(items, [&](const TickedItem& ticked) { return hasMoved(ticked.item); });
        if (items.empty())
            list_.remove(app.key());
    }
    std::erase_if(removed_, [](const RemovedLook::App& removed) { return removed.items.empty(); });
}

void AppsFlow::dismissRemoved() {
    if (selectedRemoved() == nullptr)
        return;
    const auto key = selectedPath_;
    clearSelection();
    std::erase_if(removed_, [&](const RemovedLook::App& removed) { return removed.app.key() == key; });
    list_.remove(key);
    removing_.run(
        [key, packages = SeenPackages(environment_.seenPackagesPath)] { return packages.dismiss(key); },
        [this](std::expected<void, std::string> written) {
            if (!written)
                notice_.show(textOf(written.error()));
            lookForRemoved();
        });
    Q_EMIT changed();
}

void AppsFlow::checkAgain() {
    if (!isLoaded())
        return;
    makePlan();
    lookForRemoved();
}

/// One after another, so that the disk is left to whoever waits for something.
void AppsFlow::measure() {
    std::vector<std::pair<std::string, std::string>> places;
    for (const auto& entry : list_.entries())
        if (auto place = measuredPlace(entry.app); !place.empty())
            places.emplace_back(entry.app.path, std::move(place));
    sizing_.run(
        [this, places = std::move(places)](const LatestJob::Run& run) {
            for (const auto& [path, place] : places) {
                std::optional<std::uint64_t> bytes;
                if (const auto status = platform::fileStatus(place);
                    status && status->type == platform::FileType::directory) {
                    const auto tree = TreeScanner::scan(place, 2, run.cancellation(), nullptr).tree;
                    if (tree.count() > 0)
                        bytes = tree.allocated(0);
                } else if (status) {
                    bytes = status->allocatedBytes;
                }
                if (run.isCancelled())
                    return;
                run.report([this, path, bytes] { list_.setBytes(path, bytes); });
            }
        },
        [this] { Q_EMIT changed(); });
}

void AppsFlow::selectWanted() {
    const auto name = std::exchange(wanted_, std::nullopt);
    if (!name)
        return;
    const auto& entries = list_.entries();
    const auto found = std::ranges::find_if(
        entries, [&](const AppsModel::Entry& entry) { return isCalled(entry.app, *name); });
    if (found == entries.end())
        notice_.show(tr("No app called “%1” was found.").arg(textOf(*name)));
    else
        selectPath(found->app.path);
}

void AppsFlow::selectNamed(const std::string& name) {
    wanted_ = name;
    if (isLoaded() && !isLoading())
        selectWanted();
    else
        open();
}

void AppsFlow::select(int row) {
    if (const auto* entry = list_.at(row))
        selectPath(entry->app.path);
}

void AppsFlow::selectPath(const std::string& path) {
    if (path == selectedPath_)
        return;
    clearSelection();
    selectedPath_ = path;
    preselects_ = true;
    planDelay_.start();
    Q_EMIT changed();
}

void AppsFlow::clearSelection() {
    selectedPath_.clear();
    plan_.reset();
    quitting_ = Quitting::notAsked;
    isLauncherSeen_ = false;
    planDelay_.stop();
    runningPoll_.stop();
    planning_.drop();
    polling_.drop();
    quitJob_.drop();
    ticks_.clear();
    leftovers_.set({}, 0, {}, {});
    Q_EMIT changed();
}

void AppsFlow::makePlan() {
    const auto* const entry = list_.find(selectedPath_);
    if (entry == nullptr)
        return;
    planDelay_.stop();
    if (const auto* const removed = selectedRemoved()) {
        takeRemovedPlan(*removed);
        return;
    }
    planning_.run(
        [app = entry->app, inventory = inventory_, matcher = matcher_, policy = policy_,
         running = environment_.runningPrograms,
         exclusions = scan_.excluded().exclusions()](const LatestJob::Run& run) {
            return AppPlan::make(app, *inventory, *matcher, *policy, running, exclusions, run.cancellation());
        },
        [this](AppPlan plan) { takePlan(std::move(plan)); });
    Q_EMIT changed();
}

void AppsFlow::takePlan(AppPlan made) {
    if (made.plan.runningProcesses.empty())
        quitting_ = Quitting::notAsked;
    // What may not be moved from here is not measured for the plan, but may be known.
    const auto* const entry = list_.find(made.plan.app.path);
    if (auto& app = made.items.front().item; !app.isSelectable() && entry != nullptr)
        app.estimatedBytes = entry->bytes.value_or(0);
    plan_ = std::move(made.plan);
    isLauncherSeen_ = plan_->items.front().scanStamp != FileStamp();
    // What stands above the rows is known before they come: a list measures its headings once.
    Q_EMIT changed();
    const auto noneText = plan_->app.status == Status::system
                              ? tr("A part of the system: what it keeps belongs to the system")
                              : tr("Nothing was found that is only this app’s");
    showItems(std::move(made.items), plan_->ownItems, plan_->systemLeftovers, noneText);
    if (plan_->runningProcesses.empty() && plan_->app.command.empty())
        runningPoll_.stop();
    else
        runningPoll_.start();
    Q_EMIT changed();
}

void AppsFlow::takeRemovedPlan(const RemovedLook::App& removed) {
    Q_EMIT changed();
    showItems(removed.items, 0, {}, {});
    Q_EMIT changed();
}

void AppsFlow::showItems(std::vector<TickedItem> items, std::size_t ownItems,
                         const std::vector<Leftover>& forAdministrators, const QString& noneText) {
    const bool isFirst = std::exchange(preselects_, false);
    std::vector<TickedItem> ticked;
    for (const auto& item : items)
        if (isFirst ? item.item.preselected : ticks_.contains(item.item.id))
            ticked.push_back(item);
    leftovers_.set(std::move(items), ownItems, forAdministrators, noneText);
    ticks_.clear();
    ticks_.tickAll(std::move(ticked));
}

/// While it runs, nothing of it can be ticked: the plan is made anew as soon as it has quit. What a command
/// removes leaves the list as soon as that is done.
void AppsFlow::watchRunning() {
    if (polling_.isRunning() || isPlanning() || !plan_ || shown_.screen() != Screen::uninstall)
        return;
    polling_.run(
        [app = plan_->app, wasRunning = !plan_->runningProcesses.empty(),
         running = environment_.runningPrograms] {
            const bool isThere = platform::fileStatus(app.path).has_value();
            return std::pair(isThere, wasRunning && UninstallPlan::runningOf(app, running()).empty());
        },
        [this](std::pair<bool, bool> seen) {
            const auto [isThere, hasQuit] = seen;
            if (std::exchange(isLauncherSeen_, isThere) && !isThere && !isLoading())
                readAgain();
            else if (hasQuit && !isPlanning()) {
                preselects_ = ticks_.count() == 0;
                makePlan();
            }
        });
}

void AppsFlow::askToQuit() {
    if (!plan_ || plan_->runningProcesses.empty() || quitting_ == Quitting::asked)
        return;
    quitting_ = Quitting::asked;
    quitJob_.run([ask = environment_.askToQuit, running = plan_->runningProcesses] { return ask(running); },
                 [this](bool isAsked) {
                     if (isAsked || quitting_ != Quitting::asked)
                         return;
                     quitting_ = Quitting::refused;
                     Q_EMIT changed();
                 });
    Q_EMIT changed();
}

void AppsFlow::toggleTick(int leftoverRow) {
    if (const auto* const ticked = leftovers_.itemAt(leftoverRow))
        ticks_.setTicked(*ticked, !ticks_.contains(ticked->item.id));
}

void AppsFlow::tickAll() {
    std::vector<TickedItem> items;
    for (int row = 0; row < leftovers_.rowCount(); ++row) {
        if (const auto* const item = leftovers_.itemAt(row))
            items.push_back(*item);
    }
    ticks_.tickAll(std::move(items));
}

void AppsFlow::setFindText(const QString& text) {
    if (text == findText_)
        return;
    findText_ = text;
    list_.setFilter(text);
    Q_EMIT changed();
}

void AppsFlow::sortBy(bool size) {
    // The largest are looked for first, and names from their beginning.
    list_.sortBy(size, size == list_.isBySize() ? !list_.isDescending() : size);
    Q_EMIT changed();
}

QString AppsFlow::countText() const {
    return isLoaded() ? orbel::countText(list_.installedCount()) : QString();
}

QString AppsFlow::summary() const {
    return isLoaded() ? countOf(list_.installedCount(), tr("app"), tr("apps")) : QString();
}

QString AppsFlow::shownText() const {
    const auto shown = static_cast<std::size_t>(list_.rowCount()) - list_.shownRemoved().count;
    return !isLoaded() || shown == list_.installedCount()
               ? summary()
               : tr("%1 of %2").arg(orbel::countText(shown), summary());
}

QString AppsFlow::removedText() const {
    const auto [count, bytes] = list_.shownRemoved();
    return count == 0 ? QString()
                      : tr("%1 · %2").arg(countOf(count, tr("app"), tr("apps")), ByteFigure(bytes).text());
}

AppFacts AppsFlow::selected() const {
    const auto* const entry = list_.find(selectedPath_);
    if (entry == nullptr)
        return {};
    const auto& app = entry->app;
    AppFacts facts;
    facts.valid = true;
    facts.name = textOf(app.name);
    facts.icon = iconAddress(entry->app.icon);
    facts.initial = entry->initial();
    facts.version = textOf(app.version.value_or(""));
    facts.source = textOf(app.source);
    if (const auto* const removed = selectedRemoved())
        return factsOf(removed->app, std::move(facts));
    if (!plan_)
        return facts;

    const auto& running = plan_->runningProcesses;
    facts.runningText = running.empty() ? tr("not running")
                        : running.size() == 1
                            ? tr("running")
                            : tr("running, %1").arg(countOf(running.size(), tr("process"), tr("processes")));
    std::uint64_t appBytes = 0;
    std::uint64_t leftoverBytes = 0;
    for (std::size_t i = 0; i < plan_->items.size(); ++i)
        (i < plan_->ownItems ? appBytes : leftoverBytes) += plan_->items[i].estimatedBytes;
    // What may not be moved from here is not in the plan's figures.
    const bool isAppKnown = appBytes > 0 || entry->bytes;
    if (appBytes == 0)
        appBytes = entry->bytes.value_or(0);
    // Nor is what a running one left.
    const auto leftoverText = running.empty() ? tr("leftovers %1").arg(ByteFigure(leftoverBytes).text())
                                              : tr("leftovers not measured yet");
    facts.total = isAppKnown || leftoverBytes > 0 ? ByteFigure(appBytes + leftoverBytes).text() : QString();
    facts.parts = isAppKnown ? tr("app %1, %2").arg(ByteFigure(appBytes).text(), leftoverText)
                             : tr("%1, the app itself is not measured").arg(leftoverText);
    if (!running.empty()) {
        facts.warning = tr("%1 is running.").arg(facts.name);
        facts.canAskToQuit = quitting_ == Quitting::notAsked;
        facts.explanation =
            quitting_ == Quitting::notAsked
                ? tr("This is the same as choosing Quit in the app. It may ask you to save your work.")
            : quitting_ == Quitting::asked
                ? tr("It was asked to quit. This list changes as soon as it has.")
                : tr("It could not be asked from here. Quit it in the app itself.");
    } else if (app.status == Status::system) {
        facts.warning = tr("%1 is a part of the system.").arg(facts.name);
        facts.explanation = tr("Nothing of it can be moved from here, and what it keeps stays with it.");
    } else if (app.status != Status::removable) {
        facts.warning = whatRemoves(app);
        facts.command = textOf(app.command);
        facts.explanation = app.command.empty()
                                ? tr("It cannot be moved from here, and no command is known that removes it.")
                                : tr("It cannot be moved from here: Vanto runs no package managers. Run this "
                                     "command in a terminal.");
        facts.explanation +=
            QLatin1Char(' ') + staysBehind(plan_->items.size() - plan_->ownItems, leftoverBytes);
    }
    return facts;
}

} // namespace orbel
