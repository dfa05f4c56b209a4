#include "Delete/StrayItems.h"

#include "Delete/TrashFolder.h"
#include "Util/PathText.h"

#include <filesystem>
#include <system_error>

namespace orbel {

namespace {

template <class Visit>
void forEachName(const std::string& folder, const Visit& visit) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        visit(entry->path().filename().native());
}

} // namespace

void StrayItems::list(const TrashFolder& trash) {
    constexpr std::chrono::seconds longestKnown(60);
    const auto now = std::chrono::steady_clock::now();
    if (isKnown_.exchange(true) && now - listedAt_ < longestKnown)
        return;
    listedAt_ = now;
    names_.clear();
    // In this order: the info file of an item is there before the item.
    forEachName(joinedPath(trash.path, "files"), [this](const std::string& name) { names_.insert(name); });
    forEachName(joinedPath(trash.path, "info"), [this](std::string name) {
        if (name.ends_with(trashInfoSuffix)) {
            name.resize(name.size() - trashInfoSuffix.size());
            names_.erase(name);
        }
    });
}

} // namespace orbel
