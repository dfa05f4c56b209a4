#include "Growth/GrowthStore.h"

#include "Growth/SummaryJson.h"
#include "Journal/PrivateFile.h"
#include "Platform/ReplaceFile.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <sys/stat.h>

namespace orbel {

namespace {

/// A full summary has some hundred bytes a folder; a path can have thousands.
constexpr off_t largestFile = 32 * 1024 * 1024;

/// FNV-1a: the same in every build. That two roots share a file costs a comparison, no more, because the root
/// stands in it.
std::uint64_t stableHash(std::string_view text) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char byte : text) {
        hash ^= static_cast<unsigned char>(byte);
        hash *= 0x100000001b3;
    }
    return hash;
}

} // namespace

std::string GrowthStore::defaultFolder(const std::string& applicationSupportFolder) {
    return joinedPath(applicationSupportFolder, "Ostrevo Orbel/growth");
}

std::string GrowthStore::pathFor(const std::string& root, const Patterns& patterns) const {
    std::string key = root;
    for (const auto& pattern : patterns)
        key += '\0' + pattern;
    constexpr std::string_view digits = "0123456789abcdef";
    std::string name;
    const auto hash = stableHash(key);
    for (int shift = 60; shift >= 0; shift -= 4)
        name += digits[hash >> shift & 0xF];
    return joinedPath(folder_, name + ".json");
}

std::optional<ScanSummary> GrowthStore::latest(const std::string& root, const Patterns& patterns) const {
    const auto folder = openExistingFolder(folder_);
    if (!folder)
        return std::nullopt;
    const auto path = pathFor(root, patterns);
    const auto opened = PrivateFile::open(folder.get(), std::string(lastPathComponent(path)),
                                          PrivateFile::Access::read, path);
    struct stat status {};
    if (!opened || ::fstat(opened->file.get(), &status) != 0 || status.st_size > largestFile)
        return std::nullopt;
    const auto text = readFile(opened->file.get());
    auto summary = text ? summaryIn(*text) : std::nullopt;
    const bool isMeant = summary && summary->root == root && summary->excludedPatterns == patterns;
    return isMeant ? std::move(summary) : std::nullopt;
}

GrowthStore::Kept GrowthStore::keep(const FileTree& tree, Date measuredAt) const {
    const auto summary = ScanSummary::of(tree, measuredAt);
    if (!summary)
        return {};
    Kept kept;
    if (const auto earlier = latest(summary->root, summary->excludedPatterns))
        kept.growth = Growth::between(*earlier, *summary);
    const auto path = pathFor(summary->root, summary->excludedPatterns);
    if (const auto folder = openFolder(folder_); !folder)
        kept.failure = folder.error().words;
    else if (const auto written = replaceFile(path, summaryText(*summary), FileAccess::ownerOnly); !written)
        kept.failure = path + ": " + written.error();
    return kept;
}

} // namespace orbel
