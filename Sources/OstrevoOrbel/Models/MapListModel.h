#pragma once

#include "Scan/FileTree.h"

#include <functional>
#include <memory>
#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// What lies directly in the map's folder, largest first. Rows are read from the tree when they are asked
/// for, so a folder of a million files costs no more than one of ten.
class MapListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the MapModel.")

public:
    /// `name` ends in "/" for a folder; `fraction` is that of the largest row.
    enum Role {
        NodeRole = Qt::UserRole,
        NameRole,
        KindRole,
        KindNameRole,
        SizeRole,
        FractionRole,
        ShareRole,
        TickRole,    ///< Qt::CheckState
        RefusalRole, ///< why it cannot be ticked, as far as known
        NoteRole     ///< what to know before it moves
    };

    explicit MapListModel(QObject* parent = nullptr);

    /// Each is asked whenever a row is drawn.
    void setTicking(std::function<Qt::CheckState(NodeIndex)> tickState,
                    std::function<QString(NodeIndex)> refusal, std::function<QString(NodeIndex)> note);
    /// Ticks, refusals or notes have changed.
    void tellTicks();

    void setFolder(std::shared_ptr<const FileTree> tree, NodeIndex folder);

    /// The row of a node that lies in this folder, or in something that does; -1 for any other.
    int rowOf(NodeIndex node) const;
    NodeIndex nodeAt(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::span<const NodeIndex> children() const;

    std::shared_ptr<const FileTree> tree_;
    NodeIndex folder_ = 0;
    std::function<Qt::CheckState(NodeIndex)> tickState_;
    std::function<QString(NodeIndex)> refusal_;
    std::function<QString(NodeIndex)> note_;
};

} // namespace orbel
