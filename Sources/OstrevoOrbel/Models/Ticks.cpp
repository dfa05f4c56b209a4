#include "Models/Ticks.h"

#include "Models/FreedAside.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <utility>

namespace orbel {

namespace {

/// So many items take no time to be freed.
constexpr std::size_t quicklyFreed = 2'000;

std::string insideOf(std::string_view folder) {
    return folder == "/" ? "/" : std::string(folder) + '/';
}

} // namespace

bool Ticks::Content::put(TickedItem item) {
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

bool Ticks::Content::take(const std::string& id) {
    const auto known = pathOf_.find(id);
    if (known == pathOf_.end())
        return false;
    byPath_.erase(known->second);
    pathOf_.erase(known);
    return true;
}

const TickedItem* Ticks::Content::covering(std::string_view path) const {
    while (!path.empty()) {
        if (const auto found = byPath_.find(path); found != byPath_.end())
            return &found->second;
        if (path == "/")
            break;
        path = parentPath(path);
    }
    return nullptr;
}

bool Ticks::Content::anyInside(std::string_view path) const {
    const auto inside = insideOf(path);
    const auto found = byPath_.lower_bound(inside);
    return found != byPath_.end() && found->first.starts_with(inside);
}

/// To be changed: what is lent stays as it is.
Ticks::Content& Ticks::own() {
    if (std::exchange(isLent_, false))
        content_ = std::make_shared<Content>(*content_);
    return *content_;
}

void Ticks::replace(std::unique_ptr<Content> content) {
    auto former = std::exchange(content_, std::move(content));
    isLent_ = false;
    const bool isLarge = former->byPath().size() > quicklyFreed;
    freeAside(std::move(former), isLarge);
}

bool Ticks::setTicked(TickedItem item, bool ticked) {
    if (!ticked)
        return untick(item.item.id);
    if (!own().put(std::move(item)))
        return false;
    tell();
    return true;
}

void Ticks::tickAll(std::vector<TickedItem> items) {
    bool isChanged = false;
    for (auto& item : items)
        isChanged = own().put(std::move(item)) || isChanged;
    if (isChanged)
        tell();
}

void Ticks::replaceAll(std::vector<TickedItem> items) {
    auto content = std::make_unique<Content>();
    for (auto& item : items)
        content->put(std::move(item));
    replace(std::move(content));
    ++epoch_;
    tell();
}

bool Ticks::untick(const std::string& id) {
    if (!contains(id))
        return false;
    own().take(id);
    tell();
    return true;
}

void Ticks::untickAll(const std::vector<std::string>& ids) {
    bool isChanged = false;
    for (const auto& id : ids)
        isChanged = (contains(id) && own().take(id)) || isChanged;
    if (isChanged)
        tell();
}

void Ticks::clear() {
    if (count() > 0)
        replaceAll({});
    else
        ++epoch_;
}

std::shared_ptr<const Ticks::Content> Ticks::lend() {
    isLent_ = true;
    return content_;
}

bool Ticks::take(std::shared_ptr<const Content> lent, std::unique_ptr<Content> made) {
    if (lent != content_)
        return false;
    lent.reset();
    replace(std::move(made));
    tell();
    return true;
}

void Ticks::setFilter(IsShown isShown) {
    isShown_ = std::move(isShown);
    tell();
}

void Ticks::tell() {
    hidden_ = 0;
    sums_ = {};
    for (const auto& [path, item] : byPath()) {
        sums_.add(item);
        if (isShown_ && !isShown_(item))
            ++hidden_;
    }
    Q_EMIT changed();
}

std::vector<TickedItem> Ticks::items() const {
    std::vector<TickedItem> items;
    items.reserve(byPath().size());
    for (const auto& [path, item] : byPath())
        items.push_back(item);
    // By path so far, which settles what stands at the same place.
    if (position_)
        std::ranges::stable_sort(items, {}, [this](const TickedItem& item) { return position_(item); });
    else
        std::ranges::stable_sort(items, std::ranges::greater{},
                                 [](const TickedItem& item) { return item.item.estimatedBytes; });
    return items;
}

QString Ticks::statement() const {
    return countOf(byPath().size(), tr("item ticked"), tr("items ticked"));
}

QString Ticks::remark() const {
    if (!isShown_ || byPath().empty())
        return {};
    if (hidden_ > 0)
        return tr("%1 of %2 hidden by filters")
            .arg(countText(static_cast<std::uint64_t>(hidden_)), countText(byPath().size()));
    return byPath().size() == 1 ? tr("visible with these filters")
                                : tr("all %1 visible with these filters").arg(countText(byPath().size()));
}

QString Ticks::reviewText() const {
    return tr("Review %1…").arg(countOf(byPath().size(), tr("Item"), tr("Items")));
}

} // namespace orbel
