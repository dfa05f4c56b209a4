#include "Models/KindTotalsModel.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"

#include <algorithm>

namespace orbel {

void KindTotalsModel::setTotals(const KindTotals& totals) {
    beginResetModel();
    rows_.clear();
    for (const FileKind kind : allFileKinds) {
        const auto bytes = totals.at(static_cast<std::size_t>(kind));
        if (bytes > 0)
            rows_.push_back({kind, bytes});
    }
    std::ranges::stable_sort(rows_, std::greater{}, &Row::bytes);
    endResetModel();
}

int KindTotalsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant KindTotalsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case KindRole:
        return static_cast<int>(row.kind);
    case TitleRole:
        return textOf(title(row.kind));
    case BytesRole:
        return row.bytes;
    case SizeRole:
        return ByteFigure(row.bytes).text();
    case FractionRole:
        return static_cast<double>(row.bytes) / static_cast<double>(rows_.front().bytes);
    default:
        return {};
    }
}

QHash<int, QByteArray> KindTotalsModel::roleNames() const {
    return {{KindRole, "kind"},
            {TitleRole, "title"},
            {BytesRole, "bytes"},
            {SizeRole, "size"},
            {FractionRole, "fraction"}};
}

} // namespace orbel
