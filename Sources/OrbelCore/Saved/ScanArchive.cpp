#include "Saved/ScanArchive.h"

#include "Journal/PrivateFile.h"
#include "Platform/ReplaceFile.h"
#include "Safety/ByteFormat.h"
#include "Saved/ScanThinning.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>
#include <system_error>

#include <unistd.h>

namespace orbel {

namespace {

constexpr std::string_view ending = ".scan";
constexpr std::size_t hashDigits = 16;

/// FNV-1a: the same in every build. That two roots share it costs a look at a header, no more.
std::string stableHash(std::string_view text) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char byte : text) {
        hash ^= static_cast<unsigned char>(byte);
        hash *= 0x100000001b3;
    }
    constexpr std::string_view digits = "0123456789abcdef";
    std::string name;
    for (int shift = 60; shift >= 0; shift -= 4)
        name += digits[hash >> shift & 0xF];
    return name;
}

/// "0123456789abcdef-2025-11-17T09:05:00Z.scan"
std::string nameOf(const std::string& root, Date measuredAt) {
    return stableHash(root) + "-" + iso8601(measuredAt) + std::string(ending);
}

/// A file of the archive, as far as its name and its status tell.
struct ArchiveFile {
    std::string name;
    Date measuredAt{}; ///< cut to the second
    std::uint64_t bytes = 0;

    bool isOf(const std::string& root) const { return name.starts_with(stableHash(root) + "-"); }
};

bool isHash(std::string_view text) {
    return text.size() == hashDigits && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

/// When the scan was made that a file of this name holds; absent for all names that are not the archive's.
std::optional<Date> timeInName(std::string_view name) {
    if (name.size() <= hashDigits || name[hashDigits] != '-' || !isHash(name.substr(0, hashDigits))
        || !name.ends_with(ending))
        return std::nullopt;
    name.remove_prefix(hashDigits + 1);
    name.remove_suffix(ending.size());
    return parseIso8601(name);
}

/// The newest first; none where there is no folder.
std::vector<ArchiveFile> filesIn(const std::string& folder) {
    std::vector<ArchiveFile> files;
    std::error_code none;
    for (std::filesystem::directory_iterator at(folder, none), end; !none && at != end; at.increment(none)) {
        const auto name = at->path().filename().string();
        const auto time = timeInName(name);
        std::error_code gone;
        const bool isFile = time && at->symlink_status(gone).type() == std::filesystem::file_type::regular;
        const auto bytes = isFile ? at->file_size(gone) : 0;
        if (isFile && !gone)
            files.push_back({.name = name, .measuredAt = *time, .bytes = bytes});
    }
    std::ranges::sort(files, [](const ArchiveFile& a, const ArchiveFile& b) {
        return a.measuredAt != b.measuredAt ? a.measuredAt > b.measuredAt : a.name < b.name;
    });
    return files;
}

FileDescriptor openPrivate(const FileDescriptor& folder, const std::string& name) {
    auto opened = PrivateFile::open(folder.get(), name, PrivateFile::Access::read, name);
    return opened ? std::move(opened->file) : FileDescriptor();
}

std::optional<ScanHeader> headerOf(const FileDescriptor& folder, const std::string& name) {
    const auto file = openPrivate(folder, name);
    if (!file)
        return std::nullopt;
    // Longer only with thousands of folders that were left out.
    std::string beginning(64UL * 1024, '\0');
    const auto count = ::pread(file.get(), beginning.data(), beginning.size(), 0);
    beginning.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (auto header = scanHeaderIn(beginning))
        return header;
    const auto whole = readFile(file.get());
    return whole ? scanHeaderIn(*whole) : std::nullopt;
}

std::expected<void, std::string> removeFile(const std::string& path) {
    if (::unlink(path.c_str()) == 0 || errno == ENOENT)
        return {};
    return std::unexpected(path + ": " + std::generic_category().message(errno));
}

/// Versions before 0.2 kept the largest folders of a scan in JSON, in a folder beside the archive's.
void removeOldSummaries(const std::string& archive) {
    const std::filesystem::path folder = joinedPath(parentPath(archive), "growth");
    std::error_code none;
    std::vector<std::filesystem::path> summaries;
    for (std::filesystem::directory_iterator at(folder, none), end; !none && at != end; at.increment(none))
        if (at->path().extension() == ".json" && isHash(at->path().stem().string()))
            summaries.push_back(at->path());
    for (const auto& summary : summaries)
        std::filesystem::remove(summary, none);
    // Not when something else is in it.
    if (!summaries.empty())
        std::filesystem::remove(folder, none);
}

/// As a scan keeps them, their order and number tell nothing.
bool arePatternsAlike(const std::vector<std::string>& some, const std::vector<std::string>& others) {
    return std::set(some.begin(), some.end()) == std::set(others.begin(), others.end());
}

} // namespace

std::string ScanArchive::defaultFolder(const std::string& applicationSupportFolder) {
    return joinedPath(applicationSupportFolder, "Ostrevo Orbel/scans");
}

std::vector<ScanArchive::Entry> ScanArchive::of(const std::string& root) const {
    std::vector<Entry> entries;
    const auto folder = openExistingFolder(folder_);
    for (const auto& file : filesIn(folder_)) {
        auto header = folder && file.isOf(root) ? headerOf(folder, file.name) : std::nullopt;
        if (header && header->root == root)
            entries.push_back({.path = joinedPath(folder_, file.name),
                               .fileBytes = file.bytes,
                               .header = *std::move(header)});
    }
    return entries;
}

std::expected<KeptScan, std::string> ScanArchive::read(const Entry& entry) const {
    const auto folder = openExistingFolder(folder_);
    const auto file =
        folder ? openPrivate(folder, std::string(lastPathComponent(entry.path))) : FileDescriptor();
    const auto bytes = file ? readFile(file.get()) : std::nullopt;
    return bytes ? scanFromFile(*bytes) : std::unexpected(std::string("The kept scan could not be read"));
}

std::optional<KeptScan> ScanArchive::newest(const std::string& root, const std::vector<std::string>& patterns,
                                            Date end) const {
    for (const auto& entry : of(root)) {
        if (entry.header.origin.measuredAt >= end
            || !arePatternsAlike(entry.header.exclusions.patterns, patterns))
            continue;
        if (auto kept = read(entry))
            return *std::move(kept);
    }
    return std::nullopt;
}

std::expected<void, std::string> ScanArchive::keep(const FileTree& tree, const ScanOrigin& origin,
                                                   Date now) const {
    if (tree.count() == 0 || !tree.isFolder(0) || tree.flags(0).contains(NodeFlags::unreadable))
        return {};
    const auto bytes = scanFileBytes(tree, origin);
    if (bytes.size() > mostBytes_)
        return std::unexpected("It takes " + ByteFormat::string(bytes.size())
                               + ", and all kept scans together may take " + ByteFormat::string(mostBytes_));
    if (const auto folder = openFolder(folder_); !folder)
        return std::unexpected(folder.error().words);
    const auto path = joinedPath(folder_, nameOf(tree.rootPath, origin.measuredAt));
    if (const auto written = replaceFile(path, bytes, FileAccess::ownerOnly); !written)
        return std::unexpected(path + ": " + written.error());
    removeOldSummaries(folder_);
    return thinOut(tree, path, now);
}

std::expected<void, std::string> ScanArchive::thinOut(const FileTree& tree, const std::string& added,
                                                      Date now) const {
    auto entries = of(tree.rootPath);
    std::erase_if(entries, [&](const Entry& entry) {
        return !arePatternsAlike(entry.header.exclusions.patterns, tree.exclusions.patterns);
    });
    std::vector<Date> dates;
    dates.reserve(entries.size());
    for (const auto& entry : entries)
        dates.push_back(entry.header.origin.measuredAt);
    for (const auto index : expiredScans(dates, now)) {
        if (auto removed = removeFile(entries[index].path); !removed)
            return removed;
    }

    auto files = filesIn(folder_);
    auto bytes = size().bytes;
    while (bytes > mostBytes_ && !files.empty()) {
        const auto oldest = joinedPath(folder_, files.back().name);
        if (oldest != added) {
            if (auto removed = removeFile(oldest); !removed)
                return removed;
            bytes -= files.back().bytes;
        }
        files.pop_back();
    }
    return {};
}

ScanArchive::Size ScanArchive::size() const {
    Size size;
    for (const auto& file : filesIn(folder_)) {
        ++size.scans;
        size.bytes += file.bytes;
    }
    return size;
}

std::expected<void, std::string> ScanArchive::clear() const {
    for (const auto& file : filesIn(folder_)) {
        if (auto removed = removeFile(joinedPath(folder_, file.name)); !removed)
            return removed;
    }
    return {};
}

} // namespace orbel
