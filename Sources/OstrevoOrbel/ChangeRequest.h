#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orbel {

/// What a command line asks for that changes something on the disk. Unlike the commands that only look, these
/// are read strictly: what is not understood could be meant to spare something.
struct ChangeRequest {
    enum class Kind : std::uint8_t { trash, putBack };

    Kind kind = Kind::trash;
    std::vector<std::string> operands; ///< the paths, or the one id; none is empty
    bool isDryRun = false;

    bool operator==(const ChangeRequest&) const = default;
};

/// The request in `arguments` (all words, the program's own path first), absent when there is none. An error
/// is why it cannot be followed: an unknown switch, a second command, a word too many or too few. The first
/// "--" ends the switches.
std::expected<std::optional<ChangeRequest>, std::string>
changeRequestIn(std::span<const std::string> arguments);

/// The words before the first "--": only among these, a word that looks like a switch is one.
std::span<const std::string> switchesIn(std::span<const std::string> arguments);

} // namespace orbel
