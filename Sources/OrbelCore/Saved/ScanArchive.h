#pragma once

#include "Saved/ScanFile.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <vector>

namespace orbel {

/// The scans of this computer that were kept by themselves, one file each, in a folder of this user's own
/// (0700, the files 0600). Thinned with each scan that is added: see ScanThinning.h for those of one root
/// and the same patterns, and `mostBytes` for all together. Damaged and other users' files are not believed.
///
/// Any thread may use it, and other processes may use the same folder.
class ScanArchive {
public:
    static constexpr std::uint64_t usualMostBytes = 500'000'000;

    /// A kept scan that has not been read.
    struct Entry {
        std::string path; ///< of its file
        std::uint64_t fileBytes = 0;
        ScanHeader header;
    };

    struct Size {
        std::size_t scans = 0;
        std::uint64_t bytes = 0;
        bool operator==(const Size&) const = default;
    };

    /// An archive in the folder at this absolute path, which is made when something is to be kept.
    explicit ScanArchive(std::string folder, std::uint64_t mostBytes = usualMostBytes)
        : folder_(std::move(folder)), mostBytes_(mostBytes) {}

    /// The archive's place in the folder where applications keep their data: beside the journal.
    static std::string defaultFolder(const std::string& applicationSupportFolder);

    /// Keeps a complete scan that was made here, and thins out. A scan of a file, or of what could not be
    /// read, is not kept. The error is in words for people; no earlier scan is then lost.
    std::expected<void, std::string> keep(const FileTree& tree, const ScanOrigin& origin, Date now) const;

    /// The kept scans of the root that was walked (FileTree::rootPath), the newest first.
    std::vector<Entry> of(const std::string& root) const;

    /// The tree of one of them; the error is in words for people.
    std::expected<KeptScan, std::string> read(const Entry& entry) const;

    /// The newest kept scan of that root which left out the same patterns and was made before `end`; absent
    /// when there is none that can be read.
    std::optional<KeptScan> newest(const std::string& root, const std::vector<std::string>& patterns,
                                   Date end = Date::max()) const;

    /// Of all that is kept, also of what cannot be read.
    Size size() const;

    /// Removes all kept scans for good. The error names the first that could not be removed.
    std::expected<void, std::string> clear() const;

private:
    std::expected<void, std::string> thinOut(const FileTree& tree, const std::string& added, Date now) const;

    std::string folder_;
    std::uint64_t mostBytes_;
};

} // namespace orbel
