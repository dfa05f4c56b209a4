#pragma once

#include "Scan/ScanCancellation.h"

namespace orbel {

/// From this call on, Ctrl+C and the other polite ways to end a program (SIGINT, SIGTERM, SIGHUP) only cancel
/// the token that is returned, so that what is in progress can be finished; a second one of the same kind
/// ends the program at once. A signal that was ignored before stays ignored.
const ScanCancellation& stopAfterThisItemOnInterrupt();

/// The same for a scan, whose result says by itself that it was stopped: prints nothing.
const ScanCancellation& stopScanOnInterrupt();

} // namespace orbel
