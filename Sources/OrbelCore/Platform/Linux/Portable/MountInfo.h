#pragma once

#include "Platform/MountTable.h"

namespace orbel::platform {

/// Reads the text of /proc/self/mountinfo. Lines that are not of its form are passed over.
std::vector<Mount> parseMountInfo(std::string_view text);

/// The mount points that the text of /etc/fstab names, mounted or not; "/" is left out.
std::vector<std::string> mountPointsInFstab(std::string_view text);

} // namespace orbel::platform
