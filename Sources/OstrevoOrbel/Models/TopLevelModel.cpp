#include "Models/TopLevelModel.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <span>

namespace orbel {

namespace {

bool isSameEntry(const ScanProgress::TopLevel& a, const ScanProgress::TopLevel& b) {
    return a.name == b.name && a.isFolder == b.isFolder;
}

} // namespace

void TopLevelModel::begin(const QString& rootPath) {
    beginResetModel();
    rootPath_ = rootPath;
    rows_.clear();
    largest_ = 0;
    sortedAt_.reset();
    endResetModel();
}

void TopLevelModel::update(const std::vector<ScanProgress::TopLevel>& entries, double elapsed) {
    if (entries.empty())
        return;
    largest_ = entries.front().bytes;
    if (!sortedAt_ || elapsed - *sortedAt_ >= secondsBetweenSorts) {
        sortedAt_ = elapsed;
        replaceRows({entries.begin(),
                     entries.begin() + static_cast<std::ptrdiff_t>(std::min(entries.size(), mostRows))});
    } else {
        updateFigures(entries);
    }
    if (!rows_.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {BytesRole, SizeRole, FractionRole});
}

void TopLevelModel::replaceRows(const std::vector<ScanProgress::TopLevel>& entries) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const auto place = rows_.begin() + static_cast<std::ptrdiff_t>(i);
        const auto found =
            std::find_if(place, rows_.end(), [&](const auto& row) { return isSameEntry(row, entries[i]); });
        const auto row = static_cast<int>(i);
        if (found == rows_.end()) {
            beginInsertRows({}, row, row);
            rows_.insert(place, entries[i]);
            endInsertRows();
        } else if (found != place) {
            const auto from = static_cast<int>(found - rows_.begin());
            beginMoveRows({}, from, from, {}, row);
            std::rotate(place, found, found + 1);
            endMoveRows();
        }
        rows_[i] = entries[i];
    }
    if (rows_.size() > entries.size()) {
        beginRemoveRows({}, static_cast<int>(entries.size()), rowCount() - 1);
        rows_.resize(entries.size());
        endRemoveRows();
    }
}

void TopLevelModel::updateFigures(const std::vector<ScanProgress::TopLevel>& entries) {
    for (auto& row : rows_) {
        const auto found =
            std::ranges::find_if(entries, [&](const auto& entry) { return isSameEntry(row, entry); });
        if (found != entries.end())
            row.bytes = found->bytes;
    }
}

int TopLevelModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant TopLevelModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case NameRole:
        return textOf(row.name);
    case PathRole:
        return textOf(joinedPath(rootPath_.toStdString(), row.name));
    case IsFolderRole:
        return row.isFolder;
    case BytesRole:
        return quint64{row.bytes};
    case SizeRole:
        return ByteFigure(row.bytes).text();
    case FractionRole:
        return largest_ == 0 ? 0.0
                             : std::min(1.0, static_cast<double>(row.bytes) / static_cast<double>(largest_));
    default:
        return {};
    }
}

QHash<int, QByteArray> TopLevelModel::roleNames() const {
    return {{NameRole, "name"},   {PathRole, "path"}, {IsFolderRole, "isFolder"},
            {BytesRole, "bytes"}, {SizeRole, "size"}, {FractionRole, "fraction"}};
}

} // namespace orbel
