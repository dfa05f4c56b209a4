#pragma once

#include <string>

class QQuickWindow;

namespace orbel {

/// Draws the window as it is now and writes that as PNG to `path`, replacing what is there. False when there
/// was nothing to draw or the file could not be written.
bool writeWindowSnapshot(QQuickWindow& window, const std::string& path);

} // namespace orbel
