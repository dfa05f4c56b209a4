#include "Platform/macOS/Portable/MacOSPlaces.h"

#include "Platform/ToolCaches.h"
#include "Util/PathText.h"

namespace orbel::platform {

Places macOSPlaces(const std::string& home) {
    Places places;
    places.applicationFolders = {"/Applications", joinedPath(home, "Applications")};
    places.rebuildablePlaces = toolCaches(home);
    places.rebuildablePlaces.push_back({.path = joinedPath(home, "Library/Caches/*")});
    places.trashFolders = {joinedPath(home, ".Trash")};
    places.applicationSupport = joinedPath(home, "Library/Application Support");
    return places;
}

} // namespace orbel::platform
