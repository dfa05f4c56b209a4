#include "Models/SizedFoldersModel.h"

#include "Models/ByteFigure.h"

namespace orbel {

void SizedFoldersModel::setFolders(std::vector<Folder> folders) {
    beginResetModel();
    folders_ = std::move(folders);
    endResetModel();
}

int SizedFoldersModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(folders_.size());
}

QVariant SizedFoldersModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& folder = folders_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case NodeRole:
        return folder.node;
    case PathRole:
        return folder.path;
    case KindRole:
        return folder.kind;
    case BytesRole:
        return folder.bytes;
    case SizeRole:
        return ByteFigure(folder.bytes).text();
    case FractionRole:
        return folders_.front().bytes == 0
                   ? 0.0
                   : static_cast<double>(folder.bytes) / static_cast<double>(folders_.front().bytes);
    default:
        return {};
    }
}

QHash<int, QByteArray> SizedFoldersModel::roleNames() const {
    return {{NodeRole, "node"},   {PathRole, "path"}, {KindRole, "kind"},
            {BytesRole, "bytes"}, {SizeRole, "size"}, {FractionRole, "fraction"}};
}

} // namespace orbel
