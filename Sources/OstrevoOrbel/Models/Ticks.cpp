#include "Models/Ticks.h"

#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

namespace {

std::string insideOf(std::string_view folder) {
    return folder == "/" ? "/" : std::string(folder) + '/';
}

} // namespace

bool Ticks::setTicked(TickedItem item, bool ticked) {
    if (!ticked)
        return untick(item.item.id);
    if (!put(std::move(item)))
        return false;
    tell();
    return true;
}

void Ticks::tickAll(std::vector<TickedItem> items) {
    bool isChanged = false;
    for (auto& item : items)
        isChanged = put(std::move(item)) || isChanged;
    if (isChanged)
        tell();
}

void Ticks::replaceAll(std::vector<TickedItem> items) {
    byPath_.clear();
    pathOf_.clear();
    for (auto& item : items)
        put(std::move(item));
    tell();
}

bool Ticks::untick(const std::string& id) {
    if (!take(id))
        return false;
    tell();
    return true;
}

void Ticks::untickAll(const std::vector<std::string>& ids) {
    bool isChanged = false;
    for (const auto& id : ids)
        isChanged = take(id) || isChanged;
    if (isChanged)
        tell();
}

void Ticks::clear() {
    if (!byPath_.empty())
        replaceAll({});
}

bool Ticks::put(TickedItem item) {
    const auto path = item.item.path;
    if (!item.item.isSelectable() || covering(path) != nullptr)
        return false;
    const auto inside = insideOf(path);
    for (auto found = byPath_.lower_bound(inside);
         found != byPath_.end() && found->first.starts_with(inside);) {
        pathOf_.erase(found->second.item.id);
        found = byPath_.erase(found);
    }
    pathOf_.emplace(item.item.id, path);
    byPath_.emplace(path, std::move(item));
    return true;
}

bool Ticks::take(const std::string& id) {
    const auto known = pathOf_.find(id);
    if (known == pathOf_.end())
        return false;
    byPath_.erase(known->second);
    pathOf_.erase(known);
    return true;
}

const TickedItem* Ticks::covering(std::string_view path) const {
    while (!path.empty()) {
        if (const auto found = byPath_.find(path); found != byPath_.end())
            return &found->second;
        if (path == "/")
            break;
        path = parentPath(path);
    }
    return nullptr;
}

bool Ticks::anyInside(std::string_view path) const {
    const auto inside = insideOf(path);
    const auto found = byPath_.lower_bound(inside);
    return found != byPath_.end() && found->first.starts_with(inside);
}

void Ticks::setFilter(IsShown isShown) {
    isShown_ = std::move(isShown);
    tell();
}

void Ticks::tell() {
    hidden_ = 0;
    if (isShown_)
        hidden_ = static_cast<int>(
            std::ranges::count_if(byPath_, [this](const auto& entry) { return !isShown_(entry.second); }));
    Q_EMIT changed();
}

std::vector<TickedItem> Ticks::items() const {
    std::vector<TickedItem> items;
    items.reserve(byPath_.size());
    for (const auto& [path, item] : byPath_)
        items.push_back(item);
    // By path so far, which settles what stands at the same place.
    if (position_)
        std::ranges::stable_sort(items, {}, [this](const TickedItem& item) { return position_(item); });
    else
        std::ranges::stable_sort(items, std::ranges::greater{},
                                 [](const TickedItem& item) { return item.item.estimatedBytes; });
    return items;
}

ByteFigure Ticks::bytes() const {
    return ByteFigure(bytesOf(items()));
}

QString Ticks::statement() const {
    return countOf(byPath_.size(), tr("item ticked"), tr("items ticked"));
}

QString Ticks::frees() const {
    return freesText(items());
}

QString Ticks::remark() const {
    if (!isShown_ || byPath_.empty())
        return {};
    if (hidden_ > 0)
        return tr("%1 of %2 hidden by filters")
            .arg(countText(static_cast<std::uint64_t>(hidden_)), countText(byPath_.size()));
    return byPath_.size() == 1 ? tr("visible with these filters")
                               : tr("all %1 visible with these filters").arg(countText(byPath_.size()));
}

QString Ticks::reviewText() const {
    return tr("Review %1…").arg(countOf(byPath_.size(), tr("Item"), tr("Items")));
}

} // namespace orbel
