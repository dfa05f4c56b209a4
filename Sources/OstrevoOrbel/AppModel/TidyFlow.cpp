#include "AppModel/TidyFlow.h"

#include "Models/ByteFigure.h"
#include "Models/MapWords.h"
#include "Models/PathSet.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace orbel {

namespace {

using Shortcut = BrokenShortcutFinder;

/// "Symbolic link" for `symbolicLink`: whatever kinds there are, each has its own word.
QString wordOf(std::string_view rawValue) {
    QString word;
    for (const char letter : rawValue) {
        const auto character = QLatin1Char(letter);
        if (!word.isEmpty() && character >= QLatin1Char('A') && character <= QLatin1Char('Z'))
            word += QLatin1Char(' ') + QString(character).toLower();
        else
            word += character;
    }
    word.front() = word.front().toUpper();
    return word;
}

QString changedWords(Date changed, std::chrono::system_clock::time_point now) {
    using Clock = std::chrono::system_clock::duration; // ends in 2262; what was changed today is within it
    if (dayText(changed) == dayText(std::chrono::floor<Date::duration>(now)))
        return TidyFlow::tr("changed %1").arg(whenText(std::chrono::time_point_cast<Clock>(changed), now));
    return TidyFlow::tr("changed %1").arg(dayText(changed));
}

std::shared_ptr<const TidyListModel::Row> rowOf(const EmptyFolderFinder::Row& found,
                                                std::chrono::system_clock::time_point now) {
    TidyListModel::Row row{.item = TickedItem::alone(found.item, ContentKind::folder),
                           .isPreselected = found.item.preselected};
    row.item.count = found.nestedCount;
    row.detail = changedWords(found.changed, now);
    if (found.nestedCount > 1)
        row.detail =
            TidyFlow::tr("holds %1 empty folders · %2").arg(countText(found.nestedCount), row.detail);
    if (found.item.blockedReason)
        row.badge = textOf(*found.item.blockedReason);
    else if (!found.item.preselected)
        row.badge = row.detail.contains(TidyFlow::tr("changed today"))
                        ? TidyFlow::tr("Changed today, left unticked")
                        : TidyFlow::tr("Changed lately, left unticked");
    return std::make_shared<const TidyListModel::Row>(std::move(row));
}

std::shared_ptr<const TidyListModel::Row> rowOf(const Shortcut::Row& found) {
    TidyListModel::Row row{.item = TickedItem::alone(found.item, ContentKind::other),
                           .isPreselected = found.item.preselected};
    row.item.kindName = wordOf(rawValue(found.kind));
    row.detail =
        found.kind == Shortcut::Kind::symbolicLink ? QString() : row.item.kindName + QLatin1Char(' ');
    row.detail +=
        TidyFlow::tr("→ %1").arg(found.target.empty() ? TidyFlow::tr("not known") : textOf(found.target));
    row.badge = wordOf(rawValue(found.state));
    row.isAmiss = found.state == Shortcut::State::missing && found.item.isSelectable();
    // That it is intentional is all that there is to say.
    if (found.item.blockedReason && found.state != Shortcut::State::intentional)
        row.detail += QStringLiteral(" · ") + textOf(*found.item.blockedReason);
    return std::make_shared<const TidyListModel::Row>(std::move(row));
}

std::shared_ptr<const TidyListModel::Row> rowOf(const RebuildableFinder::Row& found, const FileTree& tree) {
    TidyListModel::Row row{.item = TickedItem::ofNode(found.item, tree, found.index),
                           .isPreselected = found.item.preselected,
                           .isSized = true,
                           .program = textOf(found.program),
                           .newestChange = found.newestChange};
    QStringList words{textOf(found.evidence)};
    if (!found.program.empty())
        words << TidyFlow::tr("%1 makes it again").arg(row.program);
    words << TidyFlow::tr("changed %1").arg(dayText(found.newestChange));
    row.detail = words.join(QStringLiteral(" · "));
    row.badge = textOf(found.item.blockedReason.value_or(found.item.note.value_or("")));
    row.isAmiss = found.item.note.has_value() && found.item.isSelectable();
    return std::make_shared<const TidyListModel::Row>(std::move(row));
}

/// The programs that make rows again, the one with the most bytes first.
QStringList programsOf(const TidyListModel::Rows& rows) {
    std::map<QString, std::uint64_t> bytes;
    for (const auto& row : rows)
        if (!row->program.isEmpty())
            bytes[row->program] += row->item.item.estimatedBytes;
    std::vector<std::pair<QString, std::uint64_t>> programs(bytes.begin(), bytes.end());
    std::ranges::stable_sort(programs, std::ranges::greater(), &std::pair<QString, std::uint64_t>::second);
    QStringList names;
    for (const auto& program : programs)
        names << program.first;
    return names;
}

/// Days without a change.
constexpr std::array unchangedDays{0, 30, 90, 365};

QString tickedWords(const TidyListModel& list) {
    const auto words =
        TidyFlow::tr("%1 ticked").arg(countText(static_cast<std::uint64_t>(list.tickedCount())));
    return list.hiddenTicked() == 0
               ? words
               : TidyFlow::tr("%1, %2 of them hidden")
                     .arg(words, countText(static_cast<std::uint64_t>(list.hiddenTicked())));
}

} // namespace

TidyFlow::TidyFlow(const AppEnvironment& environment, std::shared_ptr<const SafetyPolicy> policy,
                   const ScanFlow& scan, MoveFlow& moves, const ShownScreen& shown)
    : environment_(environment), policy_(std::move(policy)), scan_(scan), moves_(moves), shown_(shown) {
    for (auto& list : lists_)
        connect(&list.model, &TidyListModel::changed, this, &TidyFlow::changed);
    connect(&scan, &ScanFlow::treeChanged, this, &TidyFlow::takeTree);
    connect(&scan, &ScanFlow::scanStateChanged, this, &TidyFlow::refreshIfShown);
    connect(&shown, &ShownScreen::changed, this, &TidyFlow::refreshIfShown);
    // The edited tree comes later, and with it the next refresh.
    connect(&moves, &MoveFlow::moved, this, &TidyFlow::drop);
}

void TidyFlow::takeTree() {
    if (scan_.isScanning() || scan_.isForeign())
        clear();
    refreshIfShown();
}

void TidyFlow::drop(const std::vector<std::string>& paths) {
    const PathSet places(paths);
    const auto isGone = [&](const auto& row) { return places.covers(row.item.path); };
    std::erase_if(emptyFolderRows_, isGone);
    std::erase_if(brokenShortcutRows_, isGone);
    for (auto& list : lists_) {
        list.ticking.drop();
        list.model.remove(paths);
    }
}

void TidyFlow::clear() {
    job_.drop();
    tidyVersion_ = -1;
    emptyFolderRows_.clear();
    brokenShortcutRows_.clear();
    for (auto& list : lists_) {
        list.ticking.drop();
        list.model.forgetChoices();
        list.model.clear();
    }
    Q_EMIT changed();
}

void TidyFlow::refreshIfShown() {
    if (shown_.screen() == Screen::tidy && scan_.isMeasuredHere() && tidyVersion_ != scan_.treeVersion())
        refresh();
}

void TidyFlow::lookAgain() {
    if (scan_.isMeasuredHere())
        refresh();
}

void TidyFlow::refresh() {
    const Choices choices{model(Rebuildable).choices(), model(Folders).choices(), model(Shortcuts).choices()};
    job_.run(
        [tree = scan_.tree(), policy = policy_, finder = emptyFolderFinder_, isPartial = scan_.isPartial(),
         clock = environment_.now(), choices](const LatestJob::Run& run) {
            const auto now = std::chrono::time_point_cast<Date::duration>(clock);
            const auto isCancelled = [&] { return run.isCancelled(); };
            Found found;
            if (!isPartial) {
                const InUseChecker::OpenFiles openFiles(takeMappedSnapshot());
                for (const auto& row : RebuildableFinder().run(*tree, *policy, now, openFiles, isCancelled))
                    found.rows[Rebuildable].push_back(rowOf(row, *tree));
                found.folders = finder.run(*tree, *policy, now, isCancelled);
            }
            found.shortcuts = Shortcut().run(*tree, *policy, now, isCancelled);
            for (const auto& folder : found.folders)
                found.rows[Folders].push_back(rowOf(folder, clock));
            for (const auto& shortcut : found.shortcuts)
                found.rows[Shortcuts].push_back(rowOf(shortcut));
            for (std::size_t kind = 0; kind < choices.size(); ++kind)
                found.ticked.at(kind) = choices.at(kind).of(found.rows.at(kind));
            return found;
        },
        [this, version = scan_.treeVersion(), choices](Found found) {
            take(version, std::move(found), choices);
        });
    Q_EMIT changed();
}

void TidyFlow::take(int version, Found found, const Choices& choices) {
    tidyVersion_ = version;
    emptyFolderRows_ = std::move(found.folders);
    brokenShortcutRows_ = std::move(found.shortcuts);
    programs_ = programsOf(found.rows[Rebuildable]);
    if (!programs_.contains(program_)) {
        program_.clear();
        filterRebuildable();
    }
    for (std::size_t kind = 0; kind < lists_.size(); ++kind) {
        auto& list = lists_.at(kind);
        list.ticking.drop();
        list.model.setRows(std::move(found.rows.at(kind)), environment_.home, choices.at(kind),
                           std::move(found.ticked.at(kind)));
    }
    Q_EMIT changed();
    refreshIfShown();
}

void TidyFlow::toggleTick(TidyListModel* list, int row) {
    if (list->isRow(row))
        list->setTicked(row, !list->isTicked(row));
}

void TidyFlow::setAllTicked(TidyListModel* list, bool ticked) {
    if (!ticked) {
        list->untickAll();
        return;
    }
    const auto of = std::ranges::find(lists_, list, [](List& each) { return &each.model; });
    of->ticking.run(
        [rows = list->shownRows()](const LatestJob::Run& run) {
            std::vector<TickedItem> items;
            items.reserve(rows.size());
            for (const auto& row : rows) {
                if (run.isCancelled())
                    break;
                items.push_back(row->item);
            }
            return items;
        },
        [list] { list->noteAllTicked(); });
}

void TidyFlow::review(TidyListModel* list) {
    moves_.ask(list->ticked());
}

void TidyFlow::setFilter(const QString& text) {
    if (text == filter_)
        return;
    filter_ = text;
    model(Folders).setFilter({.text = text});
    model(Shortcuts).setFilter({.text = text});
    filterRebuildable();
    Q_EMIT changed();
}

void TidyFlow::filterRebuildable() {
    TidyListModel::Filter filter{.text = filter_, .program = program_};
    if (const int days = unchangedDays.at(static_cast<std::size_t>(age_)); days > 0)
        filter.unchangedSince =
            std::chrono::time_point_cast<Date::duration>(environment_.now() - std::chrono::days(days));
    model(Rebuildable).setFilter(std::move(filter));
}

int TidyFlow::program() const {
    return static_cast<int>(programs_.indexOf(program_)) + 1;
}

void TidyFlow::setProgram(int choice) {
    program_ = choice > 0 ? programs_.value(choice - 1) : QString();
    filterRebuildable();
    Q_EMIT changed();
}

QStringList TidyFlow::ages() const {
    return {tr("any time"), tr("1 month"), tr("3 months"), tr("1 year")};
}

void TidyFlow::setAge(int choice) {
    age_ = choice;
    filterRebuildable();
    Q_EMIT changed();
}

QString TidyFlow::countText() const {
    int count = 0;
    for (const auto& list : lists_)
        count += list.model.total();
    return isKnown() ? orbel::countText(static_cast<std::uint64_t>(count)) : QString();
}

QString TidyFlow::summary() const {
    if (!isKnown())
        return {};
    const auto words = tr("%1, %2").arg(
        countOf(static_cast<std::uint64_t>(model(Folders).total()), tr("empty folder"), tr("empty folders")),
        countOf(static_cast<std::uint64_t>(model(Shortcuts).total()), tr("broken shortcut"),
                tr("broken shortcuts")));
    return model(Rebuildable).total() == 0
               ? words
               : tr("%1 rebuildable, %2").arg(ByteFigure(model(Rebuildable).totalBytes()).text(), words);
}

QString TidyFlow::rebuildableText() const {
    const auto& list = model(Rebuildable);
    return tr("%1 · %2").arg(countOf(static_cast<std::uint64_t>(list.total()), tr("folder"), tr("folders")),
                             ByteFigure(list.totalBytes()).text());
}

QString TidyFlow::rebuildableTicked() const {
    const auto& list = model(Rebuildable);
    const auto words = tickedWords(list);
    return list.tickedCount() == 0 ? words : tr("%1 · %2").arg(words, ByteFigure(list.tickedBytes()).text());
}

QString TidyFlow::moveRebuildableText() const {
    const auto count = static_cast<std::uint64_t>(model(Rebuildable).tickedCount());
    return tr("Move %1 to the Trash")
        .arg(count == 0 ? tr("folders") : countOf(count, tr("folder"), tr("folders")));
}

QString TidyFlow::foldersText() const {
    const auto inside = model(Folders).totalInside();
    const auto topmost = static_cast<std::uint64_t>(model(Folders).total());
    const auto words = countOf(topmost, tr("topmost folder"), tr("topmost folders"));
    return inside == topmost ? words : tr("%1, %2 with those inside").arg(words, orbel::countText(inside));
}

QString TidyFlow::shortcutsText() const {
    std::array<std::uint64_t, RawValues<Shortcut::State>::names.size()> counts{};
    for (const auto& row : brokenShortcutRows_)
        ++counts.at(static_cast<std::size_t>(row.state));
    QStringList states;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts.at(i) > 0)
            states << orbel::countText(counts.at(i)) + QLatin1Char(' ')
                          + textOf(rawValue(static_cast<Shortcut::State>(i)));
    }
    const auto found = tr("%1 found").arg(orbel::countText(brokenShortcutRows_.size()));
    return states.isEmpty() ? found : tr("%1: %2").arg(found, states.join(QStringLiteral(", ")));
}

QString TidyFlow::foldersTicked() const {
    const auto ticked = static_cast<std::uint64_t>(model(Folders).tickedCount());
    const auto inside = static_cast<std::uint64_t>(model(Folders).tickedInside());
    const auto words = tickedWords(model(Folders));
    return inside == ticked ? words : tr("%1, %2 with those inside").arg(words, orbel::countText(inside));
}

QString TidyFlow::shortcutsTicked() const {
    return tickedWords(model(Shortcuts));
}

QString TidyFlow::moveFoldersText() const {
    const auto count = static_cast<std::uint64_t>(model(Folders).tickedCount());
    return tr("Move %1 to the Trash")
        .arg(count == 0 ? tr("empty folders") : countOf(count, tr("empty folder"), tr("empty folders")));
}

QString TidyFlow::moveShortcutsText() const {
    const auto count = static_cast<std::uint64_t>(model(Shortcuts).tickedCount());
    return tr("Move %1 to the Trash")
        .arg(count == 0 ? tr("shortcuts") : countOf(count, tr("shortcut"), tr("shortcuts")));
}

} // namespace orbel
