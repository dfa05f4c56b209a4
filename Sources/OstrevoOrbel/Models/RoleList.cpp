#include "Models/RoleList.h"

#include "Models/ItemKey.h"
#include "Models/Wording.h"

#include <algorithm>
#include <string_view>

namespace orbel {

namespace {

bool isAscii(char16_t letter) {
    return letter < 0x80;
}

/// Whether a name may begin with what was typed, as it is shown: false only where plain letters differ.
bool mayBeginWith(std::string_view name, const QString& typed) {
    for (qsizetype i = 0; i < typed.size(); ++i) {
        if (static_cast<std::size_t>(i) == name.size())
            return false;
        const auto shown = static_cast<unsigned char>(name[static_cast<std::size_t>(i)]);
        if (shown < ' ' || !isAscii(shown) || !isAscii(typed[i].unicode()))
            return true;
        if (QChar::toLower(char32_t{shown}) != typed[i].toLower().unicode())
            return false;
    }
    return true;
}

} // namespace

RoleList::RoleList(QObject* parent) : QAbstractListModel(parent) {
    connect(this, &RoleList::modelReset, this, &RoleList::countChanged);
    connect(this, &RoleList::rowsInserted, this, &RoleList::countChanged);
    connect(this, &RoleList::rowsRemoved, this, &RoleList::countChanged);
}

QVariant RoleList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role == Qt::DisplayRole)
        return displayText(index.row());
    const auto number = role == keyRole ? numberOf("key") : static_cast<std::size_t>(role - Qt::UserRole);
    return number < roles_.size() ? roles_[number].read(index.row()) : QVariant();
}

QString RoleList::displayText(int row) const {
    for (const auto* const name : {"label", "name", "title", "path"}) {
        const auto number = numberOf(name);
        if (number == roles_.size())
            continue;
        const auto text = withoutIsolates(roles_[number].read(row).toString());
        return name == std::string_view("path")
                   ? text.section(QLatin1Char('/'), -1, -1, QString::SectionSkipEmpty)
                   : text;
    }
    return {};
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
    if (role == Qt::DisplayRole && hits == 1 && flags == (Qt::MatchStartsWith | Qt::MatchWrap)
        && rowCount() > 0 && nameBytes(0))
        return firstNamed(start.row(), value.toString());
    if (role != keyRole)
        return QAbstractListModel::match(start, role, value, hits, flags);
    const int row = rowOfKey(value.toString());
    return row < 0 ? QModelIndexList() : QModelIndexList{index(row)};
}

QModelIndexList RoleList::firstNamed(int from, const QString& typed) const {
    for (int step = 0; step < rowCount(); ++step) {
        const auto place = index((from + step) % rowCount());
        if (mayBeginWith(nameBytes(place.row()).value_or(""), typed)
            && place.data().toString().startsWith(typed, Qt::CaseInsensitive))
            return {place};
    }
    return {};
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
