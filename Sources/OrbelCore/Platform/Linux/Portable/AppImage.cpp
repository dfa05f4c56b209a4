#include "Platform/Linux/Portable/AppImage.h"

#include "Util/FileDescriptor.h"
#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <ranges>
#include <span>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

constexpr std::string_view launcherEnding = ".desktop";

/// Only of a regular file: opening a device can do something.
FileDescriptor openRegular(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return FileDescriptor(-1);
    return FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
}

/// Fills `bytes` from the place on; false where the file ends earlier.
bool readAt(const FileDescriptor& file, std::uint64_t place, std::span<char> bytes) {
    return file
           && ::pread(file.get(), bytes.data(), bytes.size(), static_cast<off_t>(place))
                  == static_cast<ssize_t>(bytes.size());
}

/// A number as ELF files of little-endian machines keep it.
std::uint64_t numberAt(std::span<const char> bytes, std::size_t place, std::size_t size) {
    std::uint64_t number = 0;
    for (std::size_t i = size; i > 0; --i)
        number = number << 8U | static_cast<unsigned char>(bytes[place + i - 1]);
    return number;
}

/// Where the squashfs behind the program begins: at the end of its section headers, the last of its parts.
std::optional<std::uint64_t> squashfsOffset(const std::string& path) {
    constexpr std::size_t classAt = 4;
    constexpr char of64Bits = 2;
    constexpr std::uint64_t farthest = 1ULL << 40U;
    const auto file = openRegular(path);
    std::array<char, 64> head{};
    std::array<char, 4> magic{};
    if (!readAt(file, 0, head))
        return std::nullopt;
    const bool is64Bits = head[classAt] == of64Bits;
    const auto headers = is64Bits ? numberAt(head, 0x28, 8) : numberAt(head, 0x20, 4);
    const auto headerSize = numberAt(head, is64Bits ? 0x3A : 0x2E, 2);
    const auto count = numberAt(head, is64Bits ? 0x3C : 0x30, 2);
    if (headers > farthest)
        return std::nullopt;
    const auto end = headers + headerSize * count;
    if (!readAt(file, end, magic) || std::string_view(magic.data(), magic.size()) != "hsqs")
        return std::nullopt;
    return end;
}

/// A launcher's path in the squashfs, of the line that lists it: where a link leads to.
std::optional<std::string> listedLauncher(std::string_view line) {
    constexpr std::string_view top = " squashfs-root/";
    constexpr std::string_view arrow = " -> ";
    const auto at = line.find(top);
    if (at == std::string_view::npos)
        return std::nullopt;
    auto path = line.substr(at + top.size());
    if (const auto link = path.find(arrow); link != std::string_view::npos)
        path.remove_prefix(link + arrow.size());
    while (path.starts_with("./"))
        path.remove_prefix(2);
    const bool isInside = !path.starts_with('/') && !path.starts_with('-') && !path.contains("..");
    return isInside && path.ends_with(launcherEnding) ? std::optional(std::string(path)) : std::nullopt;
}

std::string_view withoutAppImageEnding(std::string_view name) {
    for (const std::string_view ending : {".AppImage", ".appimage"})
        if (name.ends_with(ending) && name.size() > ending.size())
            return name.substr(0, name.size() - ending.size());
    return name;
}

bool isVersion(std::string_view word) {
    if (word.starts_with('v') || word.starts_with('V'))
        word.remove_prefix(1);
    const auto isDigit = [](unsigned char c) { return std::isdigit(c) != 0; };
    const auto isPart = [&](unsigned char c) {
        return std::isalnum(c) != 0 || c == '.' || c == '+' || c == '~';
    };
    return !word.empty() && isDigit(static_cast<unsigned char>(word.front()))
           && std::ranges::all_of(word, isPart);
}

/// A kind of machine, or of release, with a number or without: "rc2".
bool isQualifier(std::string_view word) {
    static constexpr auto qualifiers = std::to_array<std::string_view>(
        {"x86_64", "x86-64", "x86",    "x64",   "amd64",   "i386",     "i686",   "ia32",       "aarch64",
         "arm64",  "armhf",  "armv7l", "linux", "64bit",   "32bit",    "latest", "continuous", "nightly",
         "stable", "beta",   "alpha",  "rc",    "release", "anylinux", "gnu",    "portable"});
    const auto unnumbered = word.substr(0, word.find_last_not_of("0123456789.") + 1);
    const auto isCalled = [](std::string_view name, std::string_view qualifier) {
        return std::ranges::equal(name, qualifier, {}, [](unsigned char c) { return std::tolower(c); });
    };
    return std::ranges::any_of(qualifiers, [&](std::string_view each) {
        return isCalled(word, each) || isCalled(unnumbered, each);
    });
}

} // namespace

bool isAppImage(const std::string& path) {
    constexpr std::string_view elf = "\x7F"
                                     "ELF";
    constexpr std::size_t markAt = 8;
    std::array<char, 11> head{};
    if (!readAt(openRegular(path), 0, head))
        return false;
    const std::string_view bytes(head.data(), head.size());
    return bytes.starts_with(elf) && (bytes.substr(markAt) == "AI\x01" || bytes.substr(markAt) == "AI\x02");
}

AppImageName appImageName(std::string_view fileName) {
    constexpr std::string_view separators = "-_ ";
    constexpr std::string_view machine = "x86_64"; // holds a separator
    auto rest = withoutAppImageEnding(fileName);
    AppImageName result{.name = std::string(rest)};
    if (rest.size() == fileName.size())
        return result;
    // "Tool (1).AppImage" was downloaded twice.
    if (const auto copy = rest.rfind(" ("); copy != std::string_view::npos && copy > 0 && rest.ends_with(')'))
        rest = rest.substr(0, copy);
    while (true) {
        const bool endsInMachine = rest.ends_with(machine) || rest.ends_with("x86-64");
        const auto at = endsInMachine && rest.size() > machine.size() ? rest.size() - machine.size() - 1
                                                                      : rest.find_last_of(separators);
        if (at == std::string_view::npos || at == 0 || !separators.contains(rest[at]))
            break;
        const auto word = rest.substr(at + 1);
        if (isVersion(word) && !isQualifier(word))
            result.version = std::string(word.substr(word.find_first_of("0123456789")));
        else if (!word.empty() && !isQualifier(word))
            break;
        rest = rest.substr(0, at);
    }
    result.name = std::string(rest);
    return result;
}

std::optional<EmbeddedLauncher> embeddedLauncher(const std::string& path, const RunProgram& run) {
    constexpr std::size_t largest = 1024 * 1024;
    const auto offset = run ? squashfsOffset(path) : std::nullopt;
    if (!offset)
        return std::nullopt;
    const std::vector<std::string> program{"unsquashfs", "-processors", "1", "-offset",
                                           std::to_string(*offset)};
    auto list = program;
    list.insert(list.end(), {"-lln", "-max-depth", "1", path});
    const auto listing = run(list);
    for (const auto line : listing.value_or("") | std::views::split('\n')) {
        const auto launcher = listedLauncher(std::string_view(line));
        if (!launcher)
            continue;
        auto show = program;
        show.insert(show.end(), {"-no-wildcards", "-cat", path, *launcher});
        const auto text = run(show);
        if (!text || text->size() > largest)
            return std::nullopt;
        auto entry = DesktopEntry::parse(*text);
        if (entry.groups().empty())
            return std::nullopt;
        const auto name = lastPathComponent(*launcher);
        return EmbeddedLauncher{.id = std::string(name.substr(0, name.size() - launcherEnding.size())),
                                .entry = std::move(entry)};
    }
    return std::nullopt;
}

} // namespace orbel::platform
