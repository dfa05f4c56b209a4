#include "Models/DuplicateGroupsModel.h"

#include "Models/ByteFigure.h"
#include "Models/ItemKey.h"
#include "Models/MapWords.h"
#include "Models/PathSet.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

namespace {

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

} // namespace

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
    filter_ = foldedForSearch(text);
    minimumBytes_ = minimumBytes;
    showRows();
}

bool DuplicateGroupsModel::passes(const CopyGroup& group) const {
    return group.isShown() && group.group().bytes >= minimumBytes_
           && (filter_.empty() || group.matches(filter_));
}

void DuplicateGroupsModel::appendRows(std::vector<Row>& rows, std::size_t group) const {
    const auto& shown = groups_[group];
    const auto number = static_cast<std::uint32_t>(group);
    rows.push_back({.group = number});
    if (shown.isFolded)
        return;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        if (!shown.copy(i).isGone)
            rows.push_back({.group = number, .copy = static_cast<std::int32_t>(i)});
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
    if (going.size() + coming.size() > mostChanges || rows_.empty()) {
        beginResetModel();
        rows_ = std::move(wanted);
        headRows_ = std::move(heads);
        endResetModel();
    } else {
        for (auto run = going.rbegin(); run != going.rend(); ++run) {
            beginRemoveRows({}, run->first, run->second);
            rows_.erase(rows_.begin() + run->first, rows_.begin() + run->second + 1);
            endRemoveRows();
        }
        for (const auto& [first, last] : coming) {
            beginInsertRows({}, first, last);
            rows_.insert(rows_.begin() + first, wanted.begin() + first, wanted.begin() + last + 1);
            endInsertRows();
        }
        headRows_ = std::move(heads);
        tellAll();
    }
    countTotals();
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
    const auto [number, copy] = rows_[at(row)];
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
    tellAll();
    countTotals();
}

void DuplicateGroupsModel::clearTicks() {
    for (auto& group : groups_)
        group.setAllTicked(false);
    tellAll();
    countTotals();
}

void DuplicateGroupsModel::keep(int row) {
    const auto [number, copy] = rows_[at(row)];
    if (copy < 0)
        return;
    groups_[number].keep(static_cast<std::size_t>(copy));
    tellGroup(number);
    countTotals();
}

void DuplicateGroupsModel::setRule(KeepRule rule, const std::string& folder) {
    rule_ = rule;
    ruleFolder_ = folder;
    for (auto& group : groups_)
        group.keepBy(rule_, ruleFolder_);
    tellAll();
    countTotals();
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
    tellAll();
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

void DuplicateGroupsModel::tellAll() {
    if (!rows_.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
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
    const auto [number, copy] = rows_[at(row)];
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
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || (role != Qt::DisplayRole && role < keyRole))
        return {};
    const auto [number, copy] = rows_[at(index.row())];
    const auto& group = groups_[number];
    switch (role) {
    case HeadRole:
        return copy < 0;
    case keyRole:
        return keyOf(fileAt(index.row()).path);
    case Qt::DisplayRole:
    case NameRole:
        return textOf(lastPathComponent(fileAt(index.row()).path));
    case PathRole:
        return pathText(fileAt(index.row()));
    case KindRole:
        return static_cast<int>(group.kind());
    case SizeRole:
        return sizeText(group, copy);
    case FoldedRole:
        return group.isFolded;
    case LastRole:
        return index.row() + 1 == rowCount() || rows_[at(index.row() + 1)].copy < 0;
    default:
        return copy < 0 ? headData(group, role) : copyData(group, static_cast<std::size_t>(copy), role);
    }
}

QVariant DuplicateGroupsModel::headData(const CopyGroup& group, int role) const {
    const auto& figures = group.figures();
    const auto copies =
        tr("%1 · %2 each")
            .arg(countOf(figures.here, tr("copy"), tr("copies")), ByteFigure(group.group().bytes).text());
    const auto frees = [&] {
        if (figures.tickable == 0)
            return tr("frees nothing");
        const auto range = rangeText(figures.least, figures.most);
        return group.isAllTicked() || figures.least != figures.most ? tr("frees %1").arg(range)
                                                                    : tr("frees up to %1").arg(range);
    };
    switch (role) {
    case CopiesRole:
        return copies;
    case FreesRole:
        return frees();
    case TickedRole:
        return group.isAllTicked();
    case WordsRole:
        return QStringList{textOf(lastPathComponent(group.keptFile().path)), textOf(title(group.kind())),
                           copies, frees()}
            .join(QStringLiteral(", "));
    case KeptRole:
        return false;
    default:
        return QString();
    }
}

QVariant DuplicateGroupsModel::copyData(const CopyGroup& group, std::size_t copy, int role) const {
    const auto& file = group.file(copy);
    const auto& state = group.copy(copy);
    const bool isKept = group.kept() == copy;
    switch (role) {
    case ChangedRole:
        return changedText(file.modified);
    case TickedRole:
        return state.isTicked;
    case KeptRole:
        return isKept;
    case RefusalRole:
        return state.refusal;
    case NoteRole:
        return isKept ? QString() : state.note;
    case WordsRole:
        return tr("%1, %2, %3, in %4, changed %5")
            .arg(textOf(lastPathComponent(file.path)), isKept ? tr("kept") : textOf(title(group.kind())),
                 sizeText(group, static_cast<std::int32_t>(copy)),
                 textOf(tildePath(parentPath(file.path), home_)), changedText(file.modified));
    default:
        return QString();
    }
}

QHash<int, QByteArray> DuplicateGroupsModel::roleNames() const {
    return {{keyRole, "key"},         {HeadRole, "head"},   {NameRole, "name"},        {KindRole, "kind"},
            {CopiesRole, "copies"},   {FreesRole, "frees"}, {FoldedRole, "folded"},    {PathRole, "path"},
            {ChangedRole, "changed"}, {SizeRole, "size"},   {TickedRole, "ticked"},    {KeptRole, "kept"},
            {RefusalRole, "refusal"}, {NoteRole, "note"},   {LastRole, "lastOfGroup"}, {WordsRole, "words"}};
}

QString rangeText(std::uint64_t least, std::uint64_t most) {
    const auto from = ByteFigure(least).text();
    const auto to = ByteFigure(most).text();
    return from == to ? to : QObject::tr("%1 – %2").arg(from, to);
}

} // namespace orbel
