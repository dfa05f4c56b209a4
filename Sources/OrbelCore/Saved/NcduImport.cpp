#include "Saved/NcduImport.h"

#include "Saved/RawJson.h"
#include "Scan/WalkStore.h"
#include "Util/PathText.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace orbel {

namespace {

/// No path may be longer, nor folders lie deeper in one another: what is done along paths then stays bounded.
constexpr std::size_t longestPath = 1024 * 1024;
constexpr std::size_t deepestFolder = 64 * 1024;
constexpr std::string_view damaged = "The export is damaged";

/// Whether it begins as `[1,2,{` does, white space aside.
bool isBegunByExport(std::string_view text) {
    const auto skip = [&](std::string_view characters) {
        text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
    };
    const auto take = [&](char character) {
        skip(" \t\r\n");
        const bool isNext = text.starts_with(character);
        text.remove_prefix(isNext ? 1 : 0);
        return isNext;
    };
    if (!take('[') || !take('1') || !take(','))
        return false;
    skip(" \t\r\n");
    const auto before = text.size();
    skip("0123456789");
    return text.size() < before && take(',') && take('{');
}

/// What an export says of a file or folder.
struct ExportedItem {
    enum class Excluded : std::uint8_t { no, byPattern, elsewhere };

    std::string name;
    std::optional<std::uint64_t> length;
    std::optional<std::uint64_t> bytes; ///< on disk
    std::optional<std::uint64_t> device;
    std::optional<std::uint64_t> inode;
    std::uint64_t links = 1;
    bool isHardLink = false;
    bool isRegular = true;
    bool isUnreadable = false;
    Excluded excluded = Excluded::no;
    std::int32_t modifiedMinutes = FileTree::unknownTime;
};

class NcduImport {
public:
    NcduImport(TextPieces& pieces, std::string_view beginning) : json_(pieces, beginning) {}

    std::expected<KeptScan, std::string> run() {
        json_.expect('[');
        json_.number();
        json_.expect(',');
        json_.number();
        json_.expect(',');
        readHeader();
        json_.expect(',');
        readEntry();
        while (!open_.empty() && !json_.hasFailed()) {
            if (json_.take(',')) {
                readEntry();
            } else {
                json_.expect(']');
                open_.pop_back();
            }
        }
        json_.expect(']');
        json_.expectEnd();
        if (!json_.hasFailed()) {
            tree_.finalize(tree_.hardLinkCandidates());
            if (!origin_.isSound() || !isTotalSound())
                json_.fail(damaged);
        }
        if (json_.hasFailed())
            return std::unexpected(json_.failure());
        return KeptScan{.tree = std::move(tree_), .origin = std::move(origin_)};
    }

private:
    struct OpenFolder {
        NodeIndex node = 0;
        std::uint64_t device = 0;
        std::size_t pathLength = 0;
    };

    /// Calls `read` with each key of an object; it takes the value.
    void forEachMember(auto read) {
        json_.expect('{');
        if (json_.take('}'))
            return;
        do {
            read(json_.key());
        } while (json_.take(','));
        json_.expect('}');
    }

    void readHeader() {
        std::string version;
        forEachMember([&](std::string_view key) {
            if (key == "progname")
                origin_.program = json_.text();
            else if (key == "progver")
                version = json_.text();
            else if (key == "timestamp")
                origin_.measuredAt = dateOf(json_.seconds());
            else
                json_.skip();
        });
        givesInodesToRepeats_ = origin_.program == "gdu";
        if (!version.empty())
            origin_.program += (origin_.program.empty() ? "" : " ") + version;
    }

    /// Unknown when no clock can have shown it.
    static Date dateOf(std::int64_t seconds) {
        constexpr auto farthest = std::chrono::floor<std::chrono::seconds>(Date::duration::max()).count();
        const Date date(std::chrono::seconds(std::clamp<std::int64_t>(seconds, -farthest, farthest)));
        return ScanOrigin::isSound(date) ? date : Date();
    }

    void readEntry() {
        const bool isList = json_.take('[');
        readItem();
        if (!json_.hasFailed())
            add(isList);
    }

    void readItem() {
        item_ = {};
        forEachMember([&](std::string_view key) {
            if (key == "name")
                item_.name = json_.text();
            else if (key == "asize")
                item_.length = json_.number();
            else if (key == "dsize")
                item_.bytes = json_.number();
            else if (key == "dev")
                item_.device = json_.number();
            else if (key == "ino")
                item_.inode = json_.number();
            else if (key == "nlink")
                item_.links = json_.number();
            else if (key == "hlnkc")
                item_.isHardLink = json_.boolean();
            else if (key == "notreg")
                item_.isRegular = !json_.boolean();
            else if (key == "read_error")
                item_.isUnreadable = json_.boolean();
            else if (key == "excluded")
                item_.excluded = json_.text() == "pattern" ? ExportedItem::Excluded::byPattern
                                                           : ExportedItem::Excluded::elsewhere;
            else if (key == "mtime")
                item_.modifiedMinutes = walk::minutesOf(json_.seconds());
            else
                json_.skip();
        });
    }

    void add(bool isList) {
        const bool isRoot = open_.empty();
        const auto folder = isRoot ? OpenFolder() : open_.back();
        if (isRoot && !takeRoot())
            return;
        const auto pathLength = folder.pathLength + 1 + item_.name.size();
        if ((!isRoot && !isEntryName(item_.name)) || !fits(isRoot, pathLength)) {
            json_.fail(damaged);
            return;
        }
        using Excluded = ExportedItem::Excluded;
        const bool isLeftOut = !isList && item_.excluded != Excluded::no;
        const bool isFolder =
            isList
            || (isLeftOut && (item_.excluded == Excluded::elsewhere || (!item_.length && !item_.bytes)));
        const auto device = item_.device.value_or(folder.device);
        const auto node = tree_.append(newNode(isRoot, isFolder, isLeftOut));
        if (isRoot)
            tree_.device = device;
        else if (!isFolder && !isLeftOut && device != tree_.device)
            tree_.otherDevices[node] = device;
        if (item_.isUnreadable)
            ++tree_.unreadableCount;
        if (isLeftOut && item_.excluded == Excluded::byPattern)
            tree_.excludedNodes.insert(node);
        else if (isLeftOut)
            ++tree_.otherVolumeCount;
        if (isList)
            open_.push_back({.node = node, .device = device, .pathLength = pathLength});
    }

    /// The root is named by its path, and known by it.
    bool takeRoot() {
        if (!item_.name.starts_with('/') || item_.name.contains('\0')) {
            json_.fail("The export does not say which folder it is of: its root has no absolute path");
            return false;
        }
        tree_ = FileTree(standardizedPath(item_.name));
        return true;
    }

    /// Whether all that is numbered has room for the item.
    bool fits(bool isRoot, std::size_t pathLength) {
        const auto nameBytes = isRoot ? 0 : item_.name.size();
        return open_.size() < deepestFolder && pathLength <= longestPath
               && nameBytes <= std::numeric_limits<std::uint16_t>::max()
               && nameBytes <= std::numeric_limits<std::uint32_t>::max() - tree_.names.size()
               && tree_.count() < FileTree::noParent;
    }

    /// Of the finished tree, whose totals may have wrapped around.
    bool isTotalSound() const {
        std::uint64_t total = 0;
        for (NodeIndex node = 0; node < tree_.count(); ++node) {
            const auto bytes = tree_.isFolder(node) ? 0 : tree_.allocated(node);
            if (bytes > mostScanBytes - total)
                return false;
            total += bytes;
        }
        return true;
    }

    FileTree::NewNode newNode(bool isRoot, bool isFolder, bool isLeftOut) const {
        const auto name = isRoot ? lastPathComponent(tree_.rootPath) : std::string_view(item_.name);
        const bool isBundle = isFolder && !isRoot && isPackage(name);
        NodeFlags flags;
        if (isFolder)
            flags = NodeFlags::folder | (isBundle ? NodeFlags::package : NodeFlags{});
        else if (!item_.isRegular)
            flags = NodeFlags::symlink;
        if (item_.isUnreadable)
            flags = flags | NodeFlags::unreadable;
        if (isLeftOut)
            flags = flags | NodeFlags::otherVolume;
        const bool hasContent = !isFolder && !isLeftOut;
        const bool isRepeat = hasContent && item_.isHardLink && givesInodesToRepeats_;
        const bool isLink = hasContent && !isRepeat && item_.inode && (item_.isHardLink || item_.links >= 2);
        if (isRepeat)
            flags = flags | NodeFlags::linkCountedElsewhere;
        return {.parent = isRoot ? FileTree::noParent : open_.back().node,
                .name = isRoot ? std::string_view() : name,
                .allocated = hasContent && !isRepeat ? item_.bytes.value_or(0) : 0,
                .logical = isFolder ? 0 : item_.length.value_or(0),
                .modifiedMinutes = item_.modifiedMinutes,
                .inode = item_.inode.value_or(0),
                .linkCount = walk::cappedLinks(isLink ? std::max<std::uint64_t>(item_.links, 2) : 1),
                .flags = flags,
                .kind = classify(name, isFolder, isBundle)};
    }

    RawJson json_;
    FileTree tree_;
    ScanOrigin origin_;
    ExportedItem item_;            ///< the one that was read last
    std::vector<OpenFolder> open_; ///< from the root to where the next entry belongs
    /// Whether only those links of a file are marked, and have an inode, that are counted with another one.
    bool givesInodesToRepeats_ = false;
};

} // namespace

bool isBegunAsNcdu(TextPieces& text) {
    const auto beginning = text.next();
    return beginning && isBegunByExport(*beginning);
}

std::optional<std::expected<KeptScan, std::string>> scanFromNcdu(TextPieces& text) {
    const auto beginning = text.next();
    if (!beginning || !isBegunByExport(*beginning))
        return std::nullopt;
    return NcduImport(text, *beginning).run();
}

} // namespace orbel
