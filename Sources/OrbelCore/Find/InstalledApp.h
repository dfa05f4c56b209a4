#pragma once

#include "Platform/InstalledApp.h"

namespace orbel {

using platform::InstalledApp;

} // namespace orbel
