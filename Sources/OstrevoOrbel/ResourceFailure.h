#pragma once

namespace orbel {

/// From this call on, an exception that nothing catches because memory or threads ran out, in any thread,
/// ends the process with a line on standard error and the status `incomplete`. What is in progress is cut
/// short as by a kill. Any other one aborts the process as before.
void endPlainlyWithoutResources();

} // namespace orbel
