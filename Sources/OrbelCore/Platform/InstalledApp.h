#pragma once

#include "Util/RawValue.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orbel::platform {

/// One application, and what the system knows of how it came here. Paths are absolute and real.
struct InstalledApp {
    enum class Status : std::uint8_t {
        removable,  ///< `path` can be moved to the Trash
        needsAdmin, ///< an administrator can remove it
        system,     ///< a part of the system that stays
        unsupported ///< something else has to remove it
    };

    /// The application itself when it is removable; else the file by which it is known. Unique
    /// in an inventory.
    std::string path;
    std::string name;                      ///< valid UTF-8
    std::optional<std::string> bundleID{}; ///< what names it among all applications
    std::optional<std::string> version{};
    Status status = Status::unsupported;
    std::string source{};  ///< how it was installed, in words for people
    std::string reason{};  ///< why it is not removable, in words; empty when it is
    std::string command{}; ///< what removes it, for the user to run; empty when not known
    /// What keeps its package, as in InstalledIds::packages; empty when nothing does.
    std::string manager{};
    std::string package{}; ///< its name there
    std::string icon{};    ///< a file, or a name in the desktop's icon themes; empty when it has none
    /// What its package takes on the disk, as the package says.
    std::optional<std::uint64_t> packageBytes{};
    std::string programFolder{}; ///< what to measure for its size when that is not `path`; never to be moved
    std::vector<std::string> appGroups{};
    bool isHidden = false; ///< in no menu; known only because leftovers may belong to it

    // What belongs to it alone, or is named after it.
    std::vector<std::string> ownFiles{};    ///< launchers and icons in the home that only serve it
    std::vector<std::string> dataFolders{}; ///< where its sandbox keeps its data, whether that exists or not
    std::vector<std::string> executables{}; ///< what it runs, as far as that is its own
    std::vector<std::string> identifiers{}; ///< `bundleID` and the like: whole names
    std::vector<std::string> names{};       ///< of its programs, windows, icons and package

    bool operator==(const InstalledApp&) const = default;
};

} // namespace orbel::platform

template <>
struct orbel::RawValues<orbel::platform::InstalledApp::Status> {
    static constexpr std::array<std::string_view, 4> names{"removable", "needsAdmin", "system",
                                                           "unsupported"};
};
