#include "Support/Faults.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <sys/resource.h>
#include <sys/stat.h>

namespace orbel::test {

namespace {

unsigned modeOf(const std::string& path) {
    struct stat raw {};
    if (::stat(path.c_str(), &raw) != 0)
        throw std::runtime_error("no such file: " + path);
    return raw.st_mode & 07777;
}

} // namespace

Restricted::Restricted(std::string path, unsigned mode) : path_(std::move(path)), before_(modeOf(path_)) {
    ::chmod(path_.c_str(), mode);
}

Restricted::~Restricted() {
    ::chmod(path_.c_str(), before_);
}

void replaceByLink(const std::string& path, const std::string& aside, const std::string& target) {
    std::filesystem::rename(path, aside);
    std::filesystem::create_symlink(target, path);
}

void fillDisk(const std::string& folder) {
    for (int file = 0; file < 64; ++file) { // one file may be limited in size
        std::ofstream stream(folder + "/filler" + std::to_string(file), std::ios::binary);
        while (stream && stream.write(std::string(4096, 'x').data(), 4096).flush()) {
        }
    }
}

void limitFileSize(std::size_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{.rlim_cur = bytes, .rlim_max = bytes};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0)
        throw std::runtime_error("setrlimit");
}

} // namespace orbel::test
