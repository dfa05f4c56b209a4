#include "Models/TidyListModel.h"

#include "Models/ItemKey.h"
#include "Models/PathSet.h"
#include "Models/Wording.h"

#include <algorithm>
#include <numeric>

namespace orbel {

TidyListModel::TidyListModel() {
    connect(&ticks_, &Ticks::changed, this, [this] {
        notifyRows();
        Q_EMIT changed();
    });
    const auto of = [this](auto read) {
        return [this, read](int shown) -> QVariant { return read(row(shown)); };
    };
    setRoles(
        {{"key", of([](const Row& row) { return keyOf(row.item.item.path); })},
         {"label", of([](const Row& row) { return textOf(lastPathComponent(row.item.item.path)); })},
         {"path", of([this](const Row& row) { return pathText(row); })},
         {"detail", of([](const Row& row) { return row.detail; })},
         {"badge", of([](const Row& row) { return row.badge; })},
         {"warn", of([](const Row& row) { return row.isAmiss; })},
         {"ticked", [this](int shown) { return isTicked(shown); }},
         {"refusal", of([](const Row& row) { return textOf(row.item.item.blockedReason.value_or("")); })},
         {"words", of([this](const Row& row) {
              QStringList words{pathText(row), row.item.kindName, row.detail, row.badge};
              words.removeAll(QString());
              return words.join(QStringLiteral(", "));
          })}});
}

QString TidyListModel::pathText(const Row& row) const {
    return textOf(tildePath(row.item.item.path, home_));
}

void TidyListModel::setRows(std::vector<Row> rows, std::string home) {
    beginResetModel();
    rows_ = std::move(rows);
    home_ = std::move(home);
    show();
    endResetModel();
    std::vector<TickedItem> ticked;
    for (const auto& row : rows_) {
        const auto choice = choices_.find(row.item.item.id);
        if (choice == choices_.end() ? row.isPreselected : choice->second)
            ticked.push_back(row.item);
    }
    ticks_.replaceAll(std::move(ticked));
}

bool TidyListModel::isShown(const TickedItem& item) const {
    return filter_.isIn(tildePath(item.item.path, home_));
}

void TidyListModel::show() {
    shown_.clear();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (isShown(rows_[i].item))
            shown_.push_back(i);
    }
}

void TidyListModel::setFilter(const QString& text) {
    beginResetModel();
    filter_ = TextMatcher(text.toStdString());
    show();
    endResetModel();
    ticks_.setFilter([this](const TickedItem& item) { return isShown(item); });
}

void TidyListModel::setTicked(int row, bool ticked) {
    if (!isRow(row))
        return;
    const auto& item = this->row(row).item;
    if (ticks_.setTicked(item, ticked))
        choices_[item.item.id] = ticked;
}

void TidyListModel::setAllTicked(bool ticked) {
    if (!ticked) {
        for (const auto& row : rows_)
            choices_[row.item.item.id] = false;
        ticks_.clear();
        return;
    }
    std::vector<TickedItem> items;
    for (const auto number : shown_) {
        const auto& item = rows_[number].item;
        if (!item.item.isSelectable())
            continue;
        choices_[item.item.id] = true;
        items.push_back(item);
    }
    ticks_.tickAll(std::move(items));
}

void TidyListModel::remove(const std::vector<std::string>& paths) {
    const PathSet places(paths);
    beginResetModel();
    std::erase_if(rows_, [&](const Row& row) { return places.covers(row.item.item.path); });
    show();
    endResetModel();
    ticks_.replaceAll(ticked());
}

std::vector<TickedItem> TidyListModel::ticked() const {
    std::vector<TickedItem> items;
    for (const auto& row : rows_) {
        if (ticks_.contains(row.item.item.id))
            items.push_back(row.item);
    }
    return items;
}

int TidyListModel::tickable() const {
    return static_cast<int>(std::ranges::count_if(
        shown_, [this](std::size_t number) { return rows_[number].item.item.isSelectable(); }));
}

int TidyListModel::tickedInside() const {
    return std::accumulate(
        ticks_.byPath().begin(), ticks_.byPath().end(), 0,
        [](int sum, const auto& ticked) { return sum + static_cast<int>(ticked.second.count); });
}

int TidyListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

} // namespace orbel
