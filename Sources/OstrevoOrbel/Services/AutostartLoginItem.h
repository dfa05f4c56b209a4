#pragma once

#include "Ports/LoginItem.h"

#include <memory>
#include <string>

namespace orbel {

/// An entry in the desktop's autostart folder; off means that there is none.
class AutostartLoginItem final : public LoginItem {
public:
    /// `folder`: where the desktop looks ("…/autostart"); `program`: absolute path of what it is to start.
    AutostartLoginItem(std::string folder, std::string program);

    /// The folder and program of this process.
    static std::shared_ptr<LoginItem> ofThisUser();

    bool isEnabled() const override;
    bool setEnabled(bool enabled) override;

private:
    std::string folder_;
    std::string file_;
    std::string program_;
};

/// A path as the Exec line of a desktop file takes it.
std::string execWord(const std::string& path);

} // namespace orbel
