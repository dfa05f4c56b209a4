#pragma once

#include "Models/ComparedScans.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orbel {

/// Which changes are to be shown, and in which order.
struct ChangeArrangement {
    enum class Column { change, name, before, after, difference };
    enum class Items { all, folders, files };

    Column column = Column::difference; ///< by how much, whether more or less
    bool isDescending = true;
    std::optional<ChangeKind> kind; ///< absent: of every kind
    Items items = Items::all;
    std::string text; ///< what the name or the folder has to contain, in any case

    bool narrows() const { return kind || items != Items::all || !text.empty(); }
    bool operator==(const ChangeArrangement&) const = default;
};

/// The changes that are to be shown, by their numbers, in their order.
struct ChangeOrder {
    std::vector<std::uint32_t> rows;
    /// Bytes that all of it takes more; what lies in a folder that is shown too counts with the folder alone.
    std::int64_t net = 0;

    bool operator==(const ChangeOrder&) const = default;
};

/// Changes that are equal in the column stay in the order of the comparison. `home`: of folders, as people
/// see them. Takes its time with many changes; any thread. Cancelled, the answer is of no use.
ChangeOrder arranged(const ComparedScans& scans, const ChangeArrangement& arrangement,
                     const std::string& home, const std::function<bool()>& isCancelled);

} // namespace orbel
