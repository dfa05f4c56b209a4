#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::platform {

/// The words of an Exec value, whose escapes are resolved already: quotes taken off, field codes such
/// as %U taken out ("%%" stays as "%"). Absent when it has no words, a quote is not closed, or a field
/// code is invalid.
std::optional<std::vector<std::string>> execWords(std::string_view exec);

/// What an Exec value starts.
struct ExecCommand {
    enum class Kind : std::uint8_t {
        program, ///< `name` is a path or a name to look up
        flatpak, ///< `name` is the application's id
        snap     ///< `name` is the snap's name
    };

    Kind kind = Kind::program;
    std::string name;
    std::vector<std::string> arguments; ///< that follow

    bool operator==(const ExecCommand&) const = default;
};

/// Sees through `env VAR=value …`, `flatpak run` and `snap run`. Absent when what is started cannot
/// be found out.
std::optional<ExecCommand> execCommand(std::string_view exec);

} // namespace orbel::platform
