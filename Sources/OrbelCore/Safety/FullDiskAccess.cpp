#include "Safety/FullDiskAccess.h"

#include "Util/FileDescriptor.h"
#include "Util/PathText.h"

#include <filesystem>
#include <system_error>

#include <fcntl.h>

namespace orbel {

namespace {

bool exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

} // namespace

std::optional<bool> FullDiskAccess::isGranted(const std::string& home) {
    if (const auto database = joinedPath(home, "Library/Application Support/com.apple.TCC/TCC.db");
        exists(database)) {
        const FileDescriptor file(::open(database.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        return static_cast<bool>(file);
    }
    if (const auto folder = joinedPath(home, "Library/Safari"); exists(folder)) {
        std::error_code error;
        const std::filesystem::directory_iterator listing(folder, error);
        return !error;
    }
    return std::nullopt;
}

} // namespace orbel
