#include "Platform/ToolCaches.h"

#include "Util/PathText.h"

namespace orbel::platform {

std::vector<RebuildablePlace> toolCaches(const std::string& home) {
    std::vector<RebuildablePlace> places{{.path = ".npm/_cacache", .program = "npm"},
                                         {.path = ".yarn/cache", .program = "yarn"},
                                         {.path = ".cargo/registry/cache", .program = "cargo"},
                                         {.path = ".cargo/registry/src", .program = "cargo"},
                                         {.path = "go/pkg/mod", .program = "go"},
                                         {.path = ".m2/repository", .program = "maven"},
                                         {.path = ".gradle/caches", .program = "gradle"},
                                         {.path = ".ivy2/cache", .program = "ivy"},
                                         {.path = ".nuget/packages", .program = "nuget"},
                                         {.path = ".bundle/cache", .program = "bundler"}};
    for (auto& place : places)
        place.path = joinedPath(home, place.path);
    return places;
}

} // namespace orbel::platform
