#pragma once

#include "Platform/Conventions.h"

namespace orbel::platform {

Conventions linuxConventions(int activeProcessors);

} // namespace orbel::platform
