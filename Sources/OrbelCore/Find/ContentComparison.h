#pragma once

#include "Find/DuplicateGroup.h"
#include "Util/FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace orbel {

/// Divides files by their content, reading every byte of each at most once: all files that have been equal so
/// far are read side by side, chunk by chunk, and split where a chunk differs. A file that equals no other
/// any more is not read further.
///
/// One thread uses it. It keeps its buffers (`bufferBytes`) from one set of files to the next.
class ContentComparison {
public:
    /// The files of a cluster as their positions in what was given, in ascending order.
    using Cluster = std::vector<std::size_t>;

    /// Two of them stay in a processor's own cache; with 1 MiB a warm comparison takes a tenth longer.
    static constexpr std::size_t chunkBytes = std::size_t{128} * 1024;
    /// So many different contents of one chunk are distinguished at a time.
    static constexpr std::size_t mostVariants = 8;
    static constexpr std::size_t bufferBytes = (mostVariants + 1) * chunkBytes;

    /// `openFiles`: how many files may be open at once. A larger set is opened anew for each chunk instead.
    explicit ContentComparison(std::size_t openFiles) : openFiles_(openFiles) {}

    /// What each of `threads` may have open when they share the descriptors of this process fairly with what
    /// else it does.
    static std::size_t openFileLimit(std::size_t threads);

    /// The clusters in the order of their first files. A file alone in its cluster equals no other, or could
    /// not be read, or is not what its stamp says. `isCancelled`, which may be empty, is asked before every
    /// chunk; then only clusters that are complete are returned.
    std::vector<Cluster> clusters(std::span<const DuplicateFile> files,
                                  const std::function<bool()>& isCancelled);

private:
    using Buffer = std::unique_ptr<char[]>; // NOLINT(modernize-avoid-c-arrays): its elements need no values

    /// Files that are equal up to `offset`.
    struct Undecided {
        Cluster files;
        std::uint64_t offset;
    };
    /// One content of the current chunk, and the files that have it.
    struct Variant {
        Buffer chunk;
        std::size_t length = 0;
        Cluster files;
    };

    void split(const Undecided& undecided, const std::function<bool()>& isCancelled);
    void finishCluster(Cluster cluster);
    Variant* variantOf(std::size_t length);
    Variant* newVariant(std::size_t length);
    std::optional<std::size_t> readChunk(std::size_t file, std::uint64_t offset);
    FileDescriptor open(std::size_t file);

    std::size_t openFiles_;
    bool keepsOpen_ = true;
    std::span<const DuplicateFile> files_;
    std::vector<FileDescriptor> descriptors_; ///< per file; empty ones are opened when they are read
    std::vector<Undecided> undecided_;        ///< the last one is split next
    std::vector<Cluster> clusters_;
    Buffer chunk_;                  ///< what was read last
    std::vector<Variant> variants_; ///< the first `variantCount_` are in use, the others keep their buffers
    std::size_t variantCount_ = 0;
};

} // namespace orbel
