#pragma once

#include "Models/GadgetListModel.h"
#include "Scan/FileTree.h"

#include <QString>

namespace orbel {

/// A folder on the way to the map's. A plain value.
struct MapCrumb {
    Q_GADGET
    Q_PROPERTY(quint32 node MEMBER node)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString size MEMBER size)

public:
    NodeIndex node = 0;
    QString name;
    QString size;

    bool operator==(const MapCrumb&) const = default;
};

/// The way from the root of the scan to the map's folder.
class MapCrumbsModel : public GadgetListModel<MapCrumb> {
public:
    /// `rootName` is what the root is called.
    void setFolder(const FileTree& tree, NodeIndex folder, const QString& rootName);
};

} // namespace orbel
