#pragma once

#include "Compare/NodeChanges.h"
#include "Scan/ContentKind.h"

#include <array>
#include <QCoreApplication>
#include <QString>
#include <string_view>

namespace orbel {

/// All that is drawn and said of a change. A plain value.
struct ChangeRow {
    NodeChange change;
    const char* title;
    ContentRow::Paint light;
    ContentRow::Paint dark;
    std::string_view glyph; ///< as that of a ContentRow
};

/// A row for each change, by its value. Any two fills that the map can show beside one another can be told
/// apart with the usual forms of colour blindness too, and every label is legible on its fill.
inline constexpr std::array<ChangeRow, nodeChangeCount> changeTable{{
    {.change = NodeChange::grew,
     .title = QT_TRANSLATE_NOOP("Changes", "Grew"),
     .light = {.fill = 0xA44E00, .label = 0xFFFFFF},
     .dark = {.fill = 0xFF8215, .label = 0x0C1414},
     .glyph = "M8 13V3.5M4 7.2L8 3.2l4 4"},
    {.change = NodeChange::shrank,
     .title = QT_TRANSLATE_NOOP("Changes", "Shrank"),
     .light = {.fill = 0x1B4CBB, .label = 0xFFFFFF},
     .dark = {.fill = 0x0295FD, .label = 0x0C1414},
     .glyph = "M8 3v9.5M4 8.8l4 4l4-4"},
    {.change = NodeChange::came,
     .title = QT_TRANSLATE_NOOP("Changes", "New"),
     .light = {.fill = 0x5E0644, .label = 0xFFFFFF},
     .dark = {.fill = 0xD8ABC5, .label = 0x0C1414},
     .glyph = "M8 3v10M3 8h10"},
    {.change = NodeChange::went,
     .title = QT_TRANSLATE_NOOP("Changes", "Gone"),
     .light = {.fill = 0xFFFFFF, .label = 0x15211F},
     .dark = {.fill = 0x101516, .label = 0xE7EDEC},
     .glyph = "M4 4l8 8M12 4l-8 8"},
    {.change = NodeChange::moved,
     .title = QT_TRANSLATE_NOOP("Changes", "Moved"),
     .light = {.fill = 0xFFAD11, .label = 0x15211F},
     .dark = {.fill = 0xF5EE73, .label = 0x0C1414},
     .glyph = "M3 8h9.5M8.8 4L12.8 8l-4 4"},
    {.change = NodeChange::same,
     .title = QT_TRANSLATE_NOOP("Changes", "Same"),
     .light = {.fill = 0xD3DBDB, .label = 0x15211F},
     .dark = {.fill = 0x3A4546, .label = 0xE7EDEC},
     .glyph = "M4 6h8M4 10h8"},
    {.change = NodeChange::incomparable,
     .title = QT_TRANSLATE_NOOP("Changes", "Not compared"),
     .light = {.fill = 0x93A09F, .label = 0x15211F},
     .dark = {.fill = 0x6A7675, .label = 0xFFFFFF},
     .glyph = "M6.3 6.3a1.8 1.8 0 1 1 2.4 1.8c-.5.2-.7.5-.7 1M8 11.2v.1"},
}};

constexpr const ChangeRow& rowOf(NodeChange change) {
    return changeTable.at(static_cast<std::size_t>(change));
}

constexpr NodeChange nodeChangeOf(ChangeKind kind) {
    return static_cast<NodeChange>(kind);
}

/// "Grew".
inline QString changeTitle(NodeChange change) {
    return QCoreApplication::translate("Changes", rowOf(change).title);
}

} // namespace orbel
