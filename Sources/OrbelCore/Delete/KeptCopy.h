#pragma once

#include "Safety/FileStamp.h"

#include <string>

namespace orbel {

/// The copy of a duplicate that stays, recorded so that the move can prove, just before it happens, that a
/// copy really remains.
struct KeptCopy {
    std::string path;
    FileStamp stamp; ///< of that copy when the item was built

    bool operator==(const KeptCopy&) const = default;
};

} // namespace orbel
