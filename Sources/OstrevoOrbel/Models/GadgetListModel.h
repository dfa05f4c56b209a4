#pragma once

#include "Models/RoleList.h"

#include <algorithm>
#include <cstddef>
#include <QMetaProperty>
#include <utility>
#include <vector>

namespace orbel {

/// A list of gadgets, which can be compared with ==: each property is a role of the same name.
template <class Row>
class GadgetListModel : public RoleList {
public:
    explicit GadgetListModel(QObject* parent = nullptr) : RoleList(parent) {
        std::vector<Role> roles;
        for (int i = 0; i < Row::staticMetaObject.propertyCount(); ++i) {
            const auto property = Row::staticMetaObject.property(i);
            roles.push_back({property.name(), [this, property](int row) {
                                 return property.readOnGadget(&rows_[static_cast<std::size_t>(row)]);
                             }});
        }
        setRoles(std::move(roles));
    }

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
};

} // namespace orbel
