#pragma once

#include <string>

namespace orbel {

/// Why a move, or opening the folders for it, failed with this errno, for the user to read.
std::string moveFailureText(int error);

} // namespace orbel
