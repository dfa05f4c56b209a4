#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orbel::test {

/// A folder of its own for one test, removed with all that is in it. Every path given to it is relative to
/// it; the folders above what is made are made too. A call that fails throws, which fails the test.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// Its real path, without a trailing slash.
    const std::string& path() const { return path_; }

    /// The absolute path of what is called `relative` in it, whether it exists or not.
    std::string path(std::string_view relative) const;

    // Each makes one object and returns its absolute path.
    std::string folder(std::string_view relative) const;
    std::string file(std::string_view relative, std::string_view content = "x") const;
    std::string file(std::string_view relative, std::size_t bytes) const;
    std::string link(std::string_view relative, const std::string& target) const;
    std::string hardLink(std::string_view relative, std::string_view existing) const;

private:
    std::string path_;
};

/// The bytes that the item at this path, not what it links to, takes on its disk; throws when there is none.
std::uint64_t blocksOf(const std::string& path);

} // namespace orbel::test
