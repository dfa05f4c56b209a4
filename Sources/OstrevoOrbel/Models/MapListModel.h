#pragma once

#include "Models/RoleList.h"
#include "Scan/FileTree.h"

#include <functional>
#include <memory>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// What lies directly in the map's folder, largest first. Rows are read from the tree when they are asked
/// for, so a folder of a million files costs no more than one of ten.
///
/// Roles: `node`, `kind`, `kindName`, `size`; `name`, which ends in "/" for a folder; `fraction` of the
/// largest row; `share` of the folder; `tick`, a Qt::CheckState; `refusal`, why it cannot be ticked, as far
/// as known; `note`, what to know before it moves.
class MapListModel : public orbel::RoleList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the MapModel.")

public:
    explicit MapListModel(QObject* parent = nullptr);

    /// Each is asked whenever a row is drawn.
    void setTicking(std::function<Qt::CheckState(NodeIndex)> tickState,
                    std::function<QString(NodeIndex)> refusal, std::function<QString(NodeIndex)> note);
    /// Ticks, refusals or notes have changed.
    void tellTicks() { notifyRows(); }

    void setFolder(std::shared_ptr<const FileTree> tree, NodeIndex folder);

    /// The row of a node that lies in this folder, or in something that does; -1 for any other.
    int rowOf(NodeIndex node) const;
    NodeIndex nodeAt(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;

private:
    std::span<const NodeIndex> children() const;

    std::shared_ptr<const FileTree> tree_;
    NodeIndex folder_ = 0;
    std::function<Qt::CheckState(NodeIndex)> tickState_;
    std::function<QString(NodeIndex)> refusal_;
    std::function<QString(NodeIndex)> note_;
};

} // namespace orbel
