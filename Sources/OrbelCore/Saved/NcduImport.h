#pragma once

#include "Saved/ScanFile.h"
#include "Saved/TextPieces.h"

#include <expected>
#include <optional>
#include <string>

namespace orbel {

/// Reads a scan from the JSON export of ncdu (version 1 of its form, with any minor one), which other
/// programs of the kind write too, from any bytes. Absent when the text does not begin as an export; the
/// error says in words for people why it is not believed: no part of it is then used.
///
/// Folders weigh what is in them, as everywhere here: their own blocks are left out. What is not a regular
/// file is taken for a symbolic link. What was left out by a pattern and has no size is taken for a folder.
/// Of the links of a file that gdu marks, none is the one that it counted.
/// What an export does not tell is unknown here too: time of the last change (FileTree::isModifiedKnown),
/// machine, user, volume, and when it was made (ScanOrigin::measuredAt).
std::optional<std::expected<KeptScan, std::string>> scanFromNcdu(TextPieces& text);

/// Whether the text begins as an export, whole or not. Takes the first piece.
bool isBegunAsNcdu(TextPieces& text);

} // namespace orbel
