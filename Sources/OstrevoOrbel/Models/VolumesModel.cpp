#include "Models/VolumesModel.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"

#include <utility>

namespace orbel {

QString mountDescription(const std::string& fileSystem, const std::string& path, const std::string& source) {
    return QStringLiteral("%1 on %2 · %3").arg(textOf(fileSystem), textOf(path), textOf(source));
}

QString VolumeRow::path() const {
    return textOf(volume.path);
}

QString VolumeRow::figures() const {
    return VolumesModel::tr("%1 free of %2")
        .arg(ByteFigure(volume.info.free).text(), ByteFigure(volume.info.total).text());
}

void VolumesModel::setVolumes(std::vector<MountedVolume> volumes) {
    std::vector<VolumeRow> rows;
    rows.reserve(volumes.size());
    for (auto& volume : volumes)
        rows.push_back({.volume = std::move(volume)});
    setRows(std::move(rows));
}

std::optional<std::string> VolumesModel::pathOf(int row) const {
    if (row < 0 || row >= rowCount())
        return std::nullopt;
    return rows_[static_cast<std::size_t>(row)].volume.path;
}

} // namespace orbel
