#include "Delete/ManageHint.h"

#include "Delete/FileManagerWords.h"
#include "Platform/Conventions.h"
#include "Safety/RealPath.h"
#include "Safety/SafetyPolicy.h"

#include <algorithm>
#include <array>

namespace orbel {

namespace {

/// Applies to a path that holds one of the parts or has the ending; an empty one applies to none.
struct Hint {
    std::array<std::string_view, 3> parts;
    std::string_view ending;
    std::string_view words; ///< "{fileManager}" stands for what the platform calls it

    bool appliesTo(std::string_view path) const {
        const auto isIn = [&](std::string_view part) { return !part.empty() && path.contains(part); };
        return std::ranges::any_of(parts, isIn) || (!ending.empty() && path.ends_with(ending));
    }
};

constexpr auto hints = std::to_array<Hint>({
    {.parts = {"/MobileSync/Backup"},
     .ending = {},
     .words = "iPhone/iPad backup — manage in {fileManager} → your device → Manage Backups"},
    {.parts = {"/com.docker.docker/"},
     .ending = "/Docker.raw",
     .words = "Docker disk image — manage in Docker Desktop → Settings → Resources"},
    {.parts = {"/Library/Developer/", "/DerivedData"},
     .ending = {},
     .words = "Developer caches — use Ostrevo Fennick"},
    {.parts = {"/.local/share/containers/", "/var/lib/containers/"},
     .ending = "/.local/share/containers",
     .words = "Container storage — manage with podman (podman system df, podman system prune)"},
    {.parts = {"/.local/share/docker/", "/var/lib/docker/"},
     .ending = "/var/lib/docker",
     .words = "Docker storage — manage with docker (docker system df, docker system prune)"},
    {.parts = {"/.local/share/flatpak/", "/var/lib/flatpak/"},
     .ending = "/.local/share/flatpak",
     .words = "Flatpak storage — manage with flatpak (flatpak list, flatpak uninstall --unused)"},
    {.parts = {"/var/lib/snapd/"},
     .ending = "/var/lib/snapd",
     .words = "Snap packages — manage with snap (snap list --all, snap remove)"},
    {.parts = {"/steamapps/"}, .ending = "/steamapps", .words = "Steam library — manage in Steam → Library"},
    {.parts = {"/.local/share/libvirt/", "/.local/share/gnome-boxes/", "/var/lib/libvirt/"},
     .ending = {},
     .words = "Virtual machine — manage in the program that runs it"},
    {.parts = {"/var/log/journal/"},
     .ending = "/var/log/journal",
     .words = "System journal — manage with journalctl (sudo journalctl --vacuum-size=500M)"},
    {.parts = {"/var/cache/apt/"},
     .ending = "/var/cache/apt",
     .words = "Package cache — manage with apt (sudo apt clean)"},
    {.parts = {"/var/cache/dnf/", "/var/cache/libdnf5/"},
     .ending = "/var/cache/dnf",
     .words = "Package cache — manage with dnf (sudo dnf clean packages)"},
    {.parts = {"/var/cache/pacman/"},
     .ending = "/var/cache/pacman",
     .words = "Package cache — manage with pacman (sudo pacman -Sc)"},
});

} // namespace

std::string ManageHint::explain(std::string_view path, const std::string& refusal,
                                std::string_view homePath) {
    // One's own other disk needs no administrator, and no program manages it.
    if (platform::conventions().hasFurtherRefusals && refusal == SafetyPolicy::onAnotherVolume)
        return refusal;
    for (const auto& hint : hints)
        if (hint.appliesTo(path))
            return withFileManager(hint.words);
    if (!RealPath::isInside(path, homePath) && !path.starts_with("/Applications/"))
        return "System-wide: needs an administrator; Vanto does not change it";
    return refusal;
}

} // namespace orbel
