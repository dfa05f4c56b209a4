#include "Platform/IconFinder.h"

#include "Platform/Linux/EnvironmentText.h"
#include "Platform/Linux/Portable/IconThemes.h"

#include <memory>

namespace orbel::platform {

IconFinder iconFinder(const std::string& home, const std::string& theme) {
    const auto themes = std::make_shared<const IconThemes>(
        iconFolders(home, environmentText("XDG_DATA_HOME"), environmentText("XDG_DATA_DIRS")), theme);
    return [themes](const std::string& icon, int size) { return themes->file(icon, size); };
}

} // namespace orbel::platform
