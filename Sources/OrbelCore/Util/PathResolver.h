#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orbel {

/// What tells one object of the disk from all others, as the system numbers them.
struct SeenObject {
    std::uint64_t device = 0; ///< an unsigned 32-bit pattern, widened
    std::uint64_t inode = 0;
};

/// Where a path leads.
struct ResolvedPath {
    enum class State : std::uint8_t {
        found,
        missing,    ///< a name on the way is not there, or a file stands where a folder is needed
        outOfReach, ///< leads to a place that must not be asked about
        circular,   ///< more links than the system follows
        failed      ///< could not be read; `error` is the errno
    };

    State state = State::failed;
    /// The real path as far as it is known, and from there on the text of the rest: what a realpath would
    /// give once the missing names are there.
    std::string path;
    int error = 0;
    /// What stands by each name of `path`, in order, as far as it is known.
    std::vector<SeenObject> objects{};

    bool isFound() const { return state == State::found; }
};

/// Resolves absolute paths name by name, as realpath does, without asking the system about anything at or
/// below certain places: a mount whose server is dead would never answer.
///
/// Remembers which folders it has seen, so make a new one for each question about the disk as it is now. One
/// thread at a time.
class PathResolver {
public:
    /// What a link in the place of the last name stands for: what it leads to, or itself.
    enum class Last : std::uint8_t { follow, keep };

    /// `outOfReach`: real paths of the places that are never asked about, nor anything in them.
    explicit PathResolver(std::vector<std::string> outOfReach = {}) : outOfReach_(std::move(outOfReach)) {}

    ResolvedPath resolve(std::string_view path, Last last = Last::follow);

    /// Whether `path`, a real path, is at or below such a place.
    bool isOutOfReach(std::string_view path) const;

private:
    std::vector<std::string> outOfReach_;
    std::unordered_map<std::string, SeenObject> folders_; ///< seen to be folders and no links
};

} // namespace orbel
