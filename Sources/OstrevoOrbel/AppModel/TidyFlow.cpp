#include "AppModel/TidyFlow.h"

#include "Models/MapWords.h"
#include "Models/PathSet.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <utility>

namespace orbel {

namespace {

using Shortcuts = BrokenShortcutFinder;

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

std::shared_ptr<const TidyListModel::Row> rowOf(const Shortcuts::Row& found) {
    TidyListModel::Row row{.item = TickedItem::alone(found.item, ContentKind::other),
                           .isPreselected = found.item.preselected};
    row.item.kindName = wordOf(rawValue(found.kind));
    row.detail =
        found.kind == Shortcuts::Kind::symbolicLink ? QString() : row.item.kindName + QLatin1Char(' ');
    row.detail +=
        TidyFlow::tr("→ %1").arg(found.target.empty() ? TidyFlow::tr("not known") : textOf(found.target));
    row.badge = wordOf(rawValue(found.state));
    row.isAmiss = found.state == Shortcuts::State::missing && found.item.isSelectable();
    // That it is intentional is all that there is to say.
    if (found.item.blockedReason && found.state != Shortcuts::State::intentional)
        row.detail += QStringLiteral(" · ") + textOf(*found.item.blockedReason);
    return std::make_shared<const TidyListModel::Row>(std::move(row));
}

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
    connect(&folders_, &TidyListModel::changed, this, &TidyFlow::changed);
    connect(&shortcuts_, &TidyListModel::changed, this, &TidyFlow::changed);
    connect(&scan, &ScanFlow::treeChanged, this, &TidyFlow::takeTree);
    connect(&scan, &ScanFlow::scanStateChanged, this, &TidyFlow::refreshIfShown);
    connect(&shown, &ShownScreen::changed, this, &TidyFlow::refreshIfShown);
    // The edited tree comes later, and with it the next refresh.
    connect(&moves, &MoveFlow::moved, this, &TidyFlow::drop);
}

void TidyFlow::takeTree() {
    if (scan_.isScanning())
        clear();
    refreshIfShown();
}

void TidyFlow::drop(const std::vector<std::string>& paths) {
    const PathSet places(paths);
    const auto isGone = [&](const auto& row) { return places.covers(row.item.path); };
    tickingFolders_.drop();
    tickingShortcuts_.drop();
    std::erase_if(emptyFolderRows_, isGone);
    std::erase_if(brokenShortcutRows_, isGone);
    folders_.remove(paths);
    shortcuts_.remove(paths);
}

void TidyFlow::clear() {
    job_.drop();
    tickingFolders_.drop();
    tickingShortcuts_.drop();
    tidyVersion_ = -1;
    emptyFolderRows_.clear();
    brokenShortcutRows_.clear();
    for (auto* list : {&folders_, &shortcuts_}) {
        list->forgetChoices();
        list->clear();
    }
    Q_EMIT changed();
}

void TidyFlow::refreshIfShown() {
    if (shown_.screen() == Screen::tidy && scan_.hasTree() && tidyVersion_ != scan_.treeVersion())
        refresh();
}

void TidyFlow::lookAgain() {
    if (scan_.hasTree())
        refresh();
}

void TidyFlow::refresh() {
    const auto ofFolders = folders_.choices();
    const auto ofShortcuts = shortcuts_.choices();
    job_.run(
        [tree = scan_.tree(), policy = policy_, finder = emptyFolderFinder_, isPartial = scan_.isPartial(),
         clock = environment_.now(), ofFolders, ofShortcuts](const LatestJob::Run& run) {
            const auto now = std::chrono::time_point_cast<Date::duration>(clock);
            const auto isCancelled = [&] { return run.isCancelled(); };
            Found found;
            if (!isPartial)
                found.folders = finder.run(*tree, *policy, now, isCancelled);
            found.shortcuts = Shortcuts().run(*tree, *policy, now, isCancelled);
            for (const auto& folder : found.folders)
                found.folderRows.push_back(rowOf(folder, clock));
            for (const auto& shortcut : found.shortcuts)
                found.shortcutRows.push_back(rowOf(shortcut));
            found.tickedFolders = ofFolders.of(found.folderRows);
            found.tickedShortcuts = ofShortcuts.of(found.shortcutRows);
            return found;
        },
        [this, version = scan_.treeVersion(), ofFolders, ofShortcuts](Found found) {
            take(version, std::move(found), ofFolders, ofShortcuts);
        });
    Q_EMIT changed();
}

void TidyFlow::take(int version, Found found, const TidyListModel::Choices& ofFolders,
                    const TidyListModel::Choices& ofShortcuts) {
    tickingFolders_.drop();
    tickingShortcuts_.drop();
    tidyVersion_ = version;
    emptyFolderRows_ = std::move(found.folders);
    brokenShortcutRows_ = std::move(found.shortcuts);
    folders_.setRows(std::move(found.folderRows), environment_.home, ofFolders,
                     std::move(found.tickedFolders));
    shortcuts_.setRows(std::move(found.shortcutRows), environment_.home, ofShortcuts,
                       std::move(found.tickedShortcuts));
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
    (list == &folders_ ? tickingFolders_ : tickingShortcuts_)
        .run(
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
    folders_.setFilter(text);
    shortcuts_.setFilter(text);
    Q_EMIT changed();
}

QString TidyFlow::countText() const {
    const auto count = folders_.total() + shortcuts_.total();
    return isKnown() ? orbel::countText(static_cast<std::uint64_t>(count)) : QString();
}

QString TidyFlow::summary() const {
    if (!isKnown())
        return {};
    return tr("%1, %2").arg(
        countOf(static_cast<std::uint64_t>(folders_.total()), tr("empty folder"), tr("empty folders")),
        countOf(static_cast<std::uint64_t>(shortcuts_.total()), tr("broken shortcut"),
                tr("broken shortcuts")));
}

QString TidyFlow::foldersText() const {
    const auto inside = folders_.totalInside();
    const auto topmost = static_cast<std::uint64_t>(folders_.total());
    const auto words = countOf(topmost, tr("topmost folder"), tr("topmost folders"));
    return inside == topmost ? words : tr("%1, %2 with those inside").arg(words, orbel::countText(inside));
}

QString TidyFlow::shortcutsText() const {
    std::array<std::uint64_t, RawValues<Shortcuts::State>::names.size()> counts{};
    for (const auto& row : brokenShortcutRows_)
        ++counts.at(static_cast<std::size_t>(row.state));
    QStringList states;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts.at(i) > 0)
            states << orbel::countText(counts.at(i)) + QLatin1Char(' ')
                          + textOf(rawValue(static_cast<Shortcuts::State>(i)));
    }
    const auto found = tr("%1 found").arg(orbel::countText(brokenShortcutRows_.size()));
    return states.isEmpty() ? found : tr("%1: %2").arg(found, states.join(QStringLiteral(", ")));
}

QString TidyFlow::foldersTicked() const {
    const auto ticked = static_cast<std::uint64_t>(folders_.tickedCount());
    const auto inside = static_cast<std::uint64_t>(folders_.tickedInside());
    const auto words = tickedWords(folders_);
    return inside == ticked ? words : tr("%1, %2 with those inside").arg(words, orbel::countText(inside));
}

QString TidyFlow::shortcutsTicked() const {
    return tickedWords(shortcuts_);
}

QString TidyFlow::moveFoldersText() const {
    const auto count = static_cast<std::uint64_t>(folders_.tickedCount());
    return tr("Move %1 to the Trash")
        .arg(count == 0 ? tr("empty folders") : countOf(count, tr("empty folder"), tr("empty folders")));
}

QString TidyFlow::moveShortcutsText() const {
    const auto count = static_cast<std::uint64_t>(shortcuts_.tickedCount());
    return tr("Move %1 to the Trash")
        .arg(count == 0 ? tr("shortcuts") : countOf(count, tr("shortcut"), tr("shortcuts")));
}

} // namespace orbel
