#pragma once

#include "Models/TickedItem.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace orbel {

/// The items of a confirmation, and what became of each while they move.
class MoveItemsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the MoveFlow.")
    Q_PROPERTY(int count READ rowCount NOTIFY changed)

public:
    enum class State { waiting, checking, moved, skipped };

    /// `path` whole; `kind` of the chip; `entries` "1,284"; `size` "26.7 GB"; `stage` "waiting", "checking",
    /// "moved" or "skipped".
    enum Role { PathRole = Qt::UserRole, KindRole, KindNameRole, EntriesRole, SizeRole, NoteRole, StateRole };

    using QAbstractListModel::QAbstractListModel;

    void setItems(std::vector<TickedItem> items);
    const std::vector<TickedItem>& items() const { return items_; }
    void setState(std::size_t row, State state);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void changed();

private:
    std::vector<TickedItem> items_;
    std::vector<State> states_;
};

} // namespace orbel
