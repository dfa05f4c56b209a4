#include "Commands/KeepOption.h"

#include "Find/ContentComparison.h"
#include "Platform/FileContent.h"
#include "Util/RawValue.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <vector>

namespace orbel {

std::expected<KeptCopy, std::string> keptCopyAt(const std::string& path) {
    const auto content = platform::FileContent::open(path);
    if (content)
        return KeptCopy{.path = path, .stamp = FileStamp::of(content->status)};
    // EINVAL and ELOOP tell that something else lies there: a folder, a device, a link.
    if (content.error() == EINVAL || content.error() == ELOOP)
        return std::unexpected("is not a regular file");
    return std::unexpected(std::generic_category().message(content.error()));
}

const DeletionItem* requireCopies(const KeptCopy& keep, std::span<DeletionItem> items,
                                  const std::function<bool()>& isCancelled) {
    const auto itself = std::ranges::find_if(
        items, [&](const DeletionItem& item) { return item.scanStamp.identity == keep.stamp.identity; });
    if (itself != items.end())
        return &*itself;

    std::vector<DuplicateFile> files{{.path = keep.path, .stamp = keep.stamp}};
    std::vector<DeletionItem*> candidates;
    for (auto& item : items) {
        item.module = DeletionModule::duplicates;
        item.id = std::string(rawValue(item.module)) + ":" + item.path;
        item.keep = keep;
        if (item.blockedReason)
            continue;
        item.blockedReason = "Could not be proved the same as the copy you are keeping";
        if (!item.scanStamp.isDirectory && item.scanStamp.size == keep.stamp.size) {
            candidates.push_back(&item);
            files.push_back({.path = item.path, .stamp = item.scanStamp});
        }
    }
    const auto clusters = ContentComparison(ContentComparison::openFileLimit(1)).clusters(files, isCancelled);
    for (const auto& cluster : clusters)
        if (cluster.front() == 0) // the one of the kept copy
            for (const auto file : std::span(cluster).subspan(1))
                candidates[file - 1]->blockedReason.reset();
    return nullptr;
}

} // namespace orbel
