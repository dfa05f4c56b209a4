#pragma once

#include "Models/GadgetListModel.h"
#include "Scan/MountedVolumes.h"

#include <optional>
#include <QString>
#include <string>
#include <vector>

namespace orbel {

/// A mounted file system. A plain value.
struct VolumeRow {
    Q_GADGET
    Q_PROPERTY(QString path READ path)
    Q_PROPERTY(QString figures READ figures)

public:
    MountedVolume volume;

    QString path() const;
    QString figures() const; ///< "63.6 GB free of 511.0 GB"
    bool operator==(const VolumeRow&) const = default;
};

/// The mounted file systems from which one can be chosen to be measured.
class VolumesModel : public GadgetListModel<VolumeRow> {
public:
    void setVolumes(std::vector<MountedVolume> volumes);
    /// The mount point of a row as it is on the disk; absent when there is no such row.
    std::optional<std::string> pathOf(int row) const;
};

/// "btrfs on / · /dev/nvme0n1p3".
QString mountDescription(const std::string& fileSystem, const std::string& path, const std::string& source);

} // namespace orbel
