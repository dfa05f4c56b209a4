#include "AppModel/DuplicatesFlow.h"

#include "Delete/ExclusionReason.h"
#include "Models/ByteFigure.h"
#include "Models/Wording.h"
#include "Util/Check.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <utility>

namespace orbel {

namespace {

constexpr std::array<std::uint64_t, 4> minimums{100'000, 1'000'000, 10'000'000, 100'000'000};

constexpr auto betweenLooks = std::chrono::milliseconds(100);

/// The groups that are asked about before an answer is given.
constexpr std::size_t groupsInABatch = 500;

/// What was left out of measuring since the search stays.
void refuseExcluded(DeletionItem& item, const Exclusions& exclusions, const SafetyPolicy& policy) {
    if (auto reason = exclusionReason(exclusions, item.path, policy.homePath()))
        item.blockedReason = std::move(reason);
}

DuplicateGroupsModel::Answers answersFor(const DuplicateGroup& group, const SafetyPolicy& policy,
                                         const Exclusions& exclusions) {
    DuplicateGroupsModel::Answers answers;
    for (const auto& file : group.files) {
        auto& item = answers.emplace_back(DuplicateGroup::itemOf(file, policy));
        if (item)
            refuseExcluded(*item, exclusions, policy);
    }
    return answers;
}

} // namespace

DuplicatesFlow::DuplicatesFlow(const AppEnvironment& environment, std::shared_ptr<const SafetyPolicy> policy,
                               const ScanFlow& scan, MoveFlow& moves, const ShownScreen& shown,
                               Notice& notice)
    : environment_(environment),
      policy_(std::move(policy)),
      scan_(scan),
      moves_(moves),
      shown_(shown),
      notice_(notice) {
    progressTimer_.setSingleShot(true);
    progressTimer_.setInterval(betweenLooks);
    connect(&progressTimer_, &QTimer::timeout, this, &DuplicatesFlow::progressChanged);
    connect(&groups_, &DuplicateGroupsModel::changed, this, &DuplicatesFlow::changed);
    connect(&scan, &ScanFlow::treeChanged, this, &DuplicatesFlow::takeTree);
    connect(&moves, &MoveFlow::moved, this, [this](const std::vector<std::string>& paths) {
        groups_.setGone(paths, true);
        clearTicks();
    });
    // Their stamps are still those of the search, and are proved again before any move.
    connect(&moves, &MoveFlow::restored, this,
            [this](const std::vector<std::string>& paths) { check(groups_.setGone(paths, false)); });
}

void DuplicatesFlow::search() {
    if (duplicatesRunning() || !scan_.isMeasuredHere())
        return;
    checking_.drop();
    reviewing_.drop();
    noteChoice();
    groups_.setGroups({}, {});
    duplicatesSearched_ = isPartial_ = isStale_ = false;
    duplicateProgress_.reset();
    searchedMinimum_ = duplicateMinimumBytes_;
    searchedNodes_ = scan_.tree()->count();
    searchedRoot_ = scan_.tree()->rootPath;
    searching_.run(
        [this, tree = scan_.tree(), home = policy_->homePath(),
         minimum = duplicateMinimumBytes_](const LatestJob::Run& run) {
            Found found;
            const auto report = [&](const DuplicateProgress& progress) {
                found.progress = progress;
                run.report([this, progress] {
                    duplicateProgress_ = progress;
                    if (!progressTimer_.isActive())
                        progressTimer_.start();
                });
            };
            auto groups =
                DuplicateFinder{minimum}.run(*tree, home, report, [&] { return run.isCancelled(); });
            found.isStopped = run.isCancelled();
            found.groups.reserve(groups.size());
            for (auto& group : groups)
                found.groups.emplace_back(std::move(group), *tree);
            return found;
        },
        [this](Found found) { takeGroups(std::move(found)); });
    Q_EMIT progressChanged();
    Q_EMIT changed();
}

void DuplicatesFlow::stop() {
    if (!duplicatesRunning() || isStopping())
        return;
    searching_.stop();
    Q_EMIT changed();
}

void DuplicatesFlow::takeGroups(Found found) {
    isPartial_ = found.isStopped && found.progress.bytesCompared < found.progress.bytesToCompare;
    duplicateProgress_ = found.progress;
    duplicatesSearched_ = true;
    searchedAt_ = environment_.now();
    groups_.setGroups(std::move(found.groups), policy_->homePath());
    if (rule_ != KeepRule::newest)
        groups_.setRule(rule_, ruleFolder_);
    checkAll();
    Q_EMIT progressChanged();
    Q_EMIT changed();
}

void DuplicatesFlow::checkAll() {
    checking_.drop();
    std::vector<std::size_t> all(duplicateGroups().size());
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = i;
    check(all);
}

void DuplicatesFlow::takeTree() {
    if (scan_.isScanning() || scan_.isForeign()) {
        // Its tree is no longer the one that is shown.
        searching_.drop();
        clearTicks();
    }
    // An edited tree has the nodes of the one that it was made from.
    if (duplicatesSearched_
        && (scan_.tree()->count() != searchedNodes_ || scan_.tree()->rootPath != searchedRoot_
            || scan_.isScanning()))
        isStale_ = true;
    Q_EMIT changed();
}

/// What stands against moving a copy is told as soon as it is known, group after group: the policy asks the
/// disk about each copy.
void DuplicatesFlow::check(const std::vector<std::size_t>& groups) {
    if (groups.empty())
        return;
    std::vector<std::pair<std::size_t, DuplicateGroup>> asked;
    asked.reserve(groups.size());
    for (const auto number : groups)
        asked.emplace_back(number, duplicateGroups()[number].group());
    checking_.add(
        [this, asked = std::move(asked), policy = policy_,
         exclusions = scan_.excluded().exclusions()](const LatestJob::Run& run) {
            std::vector<DuplicateGroupsModel::Answered> batch;
            const auto deliver = [&] {
                run.report([this, answers = std::exchange(batch, {})] { groups_.setAnswers(answers); });
            };
            for (const auto& [number, group] : asked) {
                if (run.isCancelled())
                    return;
                batch.emplace_back(number, answersFor(group, *policy, exclusions));
                if (batch.size() >= groupsInABatch)
                    deliver();
            }
            deliver();
        },
        [] {});
}

void DuplicatesFlow::toggleTick(int row) {
    if (!groups_.isRow(row))
        return;
    noteChoice();
    groups_.toggleTick(row);
}

void DuplicatesFlow::tickAllOthers() {
    noteChoice();
    groups_.tickAllOthers();
}

void DuplicatesFlow::clearTicks() {
    noteChoice();
    groups_.clearTicks();
}

void DuplicatesFlow::keep(int row) {
    if (!groups_.isRow(row))
        return;
    noteChoice();
    groups_.keep(row);
}

void DuplicatesFlow::keepNewest() {
    setRule(KeepRule::newest, {});
}

void DuplicatesFlow::keepOldest() {
    setRule(KeepRule::oldest, {});
}

void DuplicatesFlow::keepFolderFirst(const QUrl& folder) {
    const auto path = pathOfFileUrl(folder.toEncoded().toStdString());
    if (!path)
        return;
    setRule(KeepRule::folderFirst,
            policy_->canonicalizer().visiblePath(policy_->canonical(*path).value_or(*path)));
}

void DuplicatesFlow::setRule(KeepRule rule, std::string folder) {
    noteChoice();
    rule_ = rule;
    ruleFolder_ = std::move(folder);
    groups_.setRule(rule_, ruleFolder_);
}

void DuplicatesFlow::setFolded(int row, bool folded) {
    if (groups_.isRow(row))
        groups_.setFolded(row, folded);
}

void DuplicatesFlow::setAllFolded(bool folded) {
    groups_.setAllFolded(folded);
}

int DuplicatesFlow::headOf(int row) const {
    return groups_.isRow(row) ? groups_.headOf(row) : -1;
}

void DuplicatesFlow::review() {
    if (isReviewing())
        return;
    if (tickedCount() == 0 || scan_.isScanning()) {
        moves_.ask({}); // which says why nothing comes of it
        return;
    }
    struct Asked {
        std::size_t number;
        DuplicateGroup group;
        std::unordered_set<std::string> ticked;
        std::string kept;
        ContentKind kind;
    };
    std::vector<Asked> asked;
    for (std::size_t i = 0; i < duplicateGroups().size(); ++i) {
        const auto& group = duplicateGroups()[i];
        if (group.figures().ticked > 0)
            asked.push_back({i, group.group(), group.tickedPaths(), group.keptFile().path, group.kind()});
    }
    reviewing_.run(
        [asked = std::move(asked), policy = policy_, exclusions = scan_.excluded().exclusions()] {
            Reviewed reviewed;
            for (const auto& [number, group, ticked, kept, kind] : asked) {
                auto left = ticked;
                auto items = group.deletionItems(ticked, *policy, kept);
                ORBEL_CHECK(items.has_value(), "the kept copy was ticked");
                for (auto& item : *items) {
                    left.erase(item.path);
                    refuseExcluded(item, exclusions, *policy);
                    if (item.isSelectable())
                        reviewed.items.push_back(TickedItem::alone(std::move(item), kind));
                    else
                        reviewed.refused.push_back({number, item.path, item});
                }
                for (const auto& gone : left)
                    reviewed.refused.push_back({number, gone, std::nullopt});
            }
            return reviewed;
        },
        [this, choice = choice_](Reviewed reviewed) { takeReviewed(choice, std::move(reviewed)); });
    Q_EMIT changed();
}

void DuplicatesFlow::takeReviewed(int choice, Reviewed reviewed) {
    Q_EMIT changed();
    if (shown_.screen() != Screen::duplicates)
        return;
    // What is shown for approval is what is ticked now.
    if (choice != choice_) {
        review();
        return;
    }
    if (!reviewed.refused.empty()) {
        const auto& why = reviewed.refused.front().item;
        notice_.show(
            tr("%1 can no longer be moved: %2")
                .arg(countOf(reviewed.refused.size(), tr("ticked copy"), tr("ticked copies")),
                     why ? textOf(why->blockedReason.value_or("")) : tr("It is not there any more")));
        for (const auto& [group, path, item] : reviewed.refused)
            groups_.setAnswer(group, path, item);
    }
    moves_.ask(std::move(reviewed.items));
}

void DuplicatesFlow::setDuplicateMinimumBytes(std::uint64_t bytes) {
    if (bytes == duplicateMinimumBytes_)
        return;
    duplicateMinimumBytes_ = bytes;
    groups_.setFilter(filter_, bytes);
}

QStringList DuplicatesFlow::minimumChoices() const {
    QStringList choices;
    for (const auto bytes : minimums)
        choices << tr("%1 or more").arg(ByteFigure(bytes).text());
    return choices;
}

int DuplicatesFlow::minimumChoice() const {
    const auto found = std::ranges::find(minimums, duplicateMinimumBytes_);
    return found == minimums.end() ? -1 : static_cast<int>(found - minimums.begin());
}

void DuplicatesFlow::setMinimumChoice(int choice) {
    if (choice >= 0 && choice < static_cast<int>(minimums.size()))
        setDuplicateMinimumBytes(minimums.at(static_cast<std::size_t>(choice)));
}

QString DuplicatesFlow::minimumText() const {
    return ByteFigure(duplicateMinimumBytes_).text();
}

void DuplicatesFlow::setFilter(const QString& text) {
    if (text == filter_)
        return;
    filter_ = text;
    groups_.setFilter(filter_, duplicateMinimumBytes_);
}

QString DuplicatesFlow::ruleFolderText() const {
    return rule_ == KeepRule::folderFirst ? textOf(tildePath(ruleFolder_, policy_->homePath())) : QString();
}

QString DuplicatesFlow::countText() const {
    return isKnown() ? orbel::countText(groups_.totals().groups) : QString();
}

QString DuplicatesFlow::groupsText() const {
    if (!duplicatesSearched_)
        return {};
    const auto& totals = groups_.totals();
    const auto all = countOf(totals.groups, tr("group"), tr("groups"));
    return totals.shownGroups == totals.groups
               ? all
               : tr("%1 of %2").arg(orbel::countText(totals.shownGroups), all);
}

QString DuplicatesFlow::potentialText() const {
    return duplicatesSearched_ ? tr("up to %1").arg(ByteFigure(groups_.totals().most).text()) : QString();
}

QString DuplicatesFlow::summary() const {
    return isKnown() ? tr("%1 · %2").arg(groupsText(), potentialText()) : QString();
}

bool DuplicatesFlow::isOutsideHome() const {
    const auto root = policy_->canonicalizer().visiblePath(scan_.tree()->rootPath);
    return scan_.hasTree() && !isPathInside(root, policy_->homePath())
           && !isPathInside(policy_->homePath(), root);
}

QString DuplicatesFlow::scopeText() const {
    if (duplicatesRunning())
        return tr("Home folder · comparing every byte");
    if (!duplicatesSearched_)
        return tr("Home folder · every byte compared");
    const auto when = whenText(searchedAt_, environment_.now());
    return isPartial_ ? tr("Home folder · partly searched %1").arg(when)
                      : tr("Home folder · every byte compared · searched %1").arg(when);
}

double DuplicatesFlow::share() const {
    if (!duplicateProgress_ || duplicateProgress_->bytesToCompare == 0)
        return 0;
    return static_cast<double>(duplicateProgress_->bytesCompared)
           / static_cast<double>(duplicateProgress_->bytesToCompare);
}

QString DuplicatesFlow::comparedText() const {
    if (!duplicateProgress_)
        return tr("Looking for files of equal size");
    return tr("%1 of %2 compared")
        .arg(ByteFigure(duplicateProgress_->bytesCompared).text(),
             ByteFigure(duplicateProgress_->bytesToCompare).text());
}

QString DuplicatesFlow::foundCount() const {
    const auto found = duplicateProgress_ ? duplicateProgress_->groupsFound : 0;
    return orbel::countText(static_cast<std::uint64_t>(found));
}

QString DuplicatesFlow::foundNoun() const {
    return duplicateProgress_ && duplicateProgress_->groupsFound == 1 ? tr("group found")
                                                                      : tr("groups found");
}

QString DuplicatesFlow::tickedText() const {
    return countOf(groups_.totals().ticked, tr("copy ticked"), tr("copies ticked"));
}

QString DuplicatesFlow::tickedFrees() const {
    return tr("frees %1").arg(rangeText(groups_.totals().tickedLeast, groups_.totals().tickedMost));
}

QString DuplicatesFlow::tickedRemark() const {
    const auto& totals = groups_.totals();
    if (totals.hiddenTicked > 0)
        return tr("%1 of %2 hidden by filters")
            .arg(orbel::countText(totals.hiddenTicked), orbel::countText(totals.ticked));
    return totals.tickedGroups == 1 ? tr("in 1 group; its kept copy is checked again before the move")
                                    : tr("in %1 groups; each kept copy is checked again before the move")
                                          .arg(orbel::countText(totals.tickedGroups));
}

QString DuplicatesFlow::reviewText() const {
    return tr("Review %1…").arg(countOf(groups_.totals().ticked, tr("Item"), tr("Items")));
}

} // namespace orbel
