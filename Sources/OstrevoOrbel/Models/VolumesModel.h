#pragma once

#include "Scan/MountedVolumes.h"

#include <optional>
#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <string>
#include <vector>

namespace orbel {

/// The mounted file systems from which one can be chosen to be measured.
class VolumesModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")

public:
    /// `description`: "btrfs on / · /dev/nvme0n1p3"; `figures`: "63.6 GB free of 511.0 GB".
    enum Role { PathRole = Qt::UserRole, DescriptionRole, FiguresRole, UsedFractionRole };

    using QAbstractListModel::QAbstractListModel;

    void setVolumes(std::vector<MountedVolume> volumes);
    /// The mount point of a row as it is on the disk; absent when there is no such row.
    std::optional<std::string> pathOf(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<MountedVolume> volumes_;
};

/// "btrfs on / · /dev/nvme0n1p3".
QString mountDescription(const std::string& fileSystem, const std::string& path, const std::string& source);

} // namespace orbel
