#include "Journal/MoveFailure.h"

#include <cerrno>
#include <system_error>

namespace orbel {

std::string moveFailureText(int error) {
    switch (error) {
    case EXDEV:
        return "It would have to be copied to another volume";
    case EINVAL:
    case ENOSYS:
    case ENOTSUP:
        return "The file system cannot move it without the risk of replacing something";
    case EEXIST:
        return "Something already exists there";
    case ENOENT:
        return "It is no longer there";
    case ELOOP:
    case ENOTDIR:
        return "A folder on its path was replaced by a link or a file";
    default:
        return std::generic_category().message(error);
    }
}

std::string flushFailureText(int error) {
    return "The disk did not confirm the move: " + std::generic_category().message(error);
}

} // namespace orbel
