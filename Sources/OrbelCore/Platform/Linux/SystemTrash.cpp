#include "Platform/SystemTrash.h"

namespace orbel::platform {

SystemTrash systemTrash() {
    return nullptr;
}

} // namespace orbel::platform
