#pragma once

#include "Scan/KindTotals.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <vector>

namespace orbel {

/// What was measured by kind, the largest first; kinds with nothing are left out.
class KindTotalsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")

public:
    /// `kind` is FileKind's raw value, `fraction` that of the largest one.
    enum Role { KindRole = Qt::UserRole, TitleRole, BytesRole, SizeRole, FractionRole };

    using QAbstractListModel::QAbstractListModel;

    void setTotals(const KindTotals& totals);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    struct Row {
        FileKind kind;
        quint64 bytes;
    };
    std::vector<Row> rows_;
};

} // namespace orbel
