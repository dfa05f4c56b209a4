#include "Journal/LiveRestore.h"

#include "Journal/Barrier.h"
#include "Journal/HeldFolder.h"
#include "Journal/MoveFailure.h"
#include "Util/PathText.h"

#include <cerrno>

namespace orbel {

std::expected<void, std::string> LiveRestore::move(const std::string& from, const HeldFolder& folder,
                                                   const std::string& name, Barrier& barrier) {
    const std::string fromName(lastPathComponent(from));
    if (fromName.empty() || fromName == "." || fromName == ".." || fromName == "/"
        || from.find('\0') != std::string::npos)
        return std::unexpected(moveFailureText(ENOENT));
    const auto source = HeldFolder::openThroughLinks(std::string(parentPath(from)));
    if (!source)
        return std::unexpected(source.error() == ENOENT ? "Its folder no longer exists"
                                                        : moveFailureText(source.error()));
    if (const auto moved = moveEntry(*source, fromName, folder, name); !moved)
        return std::unexpected(moveFailureText(moved.error()));
    barrier.addMove(*source, folder);
    return {};
}

} // namespace orbel
