#pragma once

#include "Scan/FileTree.h"

#include <memory>
#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace orbel {

/// The way from the root of the scan to the map's folder.
class MapCrumbsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the MapModel.")

public:
    enum Role { NodeRole = Qt::UserRole, NameRole, SizeRole };

    using QAbstractListModel::QAbstractListModel;

    /// `rootName` is what the root is called.
    void setFolder(const FileTree& tree, NodeIndex folder, const QString& rootName);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    struct Crumb {
        NodeIndex node;
        QString name;
        QString size;
    };

    std::vector<Crumb> crumbs_;
};

} // namespace orbel
