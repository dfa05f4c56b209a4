#include "Models/TopLevelModel.h"

#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

namespace {

bool isSameEntry(const ScanProgress::TopLevel& a, const ScanProgress::TopLevel& b) {
    return a.name == b.name && a.isFolder == b.isFolder;
}

} // namespace

void TopLevelModel::begin(const QString& rootPath) {
    setRows({});
    rootPath_ = rootPath.toStdString();
    sortedAt_.reset();
}

void TopLevelModel::update(const std::vector<ScanProgress::TopLevel>& entries, double elapsed) {
    if (entries.empty())
        return;
    if (!sortedAt_ || elapsed - *sortedAt_ >= secondsBetweenSorts) {
        sortedAt_ = elapsed;
        replaceRows({entries.begin(),
                     entries.begin() + static_cast<std::ptrdiff_t>(std::min(entries.size(), mostRows))});
    } else {
        updateFigures(entries);
    }
    for (auto& row : rows_)
        row.fraction = std::min(1.0, fractionOf(row.entry.bytes, entries.front().bytes));
    if (!rows_.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

void TopLevelModel::replaceRows(const std::vector<ScanProgress::TopLevel>& entries) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const auto place = rows_.begin() + static_cast<std::ptrdiff_t>(i);
        const auto found = std::find_if(place, rows_.end(),
                                        [&](const auto& row) { return isSameEntry(row.entry, entries[i]); });
        const auto row = static_cast<int>(i);
        if (found == rows_.end()) {
            beginInsertRows({}, row, row);
            rows_.insert(place,
                         {.entry = entries[i], .path = textOf(joinedPath(rootPath_, entries[i].name))});
            endInsertRows();
        } else if (found != place) {
            const auto from = static_cast<int>(found - rows_.begin());
            beginMoveRows({}, from, from, {}, row);
            std::rotate(place, found, found + 1);
            endMoveRows();
        }
        rows_[i].entry.bytes = entries[i].bytes;
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
            std::ranges::find_if(entries, [&](const auto& entry) { return isSameEntry(row.entry, entry); });
        if (found != entries.end())
            row.entry.bytes = found->bytes;
    }
}

} // namespace orbel
