#pragma once

#include "Platform/DirectoryReader.h"
#include "Scan/FileKind.h"
#include "Scan/NodeFlags.h"
#include "Util/PageArray.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string_view>
#include <vector>

/// What the workers of a walk write while it runs, before it is merged into a FileTree.
///
/// Every worker appends the nodes that it finds to chunks of its own, without a lock. The entries of one
/// folder lie side by side (in a few runs when a chunk fills up), so that the merge copies whole runs, column
/// by column, and can put them into an order that does not depend on the threads.
namespace orbel::walk {

/// Nodes in column form. Appended to by one worker; an entry that is a folder is completed (own attributes,
/// flags) by the worker that opens it, which touches no other entry. Read by all once the workers have ended.
struct Chunk {
    static constexpr std::uint32_t capacity = 16 * 1024;
    static constexpr std::uint32_t nameCapacity = 1024 * 1024;

    PageArray<std::uint64_t> allocated{capacity};
    PageArray<std::uint64_t> logical{capacity};
    PageArray<std::uint64_t> inodes{capacity};
    PageArray<std::int32_t> modified{capacity}; ///< minutes
    PageArray<std::uint16_t> links{capacity};
    PageArray<std::uint16_t> nameLength{capacity};
    PageArray<std::uint8_t> flags{capacity};
    PageArray<std::uint8_t> kinds{capacity};
    PageArray<char> names{nameCapacity};
    std::uint32_t count = 0;
    std::uint32_t nameBytes = 0;

    bool hasRoomFor(std::string_view name) const {
        return count < capacity && name.size() <= nameCapacity - nameBytes;
    }
    /// Appends a node and returns its place. Only when there is room for it.
    std::uint32_t append(std::string_view name, NodeFlags nodeFlags, FileKind kind);
    /// Fills in what was measured of the node at that place. Folders keep 0 allocated bytes.
    void setAttributes(std::uint32_t place, const platform::EntryAttributes& attributes);
};

/// Whole minutes since 1970 for seconds since 1970, rounded down and clamped.
std::int32_t minutesOf(std::int64_t seconds);
/// A link count as the tree keeps it.
std::uint16_t cappedLinks(std::uint64_t links);

/// Entries of one folder that lie side by side in a chunk.
struct Run {
    Chunk* chunk = nullptr;
    std::uint32_t first = 0;
    std::uint32_t count = 0;
    std::uint32_t nameStart = 0;
};

/// The live figure of one entry under the root; its address is stable.
struct Slot {
    Slot(std::string_view slotName, bool folder) : name(slotName), isFolder(folder) {}
    std::string name;
    bool isFolder;
    std::atomic<std::uint64_t> bytes = 0;
};

/// One folder to list: created once, by the worker that lists its parent, and listed once. It outlives the
/// walk's threads and then tells the merge where the folder's entries are.
struct WorkUnit {
    WorkUnit* parent = nullptr; ///< absent for the root
    Chunk* chunk = nullptr;     ///< with `place`: the folder's own node; absent for the root
    std::uint32_t place = 0;
    std::uint32_t nameStart = 0; ///< of its name in the chunk
    std::uint32_t position = 0;  ///< among the entries of its parent
    Slot* slot = nullptr;        ///< absent for the root

    // Set by the worker that lists it.
    Run run;                                ///< its entries, or the first of them
    std::unique_ptr<std::vector<Run>> more; ///< further runs; seldom any
    WorkUnit* firstChild = nullptr;         ///< folders inside, in the order of the listing
    WorkUnit* nextSibling = nullptr;        ///< set by the worker that lists the parent
    std::uint32_t entries = 0;

    // The folder's descriptor stays open until the last folder inside has been opened relative to it.
    int descriptor = -1;
    std::atomic<std::uint32_t> unopenedChildren = 0;

    // Set by the merge.
    std::uint32_t firstNode = 0; ///< index of its first entry in the tree

    /// Its name; empty for the root.
    std::string_view name() const {
        return chunk == nullptr ? std::string_view{}
                                : std::string_view(chunk->names.data() + nameStart, chunk->nameLength[place]);
    }
};

/// An alias file of the file manager: its folder and its position there.
struct AliasPlace {
    const WorkUnit* folder;
    std::uint32_t position;
};

/// What is left out: its folder and its position there.
struct ExcludedPlace {
    const WorkUnit* folder;
    std::uint32_t position;
};

/// A file that shows another device than the root: its folder and its position there.
struct OtherDevice {
    const WorkUnit* folder;
    std::uint32_t position;
    std::uint64_t device;
};

/// Entries of a folder that could not be read, and so are no nodes.
struct UnlistedEntries {
    const WorkUnit* folder;
    std::uint32_t count;
};

/// All that one worker found.
struct WorkerStore {
    std::vector<std::unique_ptr<Chunk>> chunks;
    std::deque<WorkUnit> units; ///< addresses are stable
    std::vector<AliasPlace> aliases;
    std::vector<ExcludedPlace> excluded;
    std::vector<OtherDevice> otherDevices;
    std::vector<const WorkUnit*> gone;     ///< folders that were listed by their parent and then not there
    std::vector<UnlistedEntries> unlisted; ///< one for each folder that has such entries

    /// A chunk with room for one more node of that name, the last one or a new one.
    Chunk& chunkFor(std::string_view name);
};

} // namespace orbel::walk
