#pragma once

#include "Scan/KindTotals.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace orbel {

/// The kinds that the map shows, with what each takes up below the map's folder, and which of them are chosen
/// as a filter.
class MapLegendModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the MapModel.")

public:
    enum Role { KindRole = Qt::UserRole, TitleRole, SizeRole, ActiveRole };

    using QAbstractListModel::QAbstractListModel;

    /// Kinds that take up nothing have no row.
    void setTotals(const KindTotals& totals);
    const KindTotals& totals() const { return totals_; }

    /// The chosen kinds, one bit for each raw value; 0 when all are shown.
    unsigned chosen() const { return chosen_; }
    void setChosen(unsigned kinds);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    KindTotals totals_{};
    std::vector<FileKind> rows_;
    unsigned chosen_ = 0;
};

} // namespace orbel
