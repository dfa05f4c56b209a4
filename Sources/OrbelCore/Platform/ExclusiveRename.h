#pragma once

#include <expected>
#include <string>

namespace orbel::platform {

/// Gives what is called `from` in one open folder the name `to` in another one of the same file system, in
/// one step that never replaces anything: a link is moved itself, and another link to the same file counts as
/// taken. The error is an errno: EEXIST when the name is taken, EXDEV when it would have to be copied, EINVAL
/// when the file system cannot promise to replace nothing (and when a folder would move into itself). Nothing
/// has then changed, save on a network file system that lost the server's answer.
std::expected<void, int> renameExclusively(int fromFolder, const std::string& from, int toFolder,
                                           const std::string& to);

} // namespace orbel::platform
