#include "Scan/KindTotals.h"

#include "Platform/Parallel.h"
#include "Scan/ExtensionTable.h"

#include <limits>
#include <mutex>
#include <unordered_map>

namespace orbel {

namespace {

bool isItem(NodeFlags flags) {
    return !flags.contains(NodeFlags::folder) || flags.contains(NodeFlags::package);
}

void add(KindTotals& totals, const KindTotals& others) {
    for (std::size_t kind = 0; kind < totals.size(); ++kind)
        totals[kind] += others[kind];
}

/// Calls `take` for each item in a folder, or for the item itself.
void forEachItem(const FileTree& tree, NodeIndex folder, const auto& take) {
    std::vector<NodeIndex> open{folder};
    while (!open.empty()) {
        const NodeIndex node = open.back();
        open.pop_back();
        if (isItem(tree.flags(node))) {
            take(node);
        } else {
            const auto children = tree.children(node);
            open.insert(open.end(), children.begin(), children.end());
        }
    }
}

/// Of every node: which of the folders it is in, or that it is no item.
class Places {
public:
    static constexpr std::uint8_t elsewhere = 0xFF;
    static constexpr std::uint8_t noItem = 0xFE;

    Places(const FileTree& tree, std::span<const NodeIndex> folders) : places_(tree.count(), elsewhere) {
        ORBEL_CHECK(folders.size() <= 200, "few folders");
        std::vector<std::uint8_t> inside(tree.count(), elsewhere); // what holds for what lies in a node
        for (std::size_t i = 0; i < folders.size(); ++i)
            inside[folders[i]] = static_cast<std::uint8_t>(i);
        // A parent comes before its children, so what holds for it is known when they are reached.
        for (NodeIndex node = 0; node < tree.count(); ++node) {
            const auto parent = tree.parentIndex[node];
            if (node > 0 && (parent == FileTree::noParent || inside[parent] != elsewhere))
                inside[node] = parent == FileTree::noParent ? noItem : inside[parent];
            const NodeFlags flags{tree.nodeFlags[node]};
            places_[node] = isItem(flags) ? inside[node] : noItem;
            if (flags.contains(NodeFlags::package))
                inside[node] = noItem;
        }
    }

    std::uint8_t operator[](NodeIndex node) const { return places_[node]; }

private:
    std::vector<std::uint8_t> places_;
};

struct KeyHash {
    std::size_t operator()(const ExtensionKey& key) const {
        return static_cast<std::size_t>(key.hash() ^ key.hash() >> 32U);
    }
};

/// What one thread has counted.
struct Counted {
    struct Sum {
        std::uint64_t bytes = 0;
        std::uint64_t count = 0;
    };

    KindTotals kinds{};
    std::vector<KindTotals> folders;
    std::unordered_map<ExtensionKey, Sum, KeyHash> extensions;

    void add(const FileTree& tree, NodeIndex node, std::uint8_t place) {
        const auto name = tree.nameBytes(node);
        const auto bytes = tree.allocatedBytes[node];
        const auto extension = tellingExtension(name);
        const auto kind = static_cast<std::size_t>(contentKindOf(tree.kind(node), extension));
        kinds.at(kind) += bytes;
        if (place != Places::elsewhere)
            folders[place].at(kind) += bytes;
        if (extension.empty() || extension.size() > ExtensionKey::mostBytes)
            return;
        auto& sum = extensions[ExtensionKey::of(extension)];
        sum.bytes += bytes;
        ++sum.count;
    }

    void add(const Counted& others) {
        orbel::add(kinds, others.kinds);
        for (std::size_t i = 0; i < folders.size(); ++i)
            orbel::add(folders[i], others.folders[i]);
        for (const auto& [key, sum] : others.extensions) {
            auto& whole = extensions[key];
            whole.bytes += sum.bytes;
            whole.count += sum.count;
        }
    }
};

} // namespace

ContentKind mainKind(const KindTotals& totals) {
    return allContentKinds.at(static_cast<std::size_t>(std::ranges::max_element(totals) - totals.begin()));
}

ContentTotals ContentTotals::of(const FileTree& tree, std::span<const NodeIndex> folders) {
    constexpr std::size_t grain = 50'000;
    const Places places(tree, folders);
    const auto nothing = [&] {
        return Counted{.kinds = {}, .folders = std::vector<KindTotals>(folders.size()), .extensions = {}};
    };
    auto whole = nothing();
    std::mutex merging;
    forEachRange(tree.count(), grain, [&](std::size_t begin, std::size_t end) {
        auto part = nothing();
        for (auto node = static_cast<NodeIndex>(begin); node < end; ++node) {
            if (places[node] != Places::noItem)
                part.add(tree, node, places[node]);
        }
        const std::scoped_lock lock(merging);
        whole.add(part);
    });

    ContentTotals totals{.kinds = whole.kinds, .folders = std::move(whole.folders)};
    totals.extensions.reserve(whole.extensions.size());
    for (const auto& [key, sum] : whole.extensions)
        totals.extensions.push_back({.extension = key.text(), .bytes = sum.bytes, .count = sum.count});
    const auto kept = std::min(totals.extensions.size(), mostExtensions);
    std::ranges::partial_sort(totals.extensions,
                              totals.extensions.begin() + static_cast<std::ptrdiff_t>(kept),
                              [](const ExtensionTotal& a, const ExtensionTotal& b) {
                                  return a.bytes != b.bytes ? a.bytes > b.bytes : a.extension < b.extension;
                              });
    totals.extensions.resize(kept);
    return totals;
}

KindTotals kindTotals(const FileTree& tree, NodeIndex folder) {
    KindTotals totals{};
    forEachItem(tree, folder, [&](NodeIndex node) {
        totals.at(static_cast<std::size_t>(contentKind(tree, node))) += tree.allocated(node);
    });
    return totals;
}

std::uint64_t extensionBytes(const FileTree& tree, NodeIndex folder, std::string_view extension) {
    std::uint64_t bytes = 0;
    forEachItem(tree, folder, [&](NodeIndex node) {
        if (hasExtension(tree.nameBytes(node), extension))
            bytes += tree.allocated(node);
    });
    return bytes;
}

bool hasExtension(std::string_view name, std::string_view extension) {
    return std::ranges::equal(tellingExtension(name), extension, {}, ExtensionKey::lower);
}

} // namespace orbel
