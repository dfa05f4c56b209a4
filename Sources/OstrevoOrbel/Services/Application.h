#pragma once

namespace orbel {

/// The application with its window: from the first line to the exit status, which is 1 when there is no
/// display to open a window on. `count` and `words` are those of main() and must stay as they are.
int runApplication(int& count, char** words);

} // namespace orbel
