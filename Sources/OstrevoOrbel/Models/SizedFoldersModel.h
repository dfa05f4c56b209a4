#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace orbel {

/// Folders of the scanned tree with their sizes, the largest first.
class SizedFoldersModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")

public:
    struct Folder {
        quint32 node = 0; ///< in the tree of this version
        QString path;     ///< for people: "~" in place of the home
        int kind = 0;     ///< FileKind's raw value: the kind that most of it is
        quint64 bytes = 0;
    };

    /// `fraction` is that of the largest one.
    enum Role { NodeRole = Qt::UserRole, PathRole, KindRole, BytesRole, SizeRole, FractionRole };

    using QAbstractListModel::QAbstractListModel;

    void setFolders(std::vector<Folder> folders);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<Folder> folders_;
};

} // namespace orbel
