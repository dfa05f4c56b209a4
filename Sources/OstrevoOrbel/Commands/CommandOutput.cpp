#include "Commands/CommandOutput.h"

#include "Util/Utf8.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace orbel {

void say(std::string_view words) {
    auto line = "orbel: " + lossyUtf8(words) + "\n";
    // A name on the disk may hold what a terminal would obey, even break the line.
    const auto isControl = [](char byte) { return static_cast<unsigned char>(byte) < ' ' || byte == '\x7F'; };
    std::replace_if(line.begin(), line.end() - 1, isControl, '?');
    std::fputs(line.c_str(), stderr);
}

void print(std::string_view part) {
    if (std::fwrite(part.data(), 1, part.size(), stdout) == part.size())
        return;
    std::perror("orbel: could not write the result");
    std::_Exit(ExitStatus::incomplete);
}

void finish(const std::string& output, int status) {
    print(output);
    const bool written = std::fflush(stdout) == 0;
    if (!written)
        std::perror("orbel: could not write the result");
    std::_Exit(written ? status : ExitStatus::incomplete);
}

void finishWrongUsage(std::string_view words) {
    say(words);
    std::fputs("Try orbel --help\n", stderr);
    std::_Exit(ExitStatus::wrongUsage);
}

} // namespace orbel
