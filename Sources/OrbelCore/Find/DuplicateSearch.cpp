#include "Find/DuplicateSearch.h"

#include "Find/ContentComparison.h"
#include "Find/FileSample.h"
#include "Platform/Parallel.h"
#include "Platform/Threads.h"
#include "Safety/PathCanonicalizer.h"

#include <algorithm>
#include <atomic>
#include <unordered_map>
#include <utility>

namespace orbel {

namespace {

/// A sample is two small requests to a cold disk, which answers faster the more of them it has.
constexpr std::size_t mostSamplingThreads = 16;

/// Cold, 8 threads read 1.4 times as fast as 2, and 16 no faster; warm, their number makes no difference from
/// the number of processors on. Each has its buffers, which is what bounds it from above.
std::size_t comparingThreads() {
    return std::clamp<std::size_t>(static_cast<std::size_t>(platform::activeProcessorCount()), 8, 16);
}

} // namespace

DuplicateSearch::DuplicateSearch(const FileTree& tree, std::vector<NodeIndex> candidates,
                                 const DuplicateFinder::Progress& progress,
                                 const DuplicateFinder::IsCancelled& isCancelled)
    : tree_(tree), report_(progress), isCancelled_(isCancelled) {
    keepSharedSizes(std::move(candidates));
}

void DuplicateSearch::keepSharedSizes(std::vector<NodeIndex> candidates) {
    std::ranges::stable_sort(candidates, std::ranges::greater(),
                             [&](NodeIndex node) { return tree_.logical(node); });
    for (std::size_t begin = 0, end = 0; begin < candidates.size(); begin = end) {
        const auto bytes = tree_.logical(candidates[begin]);
        while (end < candidates.size() && tree_.logical(candidates[end]) == bytes)
            ++end;
        if (end - begin < 2)
            continue;
        sizes_.push_back({.begin = files_.size(), .end = files_.size() + end - begin});
        for (std::size_t i = begin; i < end; ++i)
            files_.push_back({.node = candidates[i]});
        progress_.bytesToCompare += totalBytes(sizes_.back());
    }
}

std::vector<DuplicateGroup> DuplicateSearch::run() {
    if (report_)
        report_(progress_);
    // Each has a file open, and a few at a time are left to those beside.
    const auto threads = std::min(mostSamplingThreads, ContentComparison::openFileLimit(2));
    forEachTask(files_.size(), threads, [&](std::size_t file) {
        if (!isCancelled())
            sample(files_[file]);
    });
    planComparisons();
    compareAll();
    std::vector<DuplicateGroup> groups;
    for (auto& comparison : comparisons_)
        std::ranges::move(comparison.groups, std::back_inserter(groups));
    std::ranges::stable_sort(groups, std::ranges::greater(), &DuplicateGroup::removableBytes);
    return groups;
}

void DuplicateSearch::sample(File& file) const {
    platform::forbidMaterialisationOnThisThread();
    const auto path = tree_.path(file.node, PathCanonicalizer::shared());
    const auto stamp = FileStamp::of(path);
    if (!stamp || stamp->identity.inode != tree_.inode(file.node) || stamp->size != tree_.logical(file.node))
        return;
    file.stamp = *stamp;
    file.sample = sampleHash(path, *stamp);
}

void DuplicateSearch::planComparisons() {
    for (std::size_t i = 0; i < sizes_.size(); ++i) {
        const auto first = comparisons_.size();
        std::unordered_map<std::size_t, std::size_t> bySample;
        for (std::size_t file = sizes_[i].begin; file < sizes_[i].end; ++file) {
            const auto& hash = files_[file].sample;
            if (!hash)
                continue;
            const auto [known, isNew] = bySample.try_emplace(*hash, comparisons_.size());
            if (isNew)
                comparisons_.push_back({.size = i, .files = {}});
            comparisons_[known->second].files.push_back(file);
        }
        const auto planned = std::span(comparisons_).subspan(first);
        const auto alone = std::ranges::remove_if(
            planned, [](const Comparison& comparison) { return comparison.files.size() < 2; });
        comparisons_.erase(comparisons_.end() - std::ssize(alone), comparisons_.end());
        sizes_[i].comparisonsLeft = comparisons_.size() - first;
    }
}

void DuplicateSearch::compareAll() {
    {
        const std::lock_guard lock(finishing_);
        reportFinishedSizes();
    }
    const auto threads = std::min(comparingThreads(), comparisons_.size());
    std::atomic<std::size_t> next = 0;
    forEachTask(threads, threads, [&](std::size_t) {
        platform::forbidMaterialisationOnThisThread();
        ContentComparison reader(ContentComparison::openFileLimit(threads));
        for (auto i = next.fetch_add(1); i < comparisons_.size() && !isCancelled(); i = next.fetch_add(1)) {
            compare(comparisons_[i], reader);
            finish(comparisons_[i]);
        }
    });
}

void DuplicateSearch::compare(Comparison& comparison, ContentComparison& reader) const {
    std::vector<DuplicateFile> files;
    for (const std::size_t i : comparison.files) {
        const auto& [node, stamp, sample] = files_[i];
        files.push_back({.index = node,
                         .path = tree_.path(node, PathCanonicalizer::shared()),
                         .stamp = stamp,
                         .modified = tree_.modified(node),
                         .mayShareBlocks = tree_.flags(node).contains(NodeFlags::mayShareBlocks)});
    }
    for (const auto& cluster : reader.clusters(files, isCancelled_)) {
        if (cluster.size() < 2)
            continue;
        DuplicateGroup group{.bytes = files.front().stamp.size, .files = {}, .suggestedKeep = {}};
        for (const std::size_t member : cluster)
            group.files.push_back(std::move(files[member]));
        group.suggestedKeep = DuplicateFinder::suggestKeep(group.files);
        comparison.groups.push_back(std::move(group));
    }
}

void DuplicateSearch::finish(const Comparison& comparison) {
    const std::lock_guard lock(finishing_);
    Size& size = sizes_[comparison.size];
    --size.comparisonsLeft;
    size.groupsFound += static_cast<std::int64_t>(comparison.groups.size());
    reportFinishedSizes();
}

/// Sizes are reported in their order, however the threads come to their ends.
void DuplicateSearch::reportFinishedSizes() {
    for (; nextReported_ < sizes_.size() && sizes_[nextReported_].comparisonsLeft == 0; ++nextReported_) {
        if (isCancelled())
            return;
        progress_.bytesCompared += totalBytes(sizes_[nextReported_]);
        progress_.groupsFound += sizes_[nextReported_].groupsFound;
        if (report_)
            report_(progress_);
    }
}

std::uint64_t DuplicateSearch::totalBytes(const Size& size) const {
    return tree_.logical(files_[size.begin].node) * (size.end - size.begin);
}

} // namespace orbel
