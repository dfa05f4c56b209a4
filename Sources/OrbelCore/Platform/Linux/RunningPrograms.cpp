#include "Platform/RunningPrograms.h"

#include "Util/FileDescriptor.h"
#include "Util/ReadLink.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { ::closedir(directory); }
};

std::string programOf(const std::string& process) {
    return linkText(process + "/exe").value_or("");
}

/// The absolute paths among the first words of its command line: a script is not the program that runs it.
std::vector<std::string> scriptsOf(const std::string& process) {
    constexpr int mostWords = 4;
    const FileDescriptor file(::open((process + "/cmdline").c_str(), O_RDONLY | O_CLOEXEC));
    std::array<char, 16384> buffer{};
    const auto length = file ? ::read(file.get(), buffer.data(), buffer.size()) : 0;
    std::string_view line(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    std::vector<std::string> scripts;
    for (int word = 0; word < mostWords && !line.empty(); ++word) {
        const auto end = std::min(line.find('\0'), line.size());
        if (line.starts_with('/'))
            scripts.emplace_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return scripts;
}

} // namespace

std::vector<RunningProgram> runningPrograms() {
    std::vector<RunningProgram> found;
    const std::unique_ptr<DIR, CloseDirectory> listing(::opendir("/proc"));
    while (const dirent* const entry =
               listing ? ::readdir(listing.get()) : nullptr) { // NOLINT(concurrency-mt-unsafe)
        const std::string_view number(entry->d_name);
        RunningProgram program;
        const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), program.pid);
        if (error != std::errc{} || end != number.data() + number.size() || program.pid == ::getpid())
            continue;
        const auto process = "/proc/" + std::string(number);
        auto path = programOf(process);
        if (!path.starts_with('/'))
            continue; // the kernel's own, or another user's
        program.name = path.substr(path.rfind('/') + 1);
        program.paths.push_back(std::move(path));
        std::ranges::move(scriptsOf(process), std::back_inserter(program.paths));
        found.push_back(std::move(program));
    }
    std::ranges::sort(found, {}, &RunningProgram::pid);
    return found;
}

} // namespace orbel::platform
