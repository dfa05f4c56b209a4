#pragma once

#include "Scan/ScanResult.h"

#include <string>

namespace orbel {

/// Measures the ROOT of a command. When nothing can be measured there, says why on standard error and ends
/// the process as incomplete: an empty list would read as "nothing found".
ScanResult scanOfRoot(const std::string& root);

} // namespace orbel
