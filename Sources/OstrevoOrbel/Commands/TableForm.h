#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace orbel {

/// How text is laid out for where it goes. A plain value.
struct TableForm {
    bool isTerminal = false;  ///< a person looks at it; else it is for a pipe or a file
    std::size_t columns = 80; ///< how wide a terminal is; nothing is cut short for a pipe
    bool hasColour = false;
    bool isUnicode = false; ///< else lines and marks are ASCII; names are what they are

    /// The value of a variable of the environment, empty without it.
    using Environment = std::function<std::string(const char* name)>;

    /// The form for a terminal that says how wide it is, or does not, or for what is no terminal.
    static TableForm of(bool isTerminal, std::optional<std::size_t> columns, const Environment& environment);
    /// The form for what this process has behind the descriptor.
    static TableForm ofDescriptor(int descriptor);
};

} // namespace orbel
