#pragma once

#include <optional>
#include <span>
#include <string>

namespace orbel {

/// `--journal-json` and `--journal-markdown`: prints the journal, or with `--since DATE` what is in it from
/// then on, and ends the process. Returns when `arguments` ask for neither.
void runJournalCommandIfRequested(std::span<const std::string> arguments);

} // namespace orbel
