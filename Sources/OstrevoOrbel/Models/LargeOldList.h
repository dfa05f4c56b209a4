#pragma once

#include "Find/LargeOldQuery.h"
#include "Models/TickedItem.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orbel {

/// What one run of the query has found, ready to be shown. Never changes, so any thread may read it.
class LargeOldList {
public:
    using Row = LargeOldQuery::Row;

    /// An empty one.
    LargeOldList() = default;
    /// Of rows of this tree. Looks at everything in packages: not for the main thread.
    LargeOldList(std::vector<Row> rows, const FileTree& tree);
    LargeOldList(const LargeOldList&) = delete;
    LargeOldList& operator=(const LargeOldList&) = delete;

    const std::vector<Row>& rows() const { return rows_; }
    std::optional<std::uint32_t> find(std::string_view path) const;
    std::optional<std::uint32_t> find(NodeIndex node) const;
    TickedItem ticked(std::uint32_t row) const;
    ContentKind kind(std::uint32_t row) const { return contents_[row].kind; }

private:
    struct Contents {
        std::uint64_t count = 1;
        std::uint64_t leastFreed = 0;
        ContentKind kind = ContentKind::other;
    };

    std::vector<Row> rows_;
    std::vector<Contents> contents_;
    std::unordered_map<std::string_view, std::uint32_t> byPath_;
};

/// How the list is to be shown.
struct LargeOldArrangement {
    enum class Column { name, kind, lastUsed, size };

    Column column = Column::size;
    bool descending = true;
    std::string text;             ///< what the name or the folder has to contain, in any case
    std::set<std::uint32_t> gone; ///< rows that are not on the disk any more

    bool operator==(const LargeOldArrangement&) const = default;
};

/// The rows that are to be shown, in their order.
struct LargeOldOrder {
    static constexpr std::uint32_t nowhere = std::numeric_limits<std::uint32_t>::max();

    std::vector<std::uint32_t> rows;
    std::vector<std::uint32_t> places; ///< by row of the list: where it is shown, or `nowhere`

    bool operator==(const LargeOldOrder&) const = default;
};

/// Rows that are equal in the column stay in the order of the list. `home`: of folders, as people see them.
/// Takes its time with many rows; any thread.
LargeOldOrder arranged(const LargeOldList& list, const LargeOldArrangement& arrangement,
                       const std::string& home);

} // namespace orbel
