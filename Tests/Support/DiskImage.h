#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace orbel::test {

// File systems in image files, for what a test has to do to a whole disk. `kind` is "ext4", "xfs" or "btrfs".
// A call that fails throws. Mounting needs root, and belongs into a child process with its own mount table,
// whose mounts and loop devices go with it.

/// Why no such image can be made and mounted here; absent when it can.
std::optional<std::string> reasonAgainstImages(const std::string& kind);

/// Makes an empty file system in a new, sparse file. `bytes` is its apparent size; by default the smallest
/// that the kind allows.
void makeImage(const std::string& kind, const std::string& image, std::uint64_t bytes = 0);

/// Mounts it on a folder. It writes by itself as seldom as can be set, so that the image holds
/// what was flushed.
void mountImage(const std::string& kind, const std::string& image, const std::string& folder);
void unmount(const std::string& folder);

/// Copies the image as it is now. Of a mounted one that is what a power cut at this moment would leave:
/// nothing is flushed for the copy.
void copyImage(const std::string& from, const std::string& to);

/// Runs `body` in a child process whose temporary folders lie on an ext4 in memory, where flushes cost little
/// and no other program's data is flushed along. Where that cannot be mounted, `body` simply runs.
void onQuickDisk(const std::function<void()>& body);

} // namespace orbel::test
