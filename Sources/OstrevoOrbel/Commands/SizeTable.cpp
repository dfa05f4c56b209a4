#include "Commands/SizeTable.h"

#include "Commands/RootScan.h"
#include "Safety/ByteFormat.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/DisplayWidth.h"
#include "Util/Iso8601.h"
#include "Util/ShownText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace orbel {

namespace {

constexpr std::size_t barColumns = 10;
constexpr std::size_t fewestNameColumns = 16;
constexpr std::size_t gapColumns = 2; ///< between two columns

struct Glyphs {
    std::string_view dots, branch, lastBranch, line, noLine;
    std::string_view fullCell;
    std::span<const std::string_view> partCells; ///< what may follow the full ones, from nothing on
};

constexpr std::array<std::string_view, 8> eighthsOfCells{"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
constexpr std::array<std::string_view, 1> noPartCells{""};

constexpr Glyphs unicodeGlyphs{.dots = "…",
                               .branch = "├─ ",
                               .lastBranch = "└─ ",
                               .line = "│  ",
                               .noLine = "   ",
                               .fullCell = "█",
                               .partCells = eighthsOfCells};
constexpr Glyphs asciiGlyphs{.dots = "...",
                             .branch = "|- ",
                             .lastBranch = "`- ",
                             .line = "|  ",
                             .noLine = "   ",
                             .fullCell = "#",
                             .partCells = noPartCells};

enum class RowKind : std::uint8_t { folder, other, more, total };

struct Row {
    RowKind kind;
    std::uint64_t bytes;
    std::uint64_t items;
    std::string branch;
    std::string name; ///< visible text
};

std::string nameOf(const FileTree& tree, NodeIndex node) {
    auto name = visibleText(tree.nameBytes(node));
    if (tree.isFolder(node))
        name += '/';
    if (tree.isExcluded(node))
        name += " (left out)";
    else if (tree.flags(node).contains(NodeFlags::otherVolume))
        name += " (another volume)";
    return name;
}

/// Makes the rows of a tree.
class RowMaker {
public:
    RowMaker(const RootScan& scan, const ListLimits& limits, const Glyphs& glyphs)
        : tree_(scan.result.tree), limits_(limits), glyphs_(glyphs) {
        addChildren(0, 1, "");
        rows_.push_back({.kind = RowKind::total,
                         .bytes = tree_.allocated(0),
                         .items = tree_.isFolder(0) ? tree_.descendantCount(0) : 1,
                         .branch = "",
                         .name = scan.result.cancelled ? "total so far: stopped" : "total"});
    }

    std::vector<Row> rows() && { return std::move(rows_); }

private:
    void addChildren(NodeIndex folder, std::size_t level, const std::string& lines) {
        const auto all = tree_.children(folder);
        const auto shown = limits_.shown(tree_, folder);
        const bool isTree = limits_.depth > 1;
        auto bytes = tree_.allocated(folder);
        auto items = std::uint64_t{tree_.descendantCount(folder)};
        for (const NodeIndex child : shown) {
            const bool isLast = child == all.back();
            const std::uint64_t own = std::uint64_t{tree_.descendantCount(child)} + 1;
            rows_.push_back({.kind = tree_.isFolder(child) ? RowKind::folder : RowKind::other,
                             .bytes = tree_.allocated(child),
                             .items = own,
                             .branch = isTree ? lines + branchOf(isLast) : "",
                             .name = nameOf(tree_, child)});
            bytes -= tree_.allocated(child);
            items -= own;
            if (level < limits_.depth)
                addChildren(child, level + 1, lines + std::string(isLast ? glyphs_.noLine : glyphs_.line));
        }
        if (shown.size() < all.size())
            rows_.push_back({.kind = RowKind::more,
                             .bytes = bytes,
                             .items = items,
                             .branch = isTree ? lines + branchOf(true) : "",
                             .name = std::string(glyphs_.dots) + " and "
                                     + std::to_string(all.size() - shown.size()) + " more"});
    }

    std::string branchOf(bool isLast) const {
        return std::string(isLast ? glyphs_.lastBranch : glyphs_.branch);
    }

    const FileTree& tree_;
    const ListLimits& limits_;
    const Glyphs& glyphs_;
    std::vector<Row> rows_;
};

/// Per mille, rounded, of what may be nothing.
std::uint64_t perMille(std::uint64_t part, std::uint64_t whole) {
    return whole == 0 ? 0
                      : static_cast<std::uint64_t>(
                          std::llround(static_cast<double>(part) * 1000 / static_cast<double>(whole)));
}

std::string padded(const std::string& text, std::size_t columns) {
    return std::string(columns - std::min(columns, text.size()), ' ') + text;
}

/// Writes rows below one another.
class TableWriter {
public:
    TableWriter(std::vector<Row> rows, const TableForm& form, const Glyphs& glyphs)
        : rows_(std::move(rows)), form_(form), glyphs_(glyphs), total_(rows_.back().bytes) {
        for (const auto& row : rows_) {
            sizeColumns_ = std::max(sizeColumns_, ByteFormat::string(row.bytes).size());
            itemColumns_ = std::max(itemColumns_, std::to_string(row.items).size());
        }
        if (form.isTerminal)
            fitColumns();
    }

    std::string text() const {
        std::string text;
        if (form_.isTerminal)
            text += coloured("2", header()) + "\n";
        for (const auto& row : rows_)
            text += lineOf(row) + "\n";
        return text;
    }

private:
    /// Leaves out what a narrow terminal has no room for: the bars first, the sizes never.
    void fitColumns() {
        hasBar_ = true;
        for (bool* column : {&hasBar_, &hasItems_, &hasShare_})
            *column = columnsBeforeName() + fewestNameColumns <= form_.columns && *column;
        nameColumns_ = form_.columns - std::min(form_.columns, columnsBeforeName());
    }

    std::size_t columnsBeforeName() const {
        return (hasBar_ ? barColumns + gapColumns : 0) + sizeColumns_ + gapColumns
               + (hasShare_ ? shareColumns + gapColumns : 0) + (hasItems_ ? itemColumns_ + gapColumns : 0);
    }

    std::string header() const {
        return figures(std::string(barColumns, ' '), "SIZE", "SHARE", "ITEMS") + "NAME";
    }

    std::string figures(const std::string& bar, const std::string& size, const std::string& share,
                        const std::string& items) const {
        const std::string gap(gapColumns, ' ');
        return (hasBar_ ? bar + gap : "") + padded(size, sizeColumns_) + gap
               + (hasShare_ ? padded(share, shareColumns) + gap : "")
               + (hasItems_ ? padded(items, itemColumns_) + gap : "");
    }

    std::string lineOf(const Row& row) const {
        const auto share = perMille(row.bytes, total_);
        return figures(barOf(row), ByteFormat::string(row.bytes),
                       std::to_string(share / 10) + "." + std::to_string(share % 10) + "%",
                       std::to_string(row.items))
               + nameOf(row);
    }

    std::string barOf(const Row& row) const {
        const auto parts = glyphs_.partCells.size();
        const auto share = row.kind == RowKind::total ? 0 : perMille(row.bytes, total_);
        const auto filled = (share * barColumns * parts + 500) / 1000;
        std::string bar;
        for (std::size_t cell = 0; cell < filled / parts; ++cell)
            bar += glyphs_.fullCell;
        bar += glyphs_.partCells[filled % parts];
        return coloured("36", bar) + std::string(barColumns - displayWidth(bar), ' ');
    }

    std::string nameOf(const Row& row) const {
        if (!form_.isTerminal)
            return row.branch + row.name;
        const auto branch = elidedInMiddle(row.branch, nameColumns_ / 2, glyphs_.dots);
        const auto name =
            isolatedText(elidedInMiddle(row.name, nameColumns_ - displayWidth(branch), glyphs_.dots));
        constexpr std::array<std::string_view, 4> styles{"1;34", "", "2", "1"};
        return coloured("2", branch) + coloured(styles.at(static_cast<std::size_t>(row.kind)), name);
    }

    std::string coloured(std::string_view style, const std::string& text) const {
        if (!form_.hasColour || style.empty() || text.empty())
            return text;
        return "\x1B[" + std::string(style) + "m" + text + "\x1B[0m";
    }

    static constexpr std::size_t shareColumns = 6; ///< "100.0%"

    const std::vector<Row> rows_;
    const TableForm& form_;
    const Glyphs& glyphs_;
    const std::uint64_t total_;
    std::size_t sizeColumns_ = std::string_view("SIZE").size();
    std::size_t itemColumns_ = std::string_view("ITEMS").size();
    std::size_t nameColumns_ = 0;
    bool hasBar_ = false;
    bool hasShare_ = true;
    bool hasItems_ = true;
};

/// Where and when a scan that was kept was made, as far as that is known.
std::string originLine(const RootScan& scan, const ScanOrigin& origin) {
    auto line = scan.result.tree.path(0, PathCanonicalizer::shared());
    if (!origin.machine.empty())
        line += " on " + origin.machine;
    if (const auto measuredAt = scan.measuredAt())
        line += ", measured " + iso8601(*measuredAt);
    return isolatedText(visibleText(line)) + "\n";
}

} // namespace

std::string sizeTable(const RootScan& scan, const ListLimits& limits, const TableForm& form) {
    const auto& glyphs = form.isUnicode ? unicodeGlyphs : asciiGlyphs;
    const auto origin = form.isTerminal && scan.keptOrigin ? originLine(scan, *scan.keptOrigin) : "";
    return origin + TableWriter(RowMaker(scan, limits, glyphs).rows(), form, glyphs).text();
}

} // namespace orbel
