#include "Safety/FileIdentity.h"

#include <ostream>

namespace orbel {

std::optional<FileIdentity> FileIdentity::of(const std::string& path) {
    const auto status = platform::fileStatus(path);
    if (!status)
        return std::nullopt;
    return of(*status);
}

std::string FileIdentity::description() const {
    return std::to_string(device) + ":" + std::to_string(inode);
}

std::ostream& operator<<(std::ostream& stream, const FileIdentity& identity) {
    return stream << identity.description();
}

} // namespace orbel
