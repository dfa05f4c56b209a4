#include "CommandOutput.h"

#include <cstdio>
#include <cstdlib>

namespace orbel {

void say(std::string_view words) {
    std::fprintf(stderr, "orbel: %.*s\n", static_cast<int>(words.size()), words.data());
}

void finish(const std::string& output, int status) {
    const bool written =
        std::fwrite(output.data(), 1, output.size(), stdout) == output.size() && std::fflush(stdout) == 0;
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
