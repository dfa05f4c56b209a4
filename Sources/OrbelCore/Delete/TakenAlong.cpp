#include "Delete/TakenAlong.h"

#include "Util/PathText.h"

#include <string_view>
#include <unordered_map>

namespace orbel {

namespace {

/// By path, the item that stands for all of this path.
using Standing = std::unordered_map<std::string_view, const DeletionItem*>;

bool isInSelectable(std::string_view path, const Standing& standing) {
    for (auto folder = parentPath(path); folder != path && !folder.empty(); folder = parentPath(path)) {
        if (const auto found = standing.find(folder);
            found != standing.end() && found->second->isSelectable())
            return true;
        path = folder;
    }
    return false;
}

} // namespace

std::vector<bool> takenAlong(std::span<const DeletionItem> items) {
    Standing standing;
    for (const auto& item : items) {
        const auto [known, isNew] = standing.try_emplace(item.path, &item);
        if (!isNew && !known->second->isSelectable() && item.isSelectable())
            known->second = &item;
    }
    std::vector<bool> taken;
    taken.reserve(items.size());
    for (const auto& item : items)
        taken.push_back(standing.at(item.path) != &item || isInSelectable(item.path, standing));
    return taken;
}

} // namespace orbel
