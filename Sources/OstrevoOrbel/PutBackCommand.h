#pragma once

#include "ChangeRequest.h"

namespace orbel {

/// `--put-back`: puts an entry or a session back, prints the results as a JSON array and ends the process.
[[noreturn]] void runPutBackCommand(const ChangeRequest& request);

} // namespace orbel
