#include "Delete/ManageHint.h"

#include "Platform/Conventions.h"
#include "Safety/RealPath.h"

#include <algorithm>
#include <array>

namespace orbel {

namespace {

/// Applies to a path that holds one of the parts or has the ending; an empty one applies to none.
struct Hint {
    std::array<std::string_view, 2> parts;
    std::string_view ending;
    std::string_view words; ///< "{fileManager}" stands for what the platform calls it

    bool appliesTo(std::string_view path) const {
        const auto isIn = [&](std::string_view part) { return !part.empty() && path.contains(part); };
        return std::ranges::any_of(parts, isIn) || (!ending.empty() && path.ends_with(ending));
    }
};

constexpr std::array<Hint, 3> hints{{
    {.parts = {"/MobileSync/Backup"},
     .ending = {},
     .words = "iPhone/iPad backup — manage in {fileManager} → your device → Manage Backups"},
    {.parts = {"/com.docker.docker/"},
     .ending = "/Docker.raw",
     .words = "Docker disk image — manage in Docker Desktop → Settings → Resources"},
    {.parts = {"/Library/Developer/", "/DerivedData"},
     .ending = {},
     .words = "Developer caches — use Ostrevo Fennick"},
}};

std::string filledIn(std::string_view words) {
    constexpr std::string_view placeholder = "{fileManager}";
    std::string text(words);
    if (const auto at = text.find(placeholder); at != std::string::npos)
        text.replace(at, placeholder.size(), platform::conventions().fileManager);
    return text;
}

} // namespace

std::string ManageHint::explain(std::string_view path, const std::string& refusal,
                                std::string_view homePath) {
    for (const auto& hint : hints)
        if (hint.appliesTo(path))
            return filledIn(hint.words);
    if (!RealPath::isInside(path, homePath) && !path.starts_with("/Applications/"))
        return "System-wide: needs an administrator; Vanto does not change it";
    return refusal;
}

} // namespace orbel
