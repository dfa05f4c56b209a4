#include "Platform/Linux/Portable/DesktopEntry.h"
#include "Platform/Linux/Portable/ExecLine.h"
#include "Util/Check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

// Whatever bytes are in a launcher's place: reading them and taking its Exec value apart never fails, and no
// word of a command holds what was never in the value.

namespace orbel::platform {
namespace {

void tryExec(std::string_view exec) {
    const auto words = execWords(exec);
    const auto command = execCommand(exec);
    ORBEL_CHECK(!command || words, "a command has words");
    ORBEL_CHECK(!words || !words->empty(), "words are at least one");
    if (command)
        ORBEL_CHECK(!command->name.empty(), "a command starts something");
    std::size_t bytes = 0;
    for (const auto& word : words.value_or(std::vector<std::string>()))
        bytes += word.size();
    ORBEL_CHECK(bytes <= exec.size(), "words are parts of the value");
}

} // namespace
} // namespace orbel::platform

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto entry = orbel::platform::DesktopEntry::parse(bytes);
    for (const auto& group : entry.groups())
        if (const auto exec = entry.text("Exec", group)) {
            ORBEL_CHECK(exec->find('\0') == std::string::npos, "no value holds a zero byte");
            orbel::platform::tryExec(*exec);
        }
    orbel::platform::tryExec(bytes);
    return 0;
}
