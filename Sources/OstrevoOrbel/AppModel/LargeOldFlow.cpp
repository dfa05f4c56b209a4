#include "AppModel/LargeOldFlow.h"

#include "Models/ByteFigure.h"
#include "Models/FreedAside.h"
#include "Models/Wording.h"

#include <algorithm>
#include <array>
#include <ranges>

namespace orbel {

namespace {

std::vector<TickedItem> selectable(const LargeOldList& list, const std::vector<std::uint32_t>& rows,
                                   const LatestJob::Run& run) {
    std::vector<TickedItem> items;
    items.reserve(rows.size());
    for (const auto row : rows) {
        if (run.isCancelled())
            break;
        if (list.rows()[row].item.isSelectable())
            items.push_back(list.ticked(row));
    }
    return items;
}

constexpr std::array<std::uint64_t, 5> sizeChoices{10'000'000, 50'000'000, LargeOldQuery::defaultMinimumBytes,
                                                   500'000'000, 1'000'000'000};

constexpr double month = LargeOldQuery::defaultUnusedFor / 12;
constexpr std::array<std::optional<double>, 5> ageChoices{
    std::nullopt, month, 6 * month, LargeOldQuery::defaultUnusedFor, 2 * LargeOldQuery::defaultUnusedFor};

/// All that a row can be: plain folders have none.
constexpr auto kindChoices = [] {
    std::array<ContentKind, shownContentKinds.size() - 1> kinds{};
    std::ranges::remove_copy(shownContentKinds, kinds.begin(), ContentKind::folder);
    return kinds;
}();

template <class Choices, class Value>
int indexIn(const Choices& choices, const Value& value) {
    const auto found = std::ranges::find(choices, value);
    return found == choices.end() ? -1 : static_cast<int>(found - choices.begin());
}

} // namespace

LargeOldFlow::LargeOldFlow(const AppEnvironment& environment, std::shared_ptr<const SafetyPolicy> policy,
                           const ScanFlow& scan, MoveFlow& moves)
    : environment_(environment),
      policy_(std::move(policy)),
      scan_(scan),
      list_(std::make_shared<LargeOldList>()),
      model_(ticks_, environment.home) {
    connect(&scan, &ScanFlow::treeChanged, this, &LargeOldFlow::followTree);
    connect(&scan, &ScanFlow::scanStateChanged, this, &LargeOldFlow::changed);
    connect(&moves, &MoveFlow::moved, this, &LargeOldFlow::dropMoved);
    moves.watch(ticks_);
    connect(&ticks_, &Ticks::changed, &model_, &LargeOldModel::tellTicks);
    ticks_.setPosition([this](const TickedItem& ticked) {
        // What filters hide comes last.
        return static_cast<std::size_t>(static_cast<unsigned>(model_.placeOf(ticked.item.path)));
    });
}

/// What was put back comes with the tree too.
void LargeOldFlow::followTree() {
    tickingAll_.drop();
    if (scan_.hasTree()) {
        refresh();
        return;
    }
    finding_.drop();
    list_ = std::make_shared<LargeOldList>();
    arrangement_.gone.clear();
    bytes_ = 0;
    version_ = -1;
    isKnown_ = false;
    arranging_.drop();
    show({});
}

void LargeOldFlow::refresh() {
    auto arrangement = arrangement_;
    arrangement.gone.clear();
    finding_.run(
        [tree = scan_.tree(), policy = policy_, query = query_, arrangement = std::move(arrangement),
         now = std::chrono::time_point_cast<Date::duration>(environment_.now()),
         find = environment_.findLargeOld,
         elsewhere = scan_.isForeign() ? std::optional(scan_.keptStatement().toStdString())
                                       : std::nullopt](const LatestJob::Run& run) {
            Found found{.list = nullptr, .arrangement = arrangement, .order = {}};
            const auto isCancelled = [&] { return run.isCancelled(); };
            auto rows = elsewhere ? query.shownOnly(*tree, now, elsewhere, isCancelled)
                                  : find(query, *tree, *policy, now, isCancelled);
            constexpr std::size_t quicklyFreed = 2'000;
            const bool isLong = rows.size() > quicklyFreed;
            found.list = freedAside(std::make_unique<const LargeOldList>(std::move(rows), *tree), isLong);
            found.order = arranged(*found.list, arrangement, policy->homePath());
            return found;
        },
        [this, version = scan_.treeVersion()](Found found) { take(std::move(found), version); });
    Q_EMIT changed();
}

void LargeOldFlow::take(Found found, int version) {
    list_ = std::move(found.list);
    arrangement_.gone.clear();
    version_ = version;
    isKnown_ = true;
    bytes_ = 0;
    for (const auto& row : list_->rows())
        bytes_ += row.bytes;
    if (found.arrangement == arrangement_) {
        arranging_.drop();
        show(std::move(found.order));
    } else {
        arrange();
    }
}

void LargeOldFlow::arrange() {
    arranging_.run([list = list_, arrangement = arrangement_,
                    home = policy_->homePath()] { return arranged(*list, arrangement, home); },
                   [this](LargeOldOrder order) { show(std::move(order)); });
    Q_EMIT changed();
}

void LargeOldFlow::show(LargeOldOrder order) {
    model_.show(list_, std::move(order));
    ticks_.setFilter([this](const TickedItem& ticked) { return model_.placeOf(ticked.item.path) >= 0; });
    Q_EMIT changed();
}

void LargeOldFlow::dropMoved(const std::vector<std::string>& moved) {
    // What is being looked for may have seen them; the tree without them, which is about to come, has it
    // looked for again.
    finding_.drop();
    tickingAll_.drop();
    for (const auto& path : moved) {
        const auto row = list_->find(path);
        if (row && arrangement_.gone.insert(*row).second)
            bytes_ -= list_->rows()[*row].bytes;
    }
    model_.drop(moved);
    arrange();
}

void LargeOldFlow::setLargeOldQuery(LargeOldQuery query) {
    query_ = std::move(query);
    if (scan_.hasTree())
        refresh();
    else
        Q_EMIT changed();
}

void LargeOldFlow::sortBy(int column) {
    const auto wanted = static_cast<LargeOldArrangement::Column>(column);
    if (wanted == arrangement_.column) {
        arrangement_.descending = !arrangement_.descending;
    } else {
        arrangement_.column = wanted;
        arrangement_.descending = wanted == LargeOldArrangement::Column::size;
    }
    arrange();
}

void LargeOldFlow::toggleTick(quint32 node) {
    const auto row = list_->find(node);
    if (!row || arrangement_.gone.contains(*row))
        return;
    auto item = list_->ticked(*row);
    const bool wasTicked = ticks_.contains(item.item.id);
    ticks_.setTicked(std::move(item), !wasTicked);
}

void LargeOldFlow::tickAll() {
    tickingAll_.run([list = list_, rows = model_.shown()](const LatestJob::Run& run) {
        return selectable(*list, rows, run);
    });
}

std::size_t LargeOldFlow::count() const {
    return list_->rows().size() - arrangement_.gone.size();
}

QString LargeOldFlow::countedFiles() const {
    const auto files = countOf(count(), tr("file"), tr("files"));
    return scan_.isPartial() ? tr("%1 so far").arg(files) : files;
}

QString LargeOldFlow::countText() const {
    return isKnown_ ? orbel::countText(count()) : QString();
}

QString LargeOldFlow::summary() const {
    return isKnown_ ? tr("%1 · %2").arg(countedFiles(), ByteFigure(bytes_).text()) : QString();
}

QString LargeOldFlow::shownCount() const {
    const auto shown = static_cast<std::size_t>(model_.rowCount());
    if (!isKnown_)
        return {};
    return shown == count() ? countedFiles() : tr("%1 of %2").arg(orbel::countText(shown), countedFiles());
}

QString LargeOldFlow::shownSize() const {
    return isKnown_ ? ByteFigure(model_.bytes()).text() : QString();
}

QStringList LargeOldFlow::sizes() const {
    QStringList words;
    for (const auto bytes : sizeChoices)
        words << tr("%1 or more").arg(ByteFigure(bytes).text());
    return words;
}

int LargeOldFlow::size() const {
    return indexIn(sizeChoices, query_.minimumBytes);
}

void LargeOldFlow::setSize(int choice) {
    if (choice == size())
        return;
    auto query = query_;
    query.minimumBytes = sizeChoices.at(static_cast<std::size_t>(choice));
    setLargeOldQuery(std::move(query));
}

QStringList LargeOldFlow::ages() const {
    return {tr("any time"), tr("1 month"), tr("6 months"), tr("1 year"), tr("2 years")};
}

int LargeOldFlow::age() const {
    return indexIn(ageChoices, query_.unusedFor);
}

void LargeOldFlow::setAge(int choice) {
    if (choice == age())
        return;
    auto query = query_;
    query.unusedFor = ageChoices.at(static_cast<std::size_t>(choice));
    setLargeOldQuery(std::move(query));
}

QStringList LargeOldFlow::kinds() const {
    QStringList words{tr("All kinds")};
    for (const auto kind : kindChoices)
        words << textOf(title(kind));
    return words;
}

int LargeOldFlow::kind() const {
    return query_.contents.size() == 1 ? indexIn(kindChoices, *query_.contents.begin()) + 1 : 0;
}

void LargeOldFlow::setKind(int choice) {
    if (choice == kind())
        return;
    auto query = query_;
    query.contents.clear();
    if (choice > 0)
        query.contents.insert(kindChoices[static_cast<std::size_t>(choice) - 1]);
    setLargeOldQuery(std::move(query));
}

QString LargeOldFlow::text() const {
    return QString::fromStdString(arrangement_.text);
}

void LargeOldFlow::setText(const QString& text) {
    if (text.trimmed() == LargeOldFlow::text())
        return;
    arrangement_.text = text.trimmed().toStdString();
    arrange();
}

} // namespace orbel
