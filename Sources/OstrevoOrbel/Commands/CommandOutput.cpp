#include "Commands/CommandOutput.h"

#include "Platform/ReplaceFile.h"
#include "Util/ShownText.h"

#include <cstdio>
#include <cstdlib>

namespace orbel {

void say(std::string_view words) {
    // A name on the disk may hold what a terminal would obey, even break the line.
    const auto line = "orbel: " + visibleText(words) + "\n";
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

void finishInto(const std::string& file, const std::string& output) {
    if (file == "-")
        finish(output);
    const auto written = replaceFile(file, output);
    if (!written)
        say(file + ": " + written.error());
    finish("", written ? ExitStatus::done : ExitStatus::incomplete);
}

void finishWrongUsage(std::string_view words) {
    say(words);
    std::fputs("Try orbel --help\n", stderr);
    std::_Exit(ExitStatus::wrongUsage);
}

} // namespace orbel
