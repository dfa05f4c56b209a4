#pragma once

#include "Models/MapRows.h"
#include "Models/RoleList.h"

#include <functional>
#include <memory>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// What lies in the map's folder, and below each folder that is open what lies in that one. Rows are put into
/// words when they are asked for, so a folder of a million files costs no more than their numbers.
///
/// Roles: `node`, `kind`, `kindName`, `size`; `name`, which ends in "/" for a folder; `level`, from 0;
/// `folds`, whether the row can be opened, and `open`, whether it is; `fraction` of the largest item beside
/// it; `share` of the map's folder; `items`, how many are in a folder, empty for a file; `changed` "3 March
/// 2025"; `tick`, a Qt::CheckState; `refusal`, why it cannot be ticked, as far as known; `note`, what to know
/// before it moves; `excluded`, whether it was left out of measuring.
class MapListModel : public orbel::RoleList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the MapListFlow.")

public:
    explicit MapListModel(QObject* parent = nullptr);

    /// Each is asked whenever a row is drawn.
    void setTicking(std::function<Qt::CheckState(NodeIndex)> tickState,
                    std::function<QString(NodeIndex)> refusal, std::function<QString(NodeIndex)> note);
    /// Ticks, refusals or notes have changed.
    void tellTicks() { notifyRows(); }

    /// `rows`: as mapRows() gives them for the folder, on level 0.
    void setRows(std::shared_ptr<const FileTree> tree, NodeIndex folder, std::vector<MapRow> rows);
    /// Puts what lies in the folder of a row below it.
    void open(int row, const std::vector<MapRow>& below);
    void close(int row);
    Q_INVOKABLE bool isOpen(int row) const { return row + 1 < rowCount() && levelOf(row + 1) > levelOf(row); }
    /// Whether there is anything below the row that could be shown.
    Q_INVOKABLE bool folds(int row) const;

    /// The row of a node; -1 when it has none.
    int rowOf(NodeIndex node) const;
    /// That row, else the one of the innermost folder that has a row and holds the node; -1 outside.
    int rowHolding(NodeIndex node) const;
    Q_INVOKABLE quint32 nodeAt(int row) const { return rows_[static_cast<std::size_t>(row)].node; }
    /// The row of the folder that a row lies in; -1 on level 0.
    Q_INVOKABLE int rowAbove(int row) const;

    /// Each folder before what lies in it.
    const std::vector<MapRow>& shown() const { return rows_; }
    int rowCount(const QModelIndex& parent = {}) const override;

protected:
    std::optional<std::string_view> nameBytes(int row) const override {
        return tree_->nameBytes(nodeAt(row));
    }

private:
    std::uint32_t levelOf(int row) const { return rows_[static_cast<std::size_t>(row)].level; }
    /// The row behind all that lies below a row.
    int endOf(int row) const;

    std::shared_ptr<const FileTree> tree_;
    NodeIndex folder_ = 0;
    std::vector<MapRow> rows_;
    std::function<Qt::CheckState(NodeIndex)> tickState_;
    std::function<QString(NodeIndex)> refusal_;
    std::function<QString(NodeIndex)> note_;
};

} // namespace orbel
