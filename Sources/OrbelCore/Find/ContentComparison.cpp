#include "Find/ContentComparison.h"

#include "Platform/FileContent.h"
#include "Util/ReadAt.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <string_view>
#include <utility>

namespace orbel {

std::size_t ContentComparison::openFileLimit(std::size_t threads) {
    return std::max<std::size_t>(descriptorsForOneTask() / threads, 1);
}

std::vector<ContentComparison::Cluster>
ContentComparison::clusters(std::span<const DuplicateFile> files, const std::function<bool()>& isCancelled) {
    files_ = files;
    keepsOpen_ = files.size() <= openFiles_;
    descriptors_.clear();
    descriptors_.resize(files.size());
    undecided_.clear();
    clusters_.clear();

    Cluster all(files.size());
    for (std::size_t file = 0; file < files.size(); ++file)
        all[file] = file;
    if (all.size() > 1)
        undecided_.push_back({.files = std::move(all), .offset = 0});
    else if (!all.empty())
        clusters_.push_back(std::move(all));
    while (!undecided_.empty() && !(isCancelled && isCancelled())) {
        const auto next = std::move(undecided_.back());
        undecided_.pop_back();
        split(next, isCancelled);
    }
    descriptors_.clear();
    std::ranges::sort(clusters_, {}, [](const Cluster& cluster) { return cluster.front(); });
    return std::exchange(clusters_, {});
}

/// Reads the next chunk of files that are equal so far. Those with the same chunk stay together.
void ContentComparison::split(const Undecided& undecided, const std::function<bool()>& isCancelled) {
    variantCount_ = 0;
    // Files that have none of the variants, by a hash of their chunk. Two hashes that differ prove two chunks
    // different; those that are alike prove nothing, so such files are read once more, among themselves.
    std::map<std::size_t, Cluster> others;
    for (const std::size_t file : undecided.files) {
        if (isCancelled && isCancelled())
            return;
        const auto length = readChunk(file, undecided.offset);
        if (!length) {
            finishCluster({file});
            continue;
        }
        auto* variant = variantOf(*length);
        if (variant == nullptr)
            variant = newVariant(*length);
        if (variant != nullptr)
            variant->files.push_back(file);
        else
            others[std::hash<std::string_view>()({chunk_.get(), *length})].push_back(file);
    }
    const auto goOn = [&](Cluster& cluster, std::uint64_t offset) {
        if (cluster.size() > 1)
            undecided_.push_back({.files = std::move(cluster), .offset = offset});
        else
            finishCluster(std::move(cluster));
    };
    for (std::size_t i = 0; i < variantCount_; ++i) {
        if (variants_[i].length < chunkBytes)
            finishCluster(std::move(variants_[i].files)); // at the end of all of them
        else
            goOn(variants_[i].files, undecided.offset + chunkBytes);
    }
    for (auto& [hash, cluster] : others)
        goOn(cluster, undecided.offset);
}

void ContentComparison::finishCluster(Cluster cluster) {
    for (const std::size_t file : cluster)
        descriptors_[file].reset();
    clusters_.push_back(std::move(cluster));
}

/// The variant that the chunk just read has.
ContentComparison::Variant* ContentComparison::variantOf(std::size_t length) {
    const auto used = std::span(variants_).first(variantCount_);
    const auto found = std::ranges::find_if(used, [&](const Variant& variant) {
        return variant.length == length && std::memcmp(variant.chunk.get(), chunk_.get(), length) == 0;
    });
    return found != used.end() ? &*found : nullptr;
}

/// Makes a variant of the chunk just read, whose buffer it takes; none when there are too many.
ContentComparison::Variant* ContentComparison::newVariant(std::size_t length) {
    if (variantCount_ == mostVariants)
        return nullptr;
    if (variantCount_ == variants_.size())
        variants_.emplace_back();
    Variant& variant = variants_[variantCount_++];
    std::swap(variant.chunk, chunk_);
    variant.length = length;
    variant.files.clear();
    return &variant;
}

/// Reads the file's chunk at `offset` into `chunk_` and returns its length: less than `chunkBytes` only where
/// the file ends.
std::optional<std::size_t> ContentComparison::readChunk(std::size_t file, std::uint64_t offset) {
    auto& descriptor = descriptors_[file];
    if (!descriptor)
        descriptor = open(file);
    if (!descriptor)
        return std::nullopt;
    if (!chunk_)
        chunk_ = std::make_unique_for_overwrite<char[]>(chunkBytes); // NOLINT(modernize-avoid-c-arrays)
    const auto length = readAt(descriptor.get(), {chunk_.get(), chunkBytes}, offset);
    if (!keepsOpen_)
        descriptor.reset();
    return length;
}

FileDescriptor ContentComparison::open(std::size_t file) {
    auto content = platform::FileContent::open(files_[file].path);
    if (!content && keepsOpen_ && (content.error() == EMFILE || content.error() == ENFILE)) {
        // Other threads took the descriptors that were meant for these files.
        keepsOpen_ = false;
        for (auto& descriptor : descriptors_)
            descriptor.reset();
        content = platform::FileContent::open(files_[file].path);
    }
    if (!content || !files_[file].stamp.isUnchanged(FileStamp::of(content->status)))
        return {};
    if (keepsOpen_)
        content->expectOneReading();
    return std::move(content->descriptor);
}

} // namespace orbel
