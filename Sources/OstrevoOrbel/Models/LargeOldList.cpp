#include "Models/LargeOldList.h"

#include "Models/SortedByKey.h"
#include "Util/PathText.h"
#include "Util/TextMatcher.h"

#include <algorithm>

namespace orbel {

LargeOldList::LargeOldList(std::vector<Row> rows, const FileTree& tree) : rows_(std::move(rows)) {
    contents_.reserve(rows_.size());
    byPath_.reserve(rows_.size());
    for (const auto& row : rows_) {
        byPath_.emplace(row.item.path, static_cast<std::uint32_t>(contents_.size()));
        const auto whole = TickedItem::ofNode({}, tree, row.index);
        contents_.push_back({.count = whole.count, .leastFreed = whole.leastFreed, .kind = whole.kind});
    }
}

std::optional<std::uint32_t> LargeOldList::find(std::string_view path) const {
    const auto found = byPath_.find(path);
    return found == byPath_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::uint32_t> LargeOldList::find(NodeIndex node) const {
    const auto found = std::ranges::find(rows_, node, &Row::index);
    return found == rows_.end() ? std::nullopt
                                : std::optional(static_cast<std::uint32_t>(found - rows_.begin()));
}

TickedItem LargeOldList::ticked(std::uint32_t row) const {
    auto item = TickedItem::alone(rows_[row].item, contents_[row].kind);
    item.count = contents_[row].count;
    item.leastFreed = contents_[row].leastFreed;
    return item;
}

LargeOldOrder arranged(const LargeOldList& list, const LargeOldArrangement& arrangement,
                       const std::string& home) {
    const auto& rows = list.rows();
    const TextMatcher matcher(arrangement.text);
    LargeOldOrder order;
    for (std::uint32_t row = 0; row < rows.size(); ++row) {
        if (!arrangement.gone.contains(row) && matcher.isInPath(rows[row].item.path, home))
            order.rows.push_back(row);
    }
    switch (arrangement.column) {
    case LargeOldArrangement::Column::name:
        sortByKey(order.rows, arrangement.descending,
                  [&](std::uint32_t row) { return caseFolded(rows[row].item.title); });
        break;
    case LargeOldArrangement::Column::kind:
        sortByKey(order.rows, arrangement.descending,
                  [&](std::uint32_t row) { return title(list.kind(row)); });
        break;
    case LargeOldArrangement::Column::lastUsed:
        sortByKey(order.rows, arrangement.descending,
                  [&](std::uint32_t row) { return rows[row].lastUsed.date; });
        break;
    case LargeOldArrangement::Column::size:
        sortByKey(order.rows, arrangement.descending, [&](std::uint32_t row) { return rows[row].bytes; });
        break;
    }
    order.places.assign(rows.size(), LargeOldOrder::nowhere);
    for (std::uint32_t place = 0; place < order.rows.size(); ++place)
        order.places[order.rows[place]] = place;
    return order;
}

} // namespace orbel
