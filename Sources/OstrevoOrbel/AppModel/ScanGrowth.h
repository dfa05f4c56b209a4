#pragma once

#include "AppModel/ScanOutcome.h"

#include <string>

namespace orbel {

/// Compares a finished scan with the one of the same root before it, and keeps it for the next: nothing of
/// that for a scan that was stopped, or when `folder` is empty. `folder` holds what is kept, `home` is what
/// "~" stands for.
GrowthModel::Content scanGrowth(const ScanOutcome& outcome, const std::string& folder,
                                const std::string& home);

} // namespace orbel
