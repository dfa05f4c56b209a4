#pragma once

#include <cstddef>
#include <string>

namespace orbel::test {

/// Takes rights from a folder or file for as long as it lives, so that the rest of the test can be cleaned
/// up.
class Restricted {
public:
    Restricted(std::string path, unsigned mode);
    ~Restricted();
    Restricted(const Restricted&) = delete;
    Restricted& operator=(const Restricted&) = delete;

private:
    std::string path_;
    unsigned before_;
};

/// Renames the folder `path` to `aside` and puts a link to `target` in its place.
void replaceByLink(const std::string& path, const std::string& aside, const std::string& target);

/// Uses up all space of the file system that holds `folder`: meant for a small one.
void fillDisk(const std::string& folder);

/// In a child process: no file may grow beyond this; a longer write is cut short and the next one fails.
void limitFileSize(std::size_t bytes);

} // namespace orbel::test
