#pragma once

#include "Scan/ContentKind.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// Allocated bytes by content kind, indexed by its value; together what the folder is allocated.
///
/// Here and below an item is what a person sees as one: an attached file, or a package with all in it.
/// Folders occupy nothing themselves.
using KindTotals = std::array<std::uint64_t, allContentKinds.size()>;

/// The kind that most of the bytes are; the first of equal ones.
ContentKind mainKind(const KindTotals& totals);

/// What the items of one extension take up. A plain value.
struct ExtensionTotal {
    std::string extension; ///< in lower case
    std::uint64_t bytes = 0;
    std::uint64_t count = 0;

    bool operator==(const ExtensionTotal&) const = default;
};

/// What a finished tree holds, by what it is.
struct ContentTotals {
    static constexpr std::size_t mostExtensions = 20;

    KindTotals kinds{};
    std::vector<KindTotals> folders{}; ///< of the folders that were asked for, in their order
    /// The heaviest, at most `mostExtensions`, equal ones by name; an extension is
    /// what tellingExtension() says.
    std::vector<ExtensionTotal> extensions{};

    /// Looks at every node, on several threads. None of `folders`, at most 200, lies in another one.
    static ContentTotals of(const FileTree& tree, std::span<const NodeIndex> folders = {});
};

/// The kinds of what lies in `folder`, which is in no package. Visits only what lies there.
KindTotals kindTotals(const FileTree& tree, NodeIndex folder);

/// What the items of an extension in lower case take up in `folder`, which is in no package. Visits only
/// what lies there.
std::uint64_t extensionBytes(const FileTree& tree, NodeIndex folder, std::string_view extension);

/// Whether tellingExtension() of a name is this one, in lower case.
bool hasExtension(std::string_view name, std::string_view extension);

} // namespace orbel
