#pragma once

#include "Growth/ScanSummary.h"

#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// A summary as the text of its file.
std::string summaryText(const ScanSummary& summary);

/// Reads what summaryText() writes, from any bytes. Absent unless the whole text is a valid summary; no part
/// of an invalid one is used.
std::optional<ScanSummary> summaryIn(std::string_view text);

} // namespace orbel
