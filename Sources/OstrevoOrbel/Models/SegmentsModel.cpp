#include "Models/SegmentsModel.h"

#include "Models/ByteFigure.h"

namespace orbel {

void SegmentsModel::setSegments(std::vector<Segment> segments) {
    if (segments == segments_)
        return;
    beginResetModel();
    segments_ = std::move(segments);
    endResetModel();
}

int SegmentsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(segments_.size());
}

QVariant SegmentsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& segment = segments_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case PartRole:
        return QVariant::fromValue(segment.part);
    case KindRole:
        return segment.kind;
    case TitleRole:
        return segment.title;
    case BytesRole:
        return segment.bytes;
    case SizeRole:
        return ByteFigure(segment.bytes).text();
    case FractionRole:
        return segment.fraction;
    default:
        return {};
    }
}

QHash<int, QByteArray> SegmentsModel::roleNames() const {
    return {{PartRole, "part"},   {KindRole, "kind"}, {TitleRole, "title"},
            {BytesRole, "bytes"}, {SizeRole, "size"}, {FractionRole, "fraction"}};
}

} // namespace orbel
