#pragma once

#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

struct Command;

/// What a command line asks of one command. A plain value.
struct Request {
    std::vector<std::string> operands;
    /// Value by name, empty where it takes none; of a repeatable one its values in the order of the line.
    std::multimap<std::string, std::string, std::less<>> options{};

    bool has(std::string_view option) const { return options.contains(option); }
    std::optional<std::string> value(std::string_view option) const;
    /// All values of a repeatable option.
    std::vector<std::string> values(std::string_view option) const;

    bool operator==(const Request&) const = default;
};

// In all that follows, `arguments` are all words of the command line, the program's own path first.

/// The command that is read strictly and that the line is meant for; null when there is none. That is the
/// first one of the line, unless a lenient command stands before it and it changes nothing.
const Command* strictCommandIn(std::span<const std::string> arguments);

/// What the line asks of `command`, which is in it or nameless, when all of it is understood. The first "--"
/// ends the switches. The error says what is wrong: an unknown switch and which one is nearest, a second
/// command, a value or an operand too many or too few.
std::expected<Request, std::string> strictRequest(const Command& command,
                                                  std::span<const std::string> arguments);

/// What the line asks of `command`, with all else in it ignored; absent when the command, or the one operand
/// that it takes, is missing.
std::optional<Request> lenientRequest(const Command& command, std::span<const std::string> arguments);

/// The words before the first "--": only among these, a word that looks like a switch is one.
std::span<const std::string> switchesIn(std::span<const std::string> arguments);

/// The word after the first `name`, or what follows in that word after "="; absent when there is none.
std::optional<std::string> valueAfter(std::span<const std::string> arguments, std::string_view name);
/// The same for every `name`.
std::vector<std::string> valuesAfter(std::span<const std::string> arguments, std::string_view name);

/// Whether a command line holds that word.
bool contains(std::span<const std::string> arguments, std::string_view name);

} // namespace orbel
