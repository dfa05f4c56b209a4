#pragma once

#include <string>

namespace orbel {

/// Why a move, or opening the folders for it, failed with this errno, for the user to read.
std::string moveFailureText(int error);

/// Why a move that happened may not outlast a power cut: flushing its folders failed with this errno.
std::string flushFailureText(int error);

} // namespace orbel
