#include "Models/DuplicateGroupsModel.h"

#include "Models/ByteFigure.h"
#include "Models/ItemKey.h"
#include "Models/MapWords.h"
#include "Models/PathSet.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <ranges>

namespace orbel {

namespace {

/// Before the number of a group, in the key of its head.
constexpr QLatin1String headKey("group ");

/// A list that changes in more places than this is shown anew.
constexpr std::size_t mostChanges = 50;

/// From the first to the last position of each run of `positions`, which are in order.
std::vector<std::pair<int, int>> runsOf(const std::vector<int>& positions) {
    std::vector<std::pair<int, int>> runs;
    for (const int position : positions) {
        if (!runs.empty() && runs.back().second + 1 == position)
            runs.back().second = position;
        else
            runs.emplace_back(position, position);
    }
    return runs;
}

/// Where the elements of one sorted list are that the other does not have.
template <class T>
std::vector<int> positionsMissingIn(const std::vector<T>& list, const std::vector<T>& other) {
    std::vector<int> positions;
    auto found = other.begin();
    for (std::size_t i = 0; i < list.size(); ++i) {
        while (found != other.end() && *found < list[i])
            ++found;
        if (found == other.end() || *found != list[i])
            positions.push_back(static_cast<int>(i));
    }
    return positions;
}

/// Of a copy what it takes on disk, which is what moving it may free: less than its length where it has holes
/// or is compressed. Of a group the length that all have.
QString sizeText(const CopyGroup& group, std::int32_t copy) {
    return ByteFigure(copy < 0 ? group.group().bytes : group.copy(static_cast<std::size_t>(copy)).bytes)
        .text();
}

QString copiesText(const CopyGroup& group) {
    return DuplicateGroupsModel::tr("%1 · %2 each")
        .arg(countOf(group.figures().here, DuplicateGroupsModel::tr("copy"),
                     DuplicateGroupsModel::tr("copies")),
             ByteFigure(group.group().bytes).text());
}

QString freesText(const CopyGroup& group) {
    const auto& figures = group.figures();
    if (figures.tickable == 0)
        return DuplicateGroupsModel::tr("frees nothing");
    const bool isSaid = group.isAllTicked() || figures.least != figures.most;
    return (isSaid ? DuplicateGroupsModel::tr("frees %1") : DuplicateGroupsModel::tr("frees up to %1"))
        .arg(rangeText(figures.least, figures.most));
}

} // namespace

DuplicateGroupsModel::DuplicateGroupsModel() {
    const auto of = [this](auto read) {
        return [this, read](int row) -> QVariant { return read(rows_[at(row)]); };
    };
    const auto ofHead = [&](auto read) {
        return of([this, read](Row row) { return row.copy < 0 ? read(groups_[row.group]) : QString(); });
    };
    // Nothing for a head.
    const auto ofCopy = [&](auto read) {
        return of([this, read](Row row) {
            return row.copy < 0 ? QString() : read(groups_[row.group], static_cast<std::size_t>(row.copy));
        });
    };
    const auto isKept = [this](Row row) {
        return row.copy >= 0 && groups_[row.group].kept() == static_cast<std::size_t>(row.copy);
    };
    setRoles({{"key", [this](int row) { return keyOf(fileAt(row).path); }},
              {"head", of([](Row row) { return row.copy < 0; })},
              {"name", [this](int row) { return textOf(lastPathComponent(fileAt(row).path)); }},
              {"kind", of([this](Row row) { return static_cast<int>(groups_[row.group].kind()); })},
              {"copies", ofHead(copiesText)},
              {"frees", ofHead([](const CopyGroup& group) { return freesText(group); })},
              {"folded", of([this](Row row) { return groups_[row.group].isFolded; })},
              {"path", [this](int row) { return pathText(fileAt(row)); }},
              {"changed", ofCopy([](const CopyGroup& group, std::size_t copy) {
                   return dayAndClockText(group.file(copy).modified);
               })},
              {"size", of([this](Row row) { return sizeText(groups_[row.group], row.copy); })},
              {"ticked", of([this](Row row) { return isTicked(row); })},
              {"kept", of(isKept)},
              {"refusal",
               ofCopy([](const CopyGroup& group, std::size_t copy) { return group.copy(copy).refusal; })},
              {"note", ofCopy([](const CopyGroup& group, std::size_t copy) {
                   return group.kept() == copy ? QString() : group.copy(copy).note;
               })},
              {"lastOfGroup", [this](int row) { return row + 1 == rowCount() || isHead(row + 1); }},
              {"words", of([this](Row row) { return wordsOf(row); })}});
}

void DuplicateGroupsModel::setGroups(std::vector<CopyGroup> groups, std::string home) {
    beginResetModel();
    groups_ = std::move(groups);
    home_ = std::move(home);
    rows_.clear();
    headRows_.assign(groups_.size(), -1);
    endResetModel();
    showRows();
}

void DuplicateGroupsModel::setFilter(const QString& text, std::uint64_t minimumBytes) {
    filter_ = TextMatcher(text.toStdString());
    minimumBytes_ = minimumBytes;
    showRows();
}

bool DuplicateGroupsModel::passes(const CopyGroup& group) const {
    return group.isShown() && group.group().bytes >= minimumBytes_ && group.matches(filter_, home_);
}

void DuplicateGroupsModel::appendRows(std::vector<Row>& rows, std::size_t group) const {
    const auto& shown = groups_[group];
    const auto number = static_cast<std::uint32_t>(group);
    rows.push_back({.group = number});
    if (shown.isFolded)
        return;
    std::int32_t place = 0;
    for (const auto copy : shown.order()) {
        if (!shown.copy(copy).isGone)
            rows.push_back({.group = number, .place = place, .copy = static_cast<std::int32_t>(copy)});
        ++place;
    }
}

/// Brings the rows in step with the groups; what stays in the list stays where it is for the view.
void DuplicateGroupsModel::showRows() {
    std::vector<Row> wanted;
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        if (passes(groups_[i]))
            appendRows(wanted, i);
    }
    std::vector<int> heads(groups_.size(), -1);
    for (std::size_t row = 0; row < wanted.size(); ++row) {
        if (wanted[row].copy < 0)
            heads[wanted[row].group] = static_cast<int>(row);
    }
    const auto going = runsOf(positionsMissingIn(rows_, wanted));
    const auto coming = runsOf(positionsMissingIn(wanted, rows_));
    // Rows that go where others come are too much for a ListView of Qt 6.4: it leaves some of them drawn.
    const bool isArrangedAnew = !going.empty() && !coming.empty();
    if (isArrangedAnew || going.size() + coming.size() > mostChanges || rows_.empty()) {
        beginResetModel();
        rows_ = std::move(wanted);
        headRows_ = std::move(heads);
        endResetModel();
    } else {
        for (const auto& [first, last] : std::views::reverse(going)) {
            beginRemoveRows({}, first, last);
            rows_.erase(rows_.begin() + first, rows_.begin() + last + 1);
            endRemoveRows();
        }
        for (const auto& [first, last] : coming) {
            beginInsertRows({}, first, last);
            rows_.insert(rows_.begin() + first, wanted.begin() + first, wanted.begin() + last + 1);
            endInsertRows();
        }
        headRows_ = std::move(heads);
        notifyRows();
    }
    countTotals();
}

void DuplicateGroupsModel::moveRow(int from, int to) {
    beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
    const auto first = rows_.begin() + std::min(from, to);
    const auto last = rows_.begin() + std::max(from, to) + 1;
    std::rotate(first, to > from ? first + 1 : last - 1, last);
    endMoveRows();
}

/// Brings the copies of a group into their order, each as a move, so that the view follows them.
void DuplicateGroupsModel::arrangeGroup(std::size_t group) {
    const int head = headRows_[group];
    if (head < 0)
        return;
    std::vector<Row> wanted;
    appendRows(wanted, group);
    for (int i = 1; i < static_cast<int>(wanted.size()); ++i) {
        const int here = head + i;
        const auto found =
            std::ranges::find(rows_.begin() + here, rows_.end(), wanted[at(i)].copy, &Row::copy);
        const int from = static_cast<int>(found - rows_.begin());
        // The copy that was kept goes down to its place; others come up to theirs.
        if (from == here + 1)
            moveRow(here, head
                              + static_cast<int>(std::ranges::find(wanted, rows_[at(here)].copy, &Row::copy)
                                                 - wanted.begin()));
        else if (from != here)
            moveRow(from, here);
    }
    std::ranges::copy(wanted, rows_.begin() + head);
    tellGroup(group);
}

void DuplicateGroupsModel::setFolded(int row, bool folded) {
    auto& group = groups_[rows_[at(row)].group];
    if (group.isFolded == folded)
        return;
    group.isFolded = folded;
    showRows();
}

void DuplicateGroupsModel::setAllFolded(bool folded) {
    for (auto& group : groups_)
        group.isFolded = folded;
    showRows();
}

void DuplicateGroupsModel::toggleTick(int row) {
    const auto [number, place, copy] = rows_[at(row)];
    auto& group = groups_[number];
    if (copy < 0) {
        group.setAllTicked(!group.isAllTicked());
    } else {
        const auto ticked = static_cast<std::size_t>(copy);
        group.setTicked(ticked, !group.copy(ticked).isTicked);
    }
    tellGroup(number);
    countTotals();
}

void DuplicateGroupsModel::tickAllOthers() {
    for (auto& group : groups_) {
        if (passes(group))
            group.setAllTicked(true);
    }
    notifyRows();
    countTotals();
}

void DuplicateGroupsModel::clearTicks() {
    for (auto& group : groups_)
        group.setAllTicked(false);
    notifyRows();
    countTotals();
}

void DuplicateGroupsModel::keep(int row) {
    const auto [number, place, copy] = rows_[at(row)];
    if (copy < 0)
        return;
    groups_[number].keep(static_cast<std::size_t>(copy));
    arrangeGroup(number);
    countTotals();
}

void DuplicateGroupsModel::setRule(KeepRule rule, const std::string& folder) {
    rule_ = rule;
    ruleFolder_ = folder;
    for (auto& group : groups_)
        group.keepBy(rule_, ruleFolder_);
    showRows();
}

std::vector<std::size_t> DuplicateGroupsModel::setGone(const std::vector<std::string>& paths, bool gone) {
    const PathSet places(paths);
    std::vector<std::size_t> touched;
    for (std::size_t number = 0; number < groups_.size(); ++number) {
        auto& group = groups_[number];
        bool isTouched = false;
        for (std::size_t i = 0; i < group.size(); ++i) {
            if (group.copy(i).isGone == gone || !places.covers(group.file(i).path))
                continue;
            group.setGone(i, gone, rule_, ruleFolder_);
            isTouched = true;
        }
        if (isTouched)
            touched.push_back(number);
    }
    if (!touched.empty())
        showRows();
    return touched;
}

void DuplicateGroupsModel::setAnswers(const std::vector<Answered>& answers) {
    for (const auto& [number, ofCopies] : answers) {
        auto& group = groups_[number];
        for (std::size_t copy = 0; copy < ofCopies.size(); ++copy) {
            if (!group.copy(copy).isGone)
                group.setAnswer(copy, ofCopies[copy]);
        }
    }
    notifyRows();
    countTotals();
}

void DuplicateGroupsModel::setAnswer(std::size_t group, const std::string& path,
                                     const std::optional<DeletionItem>& item) {
    const auto& files = groups_[group].group().files;
    const auto file = std::ranges::find(files, path, &DuplicateFile::path);
    if (file == files.end())
        return;
    groups_[group].setAnswer(static_cast<std::size_t>(file - files.begin()), item);
    tellGroup(group);
    countTotals();
}

void DuplicateGroupsModel::tellGroup(std::size_t group) {
    const int head = headRows_[group];
    if (head < 0)
        return;
    int last = head;
    while (isRow(last + 1) && rows_[at(last + 1)].group == group)
        ++last;
    Q_EMIT dataChanged(index(head), index(last));
}

void DuplicateGroupsModel::countTotals() {
    totals_ = {};
    for (const auto& group : groups_) {
        if (!group.isShown())
            continue;
        const auto& figures = group.figures();
        const bool isFiltered = !passes(group);
        ++totals_.groups;
        totals_.shownGroups += isFiltered ? 0 : 1;
        totals_.most += figures.most;
        totals_.ticked += figures.ticked;
        totals_.hiddenTicked += isFiltered ? figures.ticked : 0;
        totals_.tickedGroups += figures.ticked > 0 ? 1 : 0;
        totals_.tickedMost += figures.tickedMost;
        totals_.tickedLeast += figures.tickedLeast;
    }
    Q_EMIT changed();
}

const DuplicateFile& DuplicateGroupsModel::fileAt(int row) const {
    const auto [number, place, copy] = rows_[at(row)];
    const auto& group = groups_[number];
    return copy < 0 ? group.keptFile() : group.file(static_cast<std::size_t>(copy));
}

QString DuplicateGroupsModel::pathText(const DuplicateFile& file) const {
    return textOf(tildePath(file.path, home_));
}

int DuplicateGroupsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant DuplicateGroupsModel::data(const QModelIndex& index, int role) const {
    if (role == keyRole && isRow(index.row()) && isHead(index.row()))
        return headKey + QString::number(rows_[at(index.row())].group);
    return RoleList::data(index, role);
}

int DuplicateGroupsModel::rowOfKey(const QString& key) const {
    if (key.startsWith(headKey)) {
        const auto group = key.mid(headKey.size()).toULongLong();
        return group < headRows_.size() ? headRows_[group] : -1;
    }
    const auto path = pathOfKey(key);
    const auto found = std::ranges::find_if(rows_, [&](Row row) {
        return row.copy >= 0 && groups_[row.group].file(static_cast<std::size_t>(row.copy)).path == path;
    });
    return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

bool DuplicateGroupsModel::isTicked(Row row) const {
    const auto& group = groups_[row.group];
    return row.copy < 0 ? group.isAllTicked() : group.copy(static_cast<std::size_t>(row.copy)).isTicked;
}

QString DuplicateGroupsModel::wordsOf(Row row) const {
    const auto& group = groups_[row.group];
    const auto kind = textOf(title(group.kind()));
    if (row.copy < 0)
        return QStringList{textOf(lastPathComponent(group.keptFile().path)), kind, copiesText(group),
                           freesText(group)}
            .join(QStringLiteral(", "));
    const auto copy = static_cast<std::size_t>(row.copy);
    const auto& file = group.file(copy);
    return tr("%1, %2, %3, changed %4")
        .arg(textOf(tildePath(file.path, home_)), group.kept() == copy ? tr("kept") : kind,
             sizeText(group, row.copy), dayAndClockText(file.modified));
}

QString rangeText(std::uint64_t least, std::uint64_t most) {
    const auto from = ByteFigure(least).text();
    const auto to = ByteFigure(most).text();
    return from == to ? to : QObject::tr("%1 – %2").arg(from, to);
}

} // namespace orbel
