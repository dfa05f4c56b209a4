#pragma once

#include <string>

namespace orbel {

/// The text of `--help`, made from the table of commands; at most 80 columns wide, ends with a line feed.
std::string commandHelp();

} // namespace orbel
