#pragma once

#include "Ports/Desktop.h"

namespace orbel {

/// The desktop over D-Bus and its own openers.
class LiveDesktop final : public Desktop {
public:
    void open(const std::string& path) override;
    void showInFileManager(const std::string& path) override;
    void openTrash(const std::string& itemsFolder) override;
    void openAddress(const QString& address) override;
    void copyText(const QString& text) override;
};

} // namespace orbel
