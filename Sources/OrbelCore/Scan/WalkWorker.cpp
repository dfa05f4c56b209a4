#include "Scan/WalkWorker.h"

#include "Platform/Threads.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <cerrno>
#include <ranges>

namespace orbel::walk {

using platform::DirectoryEntry;
using platform::DirectoryReader;
using platform::FileType;

namespace {

/// Entries between two looks at the cancellation token and two updates of the live figures. With a cold disk
/// an entry takes up to some tenths of a millisecond.
constexpr std::uint64_t publishEvery = 128;

/// Adds to a figure that only this thread writes.
void addTo(std::atomic<std::uint64_t>& figure, std::uint64_t& amount) {
    figure.store(figure.load(std::memory_order_relaxed) + amount, std::memory_order_relaxed);
    amount = 0;
}

NodeFlags flagsOf(const DirectoryEntry& entry) {
    NodeFlags flags;
    if (entry.attributes.type == FileType::directory) {
        flags = flags.with(NodeFlags::folder);
        if (isPackage(entry.name))
            flags = flags.with(NodeFlags::package);
    } else if (entry.attributes.type == FileType::symbolicLink) {
        flags = flags.with(NodeFlags::symlink);
    }
    if (entry.attributes.isDataless)
        flags = flags.with(NodeFlags::dataless);
    if (entry.attributes.mayShareBlocks)
        flags = flags.with(NodeFlags::mayShareBlocks);
    return flags;
}

} // namespace

WalkWorker::WalkWorker(WalkContext& context, WalkQueue& queue, WorkerStore& store, WorkerCounters& counters)
    : context_(context),
      queue_(queue),
      store_(store),
      counters_(counters),
      buffer_(DirectoryReader::bufferBytes),
      shortage_(context.cancellation) {}

void WalkWorker::run() {
    platform::forbidMaterialisationOnThisThread();
    while (WorkUnit* const unit = queue_.next(stack_)) {
        if (context_.cancellation.isCancelled()) {
            // What is left is not opened; a descriptor that waits for it is not needed any more.
            releaseParent(*unit);
            continue;
        }
        list(*unit);
        if (queue_.isWorkWanted())
            queue_.share(stack_);
    }
}

void WalkWorker::list(WorkUnit& unit) {
    auto reader = shortage_.waitFor([&] { return open(unit); });
    if (!reader)
        recordUnopened(unit, reader.error());
    releaseParent(unit);
    if (!reader) {
        publish();
        return;
    }
    if (unit.chunk != nullptr) {
        // A descriptor that cannot be asked is listed all the same.
        if (const auto own = reader->measure()) {
            unit.chunk->setAttributes(unit.place, own->attributes);
            if (own->place != context_.place) {
                flag(unit, NodeFlags::otherVolume);
                ++otherVolume_;
                publish();
                return;
            }
        }
    }
    readEntries(unit, *reader);

    if (!found_.empty()) {
        keepOpen(unit, *reader);
        unit.firstChild = found_.front();
        for (std::size_t i = 1; i < found_.size(); ++i)
            found_[i - 1]->nextSibling = found_[i];
        // The first one found ends on top.
        stack_.insert(stack_.end(), found_.rbegin(), found_.rend());
        found_.clear();
    }
    if (unit.slot != nullptr)
        unit.slot->bytes.fetch_add(slotBytes_, std::memory_order_relaxed);
    slotBytes_ = 0;
    publish();
}

void WalkWorker::recordUnopened(WorkUnit& unit, int error) {
    std::optional<DirectoryReader::Own> own;
    if (unit.chunk != nullptr && unit.parent->descriptor >= 0)
        own = platform::measureEntry(unit.parent->descriptor, openName_.c_str());
    // Something else may have its name by now. ESTALE is no proof: a dead server gives it for all it has.
    const bool isStillThere = own && own->attributes.type == FileType::directory;
    if ((error == ENOENT || error == ENOTDIR) && !isStillThere) {
        markGone(unit);
        return;
    }
    if (own)
        unit.chunk->setAttributes(unit.place, own->attributes);
    markUnreadable(unit);
}

std::optional<DirectoryReader> WalkWorker::open(WorkUnit& unit) {
    if (unit.parent == nullptr)
        return DirectoryReader::open(-1, context_.rootPath.c_str(), buffer_.span());
    openName_ = unit.name();
    if (unit.parent->descriptor >= 0)
        return DirectoryReader::open(unit.parent->descriptor, openName_.c_str(), buffer_.span());
    return openAlongPath(unit);
}

std::optional<DirectoryReader> WalkWorker::openAlongPath(const WorkUnit& unit) {
    // One component after another: a path may be longer than the system takes, and a link may have taken the
    // place of a folder.
    std::vector<const WorkUnit*> chain;
    for (const WorkUnit* i = &unit; i->parent != nullptr; i = i->parent)
        chain.push_back(i);
    std::optional<DirectoryReader> reader;
    int parent = context_.rootDescriptor;
    for (const WorkUnit* const step : chain | std::views::reverse) {
        openName_ = step->name();
        auto inner = DirectoryReader::open(parent, openName_.c_str(), buffer_.span());
        if (!inner) {
            const int error = errno;
            reader.reset(); // a thread that waits for a descriptor must not hold one
            errno = error;
            return std::nullopt;
        }
        reader = std::move(inner);
        parent = reader->descriptor();
    }
    return reader;
}

void WalkWorker::releaseParent(const WorkUnit& unit) {
    WorkUnit* const parent = unit.parent;
    if (parent == nullptr || parent->descriptor < 0)
        return;
    if (parent->unopenedChildren.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        FileDescriptor(parent->descriptor).reset();
        WalkContext::openFolders.fetch_sub(1, std::memory_order_relaxed);
    }
}

void WalkWorker::keepOpen(WorkUnit& unit, DirectoryReader& reader) {
    if (WalkContext::openFolders.fetch_add(1, std::memory_order_relaxed) >= context_.openFolderLimit) {
        WalkContext::openFolders.fetch_sub(1, std::memory_order_relaxed);
        return;
    }
    unit.unopenedChildren.store(static_cast<std::uint32_t>(found_.size()), std::memory_order_relaxed);
    unit.descriptor = reader.release().release();
}

void WalkWorker::readEntries(WorkUnit& unit, DirectoryReader& reader) {
    DirectoryEntry entry;
    while (true) {
        const auto refill = reader.refill();
        if (refill == DirectoryReader::Refill::end)
            return;
        if (refill == DirectoryReader::Refill::failed) {
            // A folder that is removed while it is open cannot be listed any more, and holds nothing.
            if (errno != ENOENT)
                markUnreadable(unit);
            else if (unit.entries == 0)
                markGone(unit);
            return;
        }
        for (auto next = reader.next(entry); next != DirectoryReader::Next::done; next = reader.next(entry)) {
            if (next == DirectoryReader::Next::unreadable) {
                countUnlisted(unit);
                continue;
            }
            add(unit, entry);
            if (entries_ >= publishEvery) {
                publish();
                if (context_.cancellation.isCancelled())
                    return;
            }
        }
        if (context_.cancellation.isCancelled())
            return;
    }
}

void WalkWorker::add(WorkUnit& unit, const DirectoryEntry& entry) {
    const bool isFolder = entry.attributes.type == FileType::directory;
    NodeFlags flags = flagsOf(entry);
    platform::EntryAttributes attributes = entry.attributes;
    // On some file systems (overlay) files and folders of one mount differ in device, so for a file only the
    // mount tells. What another volume or a second mount of this one shows here is counted there, not here.
    const bool isLeftOut = !context_.exclusions.isEmpty() && isExcluded(unit, entry.name);
    const bool isElsewhere =
        isLeftOut  ? false
        : isFolder ? isMountPoint(unit, entry.name) || (entry.place && *entry.place != context_.place)
                   : entry.place && entry.place->mountId != context_.place.mountId;
    const bool isEntered = !isElsewhere && !isLeftOut;
    if (!isEntered) {
        flags = flags.with(NodeFlags::otherVolume);
        attributes.allocatedBytes = 0;
    }
    if (isElsewhere)
        ++otherVolume_;
    if (isLeftOut) {
        store_.excluded.push_back({.folder = &unit, .position = unit.entries});
        // Neither missing from the disk nor a shortcut to look into: nothing is known of it.
        attributes.isDataless = attributes.isAlias = false;
        flags = flags.without(NodeFlags::dataless);
    }
    if (!isFolder && isEntered && entry.place && entry.place->device != context_.place.device)
        store_.otherDevices.push_back(
            {.folder = &unit, .position = unit.entries, .device = entry.place->device});
    if (attributes.isDataless)
        ++dataless_;

    Chunk& chunk = store_.chunkFor(entry.name);
    const std::uint32_t nameStart = chunk.nameBytes;
    const std::uint32_t place =
        chunk.append(entry.name, flags, classify(entry.name, isFolder, flags.contains(NodeFlags::package)));
    chunk.setAttributes(place, attributes);

    Run* run = unit.more ? &unit.more->back() : &unit.run;
    if (run->chunk != nullptr && run->chunk != &chunk) {
        if (!unit.more)
            unit.more = std::make_unique<std::vector<Run>>();
        run = &unit.more->emplace_back();
    }
    if (run->chunk == nullptr)
        *run = {.chunk = &chunk, .first = place, .count = 0, .nameStart = nameStart};
    ++run->count;
    if (attributes.isAlias)
        store_.aliases.push_back({.folder = &unit, .position = unit.entries});

    Slot* const slot = unit.parent == nullptr ? addSlot(entry.name, isFolder) : unit.slot;
    if (isFolder && isEntered && !attributes.isDataless)
        addFolder(unit, chunk, place, nameStart, slot);
    ++unit.entries;

    ++entries_;
    if (!isFolder && attributes.linkCount < 2) {
        bytes_ += attributes.allocatedBytes;
        if (unit.parent == nullptr)
            slot->bytes.store(attributes.allocatedBytes, std::memory_order_relaxed);
        else
            slotBytes_ += attributes.allocatedBytes;
    }
}

void WalkWorker::addFolder(WorkUnit& unit, Chunk& chunk, std::uint32_t place, std::uint32_t nameStart,
                           Slot* slot) {
    WorkUnit& inner = store_.units.emplace_back();
    inner.parent = &unit;
    inner.chunk = &chunk;
    inner.place = place;
    inner.nameStart = nameStart;
    inner.position = unit.entries;
    inner.slot = slot;
    found_.push_back(&inner);
}

bool WalkWorker::isMountPoint(const WorkUnit& folder, std::string_view name) const {
    if (!context_.boundary.mayContain(name))
        return false;
    return context_.boundary.contains(pathOf(folder, name));
}

bool WalkWorker::isExcluded(const WorkUnit& folder, std::string_view name) const {
    const auto& rules = context_.exclusions;
    return rules.leavesOutName(name)
           || (rules.mayLeaveOut(name) && rules.leavesOutPath(pathOf(folder, name)));
}

std::string WalkWorker::pathOf(const WorkUnit& folder, std::string_view name) const {
    std::vector<std::string_view> names{name};
    for (const WorkUnit* i = &folder; i->parent != nullptr; i = i->parent)
        names.push_back(i->name());
    std::string path = context_.rootPath;
    for (const std::string_view component : names | std::views::reverse)
        path = joinedPath(path, component);
    return path;
}

Slot* WalkWorker::addSlot(std::string_view name, bool isFolder) {
    const std::scoped_lock lock(context_.slotsMutex);
    return &context_.slots.emplace_back(lossyUtf8(name), isFolder);
}

void WalkWorker::flag(const WorkUnit& unit, NodeFlags flags) {
    if (unit.chunk != nullptr)
        unit.chunk->flags[unit.place] |= flags.rawValue;
    else
        context_.rootFlags.fetch_or(flags.rawValue, std::memory_order_relaxed);
}

void WalkWorker::markUnreadable(const WorkUnit& unit) {
    flag(unit, NodeFlags::unreadable);
    ++unreadable_;
}

/// Like a file that vanished before it could be measured, it is no part of what was found.
void WalkWorker::markGone(const WorkUnit& unit) {
    if (unit.parent == nullptr)
        context_.isRootGone.store(true, std::memory_order_relaxed);
    else
        store_.gone.push_back(&unit);
}

void WalkWorker::countUnlisted(const WorkUnit& unit) {
    if (store_.unlisted.empty() || store_.unlisted.back().folder != &unit)
        store_.unlisted.push_back({.folder = &unit, .count = 0});
    ++store_.unlisted.back().count;
    ++unreadable_;
}

void WalkWorker::publish() {
    addTo(counters_.entries, entries_);
    addTo(counters_.bytes, bytes_);
    addTo(counters_.unreadable, unreadable_);
    addTo(counters_.dataless, dataless_);
    addTo(counters_.otherVolume, otherVolume_);
}

} // namespace orbel::walk
