#include "Models/RoleList.h"

#include "Models/ItemKey.h"
#include "Models/Wording.h"

#include <algorithm>

namespace orbel {

RoleList::RoleList(QObject* parent) : QAbstractListModel(parent) {
    connect(this, &RoleList::modelReset, this, &RoleList::countChanged);
    connect(this, &RoleList::rowsInserted, this, &RoleList::countChanged);
    connect(this, &RoleList::rowsRemoved, this, &RoleList::countChanged);
}

QVariant RoleList::data(const QModelIndex& index, int role) const {
    const auto number = role == keyRole           ? numberOf("key")
                        : role == Qt::DisplayRole ? std::min(numberOf("label"), numberOf("name"))
                                                  : static_cast<std::size_t>(role - Qt::UserRole);
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || number >= roles_.size())
        return {};
    const auto value = roles_[number].read(index.row());
    return role == Qt::DisplayRole ? withoutIsolates(value.toString()) : value;
}

std::size_t RoleList::numberOf(const char* name) const {
    return static_cast<std::size_t>(
        std::ranges::find_if(roles_, [&](const Role& role) { return role.name == name; }) - roles_.begin());
}

QHash<int, QByteArray> RoleList::roleNames() const {
    QHash<int, QByteArray> names;
    for (const auto& role : roles_)
        names.insert(Qt::UserRole + static_cast<int>(names.size()), role.name);
    return names;
}

QVariant RoleList::value(int row, const QByteArray& role) const {
    return data(index(row), roleNames().key(role));
}

QModelIndexList RoleList::match(const QModelIndex& start, int role, const QVariant& value, int hits,
                                Qt::MatchFlags flags) const {
    if (role != keyRole)
        return QAbstractListModel::match(start, role, value, hits, flags);
    const int row = rowOfKey(value.toString());
    return row < 0 ? QModelIndexList() : QModelIndexList{index(row)};
}

int RoleList::rowOfKey(const QString& key) const {
    for (int row = 0; row < rowCount(); ++row) {
        if (data(index(row), keyRole) == key)
            return row;
    }
    return -1;
}

void RoleList::notifyRows() {
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

} // namespace orbel
