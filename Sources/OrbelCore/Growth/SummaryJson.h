#pragma once

#include "Growth/ScanSummary.h"

#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// A summary as the text of its file.
std::string summaryText(const ScanSummary& summary);

/// Reads what summaryText() writes, from any bytes. Absent for all that is not wholly and exactly a summary:
/// nothing in it is then worth comparing with.
std::optional<ScanSummary> summaryIn(std::string_view text);

} // namespace orbel
