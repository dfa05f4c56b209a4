#pragma once

#include <algorithm>
#include <cstddef>
#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>
#include <utility>
#include <vector>

namespace orbel {

/// What QML sees of a GadgetListModel: rows whose roles are the properties of a gadget, by the same names.
class GadgetList : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to a model.")
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

public:
    int rowCount(const QModelIndex& parent = {}) const override = 0;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

protected:
    /// `row` describes the gadget that every row is.
    explicit GadgetList(const QMetaObject& row, QObject* parent);

    virtual const void* gadgetAt(std::size_t row) const = 0;

private:
    const QMetaObject& row_;
};

/// A list of gadgets, which can be compared with ==. Used on the main thread.
template <class Row>
class GadgetListModel : public GadgetList {
public:
    explicit GadgetListModel(QObject* parent = nullptr) : GadgetList(Row::staticMetaObject, parent) {}

    const std::vector<Row>& rows() const { return rows_; }
    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }

    /// As many rows as before change where they stand, so that a view keeps its place and its focus; any
    /// other number resets the list.
    void setRows(std::vector<Row> rows) {
        if (rows.size() == rows_.size()) {
            replaceRows(std::move(rows));
            return;
        }
        beginResetModel();
        rows_ = std::move(rows);
        endResetModel();
        Q_EMIT countChanged();
    }

protected:
    std::vector<Row> rows_;

private:
    void replaceRows(std::vector<Row> rows) {
        const auto first = static_cast<int>(std::ranges::mismatch(rows, rows_).in1 - rows.begin());
        if (first == rowCount())
            return;
        rows_ = std::move(rows);
        Q_EMIT dataChanged(index(first), index(rowCount() - 1));
    }

    const void* gadgetAt(std::size_t row) const override { return &rows_[row]; }
};

} // namespace orbel
