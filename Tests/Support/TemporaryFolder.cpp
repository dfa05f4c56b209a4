#include "Support/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <sys/stat.h>

namespace orbel::test {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (fs::canonical(fs::temp_directory_path()) / "orbel-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no temporary folder: " + pattern);
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code
        ignored; // what a test locked away may stay behind; the test has already said what it had to say
    fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::path(std::string_view relative) const {
    return path_ + "/" + std::string(relative);
}

std::string TemporaryFolder::folder(std::string_view relative) const {
    fs::create_directories(path(relative));
    return path(relative);
}

std::string TemporaryFolder::file(std::string_view relative, std::string_view content) const {
    const fs::path place = path(relative);
    fs::create_directories(place.parent_path());
    std::ofstream stream(place, std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + place.string());
    return place.string();
}

std::string TemporaryFolder::file(std::string_view relative, std::size_t bytes) const {
    return file(relative, std::string(bytes, 'x'));
}

std::string TemporaryFolder::link(std::string_view relative, const std::string& target) const {
    const fs::path place = path(relative);
    fs::create_directories(place.parent_path());
    fs::create_symlink(target, place);
    return place.string();
}

std::string TemporaryFolder::hardLink(std::string_view relative, std::string_view existing) const {
    const fs::path place = path(relative);
    fs::create_directories(place.parent_path());
    fs::create_hard_link(path(existing), place);
    return place.string();
}

std::uint64_t blocksOf(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0)
        throw std::runtime_error("nothing at " + path);
    return static_cast<std::uint64_t>(status.st_blocks) * 512;
}

} // namespace orbel::test
