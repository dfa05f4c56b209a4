#pragma once

#include <string_view>

namespace orbel::platform {

/// The choices and the words that follow a platform's conventions. Texts live as long as the program.
struct Conventions {
    int defaultWalkerWorkers = 1;

    std::string_view fileManager;       ///< as in "remove it in {fileManager}"
    std::string_view thisComputer;      ///< as in "stays on {thisComputer}"
    std::string_view notAnApplication;  ///< why a folder named like an application is not one
    std::string_view protectedBySystem; ///< why an object that the system itself guards stays where it is

    /// Whether a move is also refused when it could not be undone or would take more along than was shown:
    /// the home folder is unusable, the name is no valid text, or the item lies on or holds another mount.
    bool hasFurtherRefusals = false;
};

/// Those of the platform this was built for.
const Conventions& conventions();

} // namespace orbel::platform
