#include "Models/MoveItemsModel.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"

#include <array>

namespace orbel {

QString MoveItem::path() const {
    return textOf(ticked->item.path);
}

QString MoveItem::entries() const {
    return countText(ticked->count);
}

QString MoveItem::size() const {
    return ByteFigure(ticked->item.estimatedBytes).text();
}

QString MoveItem::note() const {
    return textOf(ticked->item.note.value_or(std::string()));
}

QString MoveItem::stage() const {
    static constexpr std::array names{"waiting", "checking", "moved", "skipped"};
    return QString::fromLatin1(names.at(static_cast<std::size_t>(state)));
}

void MoveItemsModel::setItems(std::vector<TickedItem> items) {
    // No row may outlive the item that it points to.
    setRows({});
    items_ = std::move(items);
    std::vector<MoveItem> rows;
    rows.reserve(items_.size());
    for (const auto& ticked : items_)
        rows.push_back({.ticked = &ticked});
    setRows(std::move(rows));
}

void MoveItemsModel::setState(std::size_t row, State state) {
    if (row >= rows_.size() || rows_[row].state == state)
        return;
    rows_[row].state = state;
    const auto changed = index(static_cast<int>(row));
    Q_EMIT dataChanged(changed, changed);
}

} // namespace orbel
