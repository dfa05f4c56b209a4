#pragma once

#include "WindowScene.h"

#include <QString>

namespace orbel::test {

/// Writes what the window shows, in both appearances, and looks for what is amiss: nothing drawn, texts that
/// are cut off or lie over one another.
void keepPicture(WindowScene& scene, const QString& name);

} // namespace orbel::test
