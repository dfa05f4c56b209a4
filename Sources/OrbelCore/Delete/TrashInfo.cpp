#include "Delete/TrashInfo.h"

#include "Journal/Barrier.h"

#include <array>
#include <cerrno>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {

namespace {

std::string escaped(std::string_view path) {
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char c : path) {
        if (plain.contains(c)) {
            text += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            text += {'%', digits[byte >> 4], digits[byte & 0xF]};
        }
    }
    return text;
}

std::string localTime(std::chrono::system_clock::time_point time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm fields{};
    ::localtime_r(&seconds, &fields);
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &fields)};
}

std::expected<void, int> writeAll(int file, std::string_view content) {
    while (!content.empty()) {
        const auto written = ::write(file, content.data(), content.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return std::unexpected(errno);
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

} // namespace

std::string trashInfoText(std::string_view path, std::chrono::system_clock::time_point now) {
    return "[Trash Info]\nPath=" + escaped(path) + "\nDeletionDate=" + localTime(now) + "\n";
}

std::expected<PendingTrashInfo, int> PendingTrashInfo::create(const HeldFolder& folder, std::string name,
                                                              std::string_view content, Barrier& barrier) {
    constexpr mode_t forTheUserAlone = 0600;
    const FileDescriptor file(::openat(folder.descriptor(), name.c_str(),
                                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                       forTheUserAlone));
    if (!file)
        return std::unexpected(errno);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0)
        return std::unexpected(errno);
    PendingTrashInfo info(folder, std::move(name),
                          {.device = static_cast<std::uint32_t>(status.st_dev), .inode = status.st_ino});
    // The umask may have taken away even the right to read it.
    if ((status.st_mode & 07777) != forTheUserAlone && ::fchmod(file.get(), forTheUserAlone) != 0)
        return std::unexpected(errno);
    if (auto written = writeAll(file.get(), content); !written)
        return std::unexpected(written.error());
    barrier.add(file.get());
    barrier.add(folder);
    return info;
}

PendingTrashInfo::PendingTrashInfo(PendingTrashInfo&& other) noexcept
    : folder_(std::exchange(other.folder_, nullptr)),
      name_(std::move(other.name_)),
      identity_(other.identity_) {}

PendingTrashInfo::~PendingTrashInfo() {
    // An info file that cannot be removed does no harm: without its item, every listing of the Trash passes
    // it over.
    if (isInPlace())
        ::unlinkat(folder_->descriptor(), name_.c_str(), 0);
}

} // namespace orbel
