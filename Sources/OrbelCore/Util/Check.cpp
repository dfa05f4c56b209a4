#include "Util/Check.h"

#include <cstdio>
#include <cstdlib>

namespace orbel {

void checkFailed(std::string_view what, const char* file, int line) noexcept {
    std::fprintf(stderr, "%s:%d: broken invariant: %.*s\n", file, line, static_cast<int>(what.size()),
                 what.data());
    std::abort();
}

} // namespace orbel
