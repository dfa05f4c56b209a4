#pragma once

#include "Platform/Conventions.h"

namespace orbel::platform {

Conventions macOSConventions(int activeProcessors);

} // namespace orbel::platform
