#pragma once

#include <string>
#include <vector>

namespace orbel::platform {

/// A folder of programs' own data, whose contents stay where they are, save some.
struct GuardedFolder {
    std::string path;
    /// Relative to `path`: what may be moved nevertheless, itself and what lies in it. A component "*" stands
    /// for any one name.
    std::vector<std::string> movable;
};

/// Where programs keep what they make again.
struct RebuildablePlace {
    std::string path;      ///< a component "*" stands for any one name
    std::string program{}; ///< empty: the name that the first "*" stands for
};

/// Where a platform keeps things for one home folder. All paths are absolute and not resolved; those that say
/// what may not be moved only ever add to what holds on every platform.
struct Places {
    std::vector<std::string> systemRoots;
    std::vector<std::string> neverTouch;
    std::vector<std::string> pictureFolders; ///< those of `neverTouch` that the desktop calls the pictures
    std::vector<GuardedFolder> guardedFolders;
    /// Named by the settings of the system or the desktop, such as mount points: these stay, empty or not.
    std::vector<std::string> namedFolders;
    std::vector<RebuildablePlace> rebuildablePlaces;
    std::vector<std::string> cacheFolders; ///< what is inside may be moved, the folder itself not
    std::vector<std::string> applicationFolders;
    std::vector<std::string> programFolders;     ///< a program that is a folder lies directly in one of these
    std::vector<std::string> programFileFolders; ///< one that is a single file, directly in one of these
    std::vector<std::string> leftoverFolders;    ///< a component "*" stands for any one name
    /// Leftover folders too, but of one maker each: what is in one may belong to any program of that maker.
    std::vector<std::string> vendorFolders;
    /// Leftovers directly in these are only what has a name that begins with a dot.
    std::vector<std::string> hiddenLeftoverFolders;
    std::vector<std::string> trashFolders; ///< the folders that directly hold what was moved to the Trash
    std::string applicationSupport;        ///< where programs keep their data, each in a folder of its own
};

/// Those of the platform this was built for and of this process's environment. `home`: absolute; its real
/// path where what is asked of it decides about a move.
Places places(const std::string& home);

} // namespace orbel::platform
