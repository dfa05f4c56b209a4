#include "Models/MapLegendModel.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"

namespace orbel {

void MapLegendModel::setTotals(const KindTotals& totals) {
    if (totals == totals_)
        return;
    // In the order of the kinds, so that an entry keeps its place from folder to folder; folders proper,
    // which are only packages of no other kind, come last before what is none of the others.
    static constexpr std::array order{FileKind::video,   FileKind::virtualMachine, FileKind::diskImage,
                                      FileKind::archive, FileKind::document,       FileKind::application,
                                      FileKind::folder,  FileKind::other};
    beginResetModel();
    totals_ = totals;
    rows_.clear();
    for (const FileKind kind : order) {
        if (totals.at(static_cast<std::size_t>(kind)) > 0)
            rows_.push_back(kind);
    }
    endResetModel();
}

void MapLegendModel::setChosen(unsigned kinds) {
    chosen_ = kinds;
    if (!rows_.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {ActiveRole});
}

int MapLegendModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant MapLegendModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const FileKind kind = rows_[static_cast<std::size_t>(index.row())];
    const auto raw = static_cast<unsigned>(kind);
    switch (role) {
    case KindRole:
        return raw;
    case TitleRole:
        return textOf(title(kind));
    case SizeRole:
        return ByteFigure(totals_.at(raw)).text();
    case ActiveRole:
        return (chosen_ >> raw & 1U) != 0;
    default:
        return {};
    }
}

QHash<int, QByteArray> MapLegendModel::roleNames() const {
    return {{KindRole, "kind"}, {TitleRole, "title"}, {SizeRole, "size"}, {ActiveRole, "active"}};
}

} // namespace orbel
