#include "Commands/PathList.h"

#include "Commands/CommandOutput.h"
#include "Commands/Request.h"
#include "Util/FileDescriptor.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace orbel {

namespace {

std::string contentOf(const std::string& file) {
    // The descriptor of standard input is not ours to close; a copy of it is.
    const FileDescriptor list(file == "-" ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                          : ::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    auto content = list ? readFile(list.get()) : std::nullopt;
    if (!content) {
        say(file + ": " + std::generic_category().message(errno));
        finish("", ExitStatus::incomplete);
    }
    return *std::move(content);
}

std::vector<std::string> namesIn(std::string_view content, const std::string& file) {
    if (!content.empty() && !content.ends_with('\0'))
        finishWrongUsage(file + ": the last name does not end with a NUL, so the list may be cut short");
    std::vector<std::string> names;
    while (!content.empty()) {
        const auto end = content.find('\0');
        names.emplace_back(content.substr(0, end));
        content.remove_prefix(end + 1);
    }
    return names;
}

/// "." and ".." stand for the current folder and the one above, not for an item in it.
bool namesAnItem(const std::string& path) {
    const auto name = lastPathComponent(path);
    return !name.empty() && name != "." && name != "..";
}

} // namespace

std::vector<std::string> pathsIn(const Request& request) {
    const auto file = request.value("--files0-from");
    if (file && !request.operands.empty())
        finishWrongUsage("\"" + request.operands.front() + "\" cannot stand beside --files0-from");
    if (!file && request.operands.empty())
        finishWrongUsage("--trash takes PATH... or --files0-from FILE");
    if (std::ranges::find(request.operands, "-") != request.operands.end())
        finishWrongUsage("\"-\" is not the path of an item: --files0-from - reads standard input");
    auto paths = file ? namesIn(contentOf(*file), *file) : request.operands;
    const auto bad = std::ranges::find_if_not(paths, namesAnItem);
    if (bad != paths.end())
        finishWrongUsage("\"" + *bad + "\" is not the path of an item");
    return paths;
}

} // namespace orbel
