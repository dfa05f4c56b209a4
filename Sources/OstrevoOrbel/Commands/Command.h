#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace orbel {

struct Request;

/// A switch that goes with a command.
struct CommandOption {
    std::string_view name;       ///< "--min-bytes"
    std::string_view takes = {}; ///< the name of its value, "N"; empty when it takes none
    bool isRepeatable = false;   ///< it may be there more than once
};

/// A headless command: all that the parser, the help and the programs know of it. A constant.
struct Command {
    std::string_view name;                       ///< "--large-json"; empty for a line without a command
    std::string_view operands = {};              ///< their names, "ROOT FILE"; empty when it takes none
    std::size_t fewestOperands = 0;              ///< and without them it is wrong usage
    std::size_t mostOperands = fewestOperands;   ///< one more is wrong usage
    std::span<const CommandOption> options = {}; ///< in the order of the help
    bool isLenient = false;                      ///< read as lenientRequest() does, else strictly
    bool isChange = false;                       ///< it moves items: anywhere in a line, it decides
    std::string_view help = {};                  ///< one paragraph; empty when the next command's says it all
    void (*run)(const Request& request);         ///< prints the result and ends the process
};

} // namespace orbel
