#include "Models/TidyListModel.h"

#include "Models/ItemKey.h"
#include "Models/PathSet.h"
#include "Models/Wording.h"

#include <algorithm>
#include <numeric>

namespace orbel {

void TidyListModel::setRows(std::vector<Row> rows, std::string home) {
    beginResetModel();
    rows_ = std::move(rows);
    home_ = std::move(home);
    for (auto& row : rows_) {
        const auto choice = choices_.find(row.item.item.id);
        row.isTicked =
            row.item.item.isSelectable() && (choice == choices_.end() ? row.isTicked : choice->second);
    }
    show();
    endResetModel();
    Q_EMIT changed();
}

void TidyListModel::show() {
    shown_.clear();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const auto path = filter_.isEmpty() ? QString() : textOf(tildePath(rows_[i].item.item.path, home_));
        if (path.contains(filter_, Qt::CaseInsensitive))
            shown_.push_back(i);
    }
}

void TidyListModel::setFilter(const QString& text) {
    if (text == filter_)
        return;
    beginResetModel();
    filter_ = text;
    show();
    endResetModel();
    Q_EMIT changed();
}

bool TidyListModel::choose(Row& row, bool ticked) {
    if (row.isTicked == ticked || !row.item.item.isSelectable())
        return false;
    row.isTicked = ticked;
    choices_[row.item.item.id] = ticked;
    return true;
}

void TidyListModel::setTicked(int row, bool ticked) {
    if (!isRow(row) || !choose(rows_[shown_[static_cast<std::size_t>(row)]], ticked))
        return;
    Q_EMIT dataChanged(index(row), index(row), {TickedRole});
    Q_EMIT changed();
}

void TidyListModel::setAllTicked(bool ticked) {
    bool isChanged = false;
    if (ticked) {
        for (const auto number : shown_)
            isChanged = choose(rows_[number], true) || isChanged;
    } else {
        for (auto& row : rows_)
            isChanged = choose(row, false) || isChanged;
    }
    if (!isChanged)
        return;
    if (!shown_.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {TickedRole});
    Q_EMIT changed();
}

void TidyListModel::remove(const std::vector<std::string>& paths) {
    const PathSet places(paths);
    beginResetModel();
    std::erase_if(rows_, [&](const Row& row) { return places.covers(row.item.item.path); });
    show();
    endResetModel();
    Q_EMIT changed();
}

std::vector<TickedItem> TidyListModel::ticked() const {
    std::vector<TickedItem> items;
    for (const auto& row : rows_) {
        if (row.isTicked)
            items.push_back(row.item);
    }
    return items;
}

int TidyListModel::tickable() const {
    return static_cast<int>(std::ranges::count_if(
        shown_, [this](std::size_t number) { return rows_[number].item.item.isSelectable(); }));
}

int TidyListModel::tickedCount() const {
    return static_cast<int>(std::ranges::count(rows_, true, &Row::isTicked));
}

int TidyListModel::tickedInside() const {
    return std::accumulate(rows_.begin(), rows_.end(), 0, [](int sum, const Row& row) {
        return row.isTicked ? sum + static_cast<int>(row.item.count) : sum;
    });
}

int TidyListModel::hiddenTicked() const {
    const auto seen =
        std::ranges::count_if(shown_, [this](std::size_t number) { return rows_[number].isTicked; });
    return tickedCount() - static_cast<int>(seen);
}

int TidyListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

QVariant TidyListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& shown = row(index.row());
    const auto path = textOf(tildePath(shown.item.item.path, home_));
    switch (role) {
    case keyRole:
        return keyOf(shown.item.item.path);
    case Qt::DisplayRole:
        return textOf(lastPathComponent(shown.item.item.path));
    case PathRole:
        return path;
    case DetailRole:
        return shown.detail;
    case BadgeRole:
        return shown.badge;
    case WarnRole:
        return shown.isAmiss;
    case TickedRole:
        return shown.isTicked;
    case RefusalRole:
        return textOf(shown.item.item.blockedReason.value_or(""));
    case WordsRole: {
        QStringList words{path, shown.item.kindName, shown.detail, shown.badge};
        words.removeAll(QString());
        return words.join(QStringLiteral(", "));
    }
    default:
        return {};
    }
}

QHash<int, QByteArray> TidyListModel::roleNames() const {
    return {{keyRole, "key"},   {PathRole, "path"},     {DetailRole, "detail"},   {BadgeRole, "badge"},
            {WarnRole, "warn"}, {TickedRole, "ticked"}, {RefusalRole, "refusal"}, {WordsRole, "words"}};
}

} // namespace orbel
