#include "Safety/AllowedRoot.h"

#include "Util/Check.h"

namespace orbel {

std::string_view rawValue(AllowedRoot root) {
    switch (root) {
    case AllowedRoot::homeItem:
        return "homeItem";
    case AllowedRoot::applicationBundle:
        return "applicationBundle";
    case AllowedRoot::leftover:
        return "leftover";
    }
    checkFailed("an allowed root out of range", __FILE__, __LINE__);
}

std::optional<AllowedRoot> allowedRoot(std::string_view rawValue) {
    for (const auto root : {AllowedRoot::homeItem, AllowedRoot::applicationBundle, AllowedRoot::leftover})
        if (orbel::rawValue(root) == rawValue)
            return root;
    return std::nullopt;
}

} // namespace orbel
