#include "Models/VolumesModel.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"

#include <utility>

namespace orbel {

QString mountDescription(const std::string& fileSystem, const std::string& path, const std::string& source) {
    return QStringLiteral("%1 on %2 · %3").arg(textOf(fileSystem), textOf(path), textOf(source));
}

void VolumesModel::setVolumes(std::vector<MountedVolume> volumes) {
    if (volumes == volumes_)
        return;
    beginResetModel();
    volumes_ = std::move(volumes);
    endResetModel();
}

std::optional<std::string> VolumesModel::pathOf(int row) const {
    if (row < 0 || row >= rowCount())
        return std::nullopt;
    return volumes_[static_cast<std::size_t>(row)].path;
}

int VolumesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(volumes_.size());
}

QVariant VolumesModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& volume = volumes_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case PathRole:
        return textOf(volume.path);
    case DescriptionRole:
        return mountDescription(volume.fileSystem, volume.path, volume.source);
    case FiguresRole:
        return tr("%1 free of %2")
            .arg(ByteFigure(volume.info.free).text(), ByteFigure(volume.info.total).text());
    case UsedFractionRole:
        return static_cast<double>(volume.info.used) / static_cast<double>(volume.info.total);
    default:
        return {};
    }
}

QHash<int, QByteArray> VolumesModel::roleNames() const {
    return {{PathRole, "path"},
            {DescriptionRole, "description"},
            {FiguresRole, "figures"},
            {UsedFractionRole, "usedFraction"}};
}

} // namespace orbel
