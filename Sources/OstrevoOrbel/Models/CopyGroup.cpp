#include "Models/CopyGroup.h"

#include "Find/DuplicateFinder.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <QCoreApplication>

namespace orbel {

namespace {

std::string oldest(const std::vector<DuplicateFile>& files) {
    return std::ranges::min(files,
                            [](const DuplicateFile& a, const DuplicateFile& b) {
                                if (a.stamp.modifiedNanos != b.stamp.modifiedNanos)
                                    return a.stamp.modifiedNanos < b.stamp.modifiedNanos;
                                return a.path.size() != b.path.size() ? a.path.size() < b.path.size()
                                                                      : a.path < b.path;
                            })
        .path;
}

} // namespace

CopyGroup::CopyGroup(DuplicateGroup group, const FileTree& tree)
    : group_(std::move(group)), kind_(classifyContent(lastPathComponent(group_.suggestedKeep))) {
    const auto kept = std::ranges::find(group_.files, group_.suggestedKeep, &DuplicateFile::path);
    kept_ = kept == group_.files.end() ? 0 : static_cast<std::size_t>(kept - group_.files.begin());
    copies_.reserve(group_.files.size());
    for (const auto& file : group_.files)
        copies_.push_back({.bytes = tree.allocated(file.index)});
    for (std::size_t copy = 0; copy < size(); ++copy)
        byPath_.push_back(copy);
    std::ranges::sort(
        byPath_, {}, [this](std::size_t copy) -> const auto& { return file(copy).path; });
    settle();
}

std::vector<std::size_t> CopyGroup::order() const {
    auto order = byPath_;
    const auto kept = std::ranges::find(order, kept_);
    std::rotate(order.begin(), kept, kept + 1);
    return order;
}

bool CopyGroup::mayTick(std::size_t copy) const {
    return copy != kept_ && isShown() && copies_[copy].refusal.isEmpty() && !copies_[copy].isGone;
}

bool CopyGroup::matches(const TextMatcher& text, std::string_view home) const {
    return std::ranges::any_of(group_.files,
                               [&](const DuplicateFile& file) { return text.isInPath(file.path, home); });
}

std::unordered_set<std::string> CopyGroup::tickedPaths() const {
    std::unordered_set<std::string> paths;
    for (std::size_t i = 0; i < size(); ++i) {
        if (copies_[i].isTicked)
            paths.insert(file(i).path);
    }
    return paths;
}

bool CopyGroup::setTicked(std::size_t copy, bool ticked) {
    if (copies_[copy].isTicked == ticked || (ticked && !mayTick(copy)))
        return false;
    copies_[copy].isTicked = ticked;
    settle();
    return true;
}

bool CopyGroup::setAllTicked(bool ticked) {
    bool isChanged = false;
    for (std::size_t i = 0; i < size(); ++i) {
        if (copies_[i].isTicked == ticked || (ticked && !mayTick(i)))
            continue;
        copies_[i].isTicked = ticked;
        isChanged = true;
    }
    if (isChanged)
        settle();
    return isChanged;
}

void CopyGroup::keep(std::size_t copy) {
    if (copies_[copy].isGone)
        return;
    kept_ = copy;
    settle();
}

void CopyGroup::keepBy(KeepRule rule, std::string_view folder) {
    std::vector<DuplicateFile> eligible;
    const auto collect = [&](auto isWanted) {
        for (std::size_t i = 0; i < size(); ++i) {
            if (!copies_[i].isGone && isWanted(file(i).path))
                eligible.push_back(file(i));
        }
    };
    if (rule == KeepRule::folderFirst)
        collect([&](const std::string& path) { return isPathInside(path, folder); });
    if (eligible.empty())
        collect([](const std::string&) { return true; });
    if (eligible.empty())
        return;
    const auto path = rule == KeepRule::oldest ? oldest(eligible) : DuplicateFinder::suggestKeep(eligible);
    keep(static_cast<std::size_t>(std::ranges::find(group_.files, path, &DuplicateFile::path)
                                  - group_.files.begin()));
}

void CopyGroup::setGone(std::size_t copy, bool gone, KeepRule rule, std::string_view folder) {
    copies_[copy].isGone = gone;
    settle();
    if (copies_[kept_].isGone)
        keepBy(rule, folder);
}

void CopyGroup::setAnswer(std::size_t copy, const std::optional<DeletionItem>& item) {
    auto& asked = copies_[copy];
    asked.refusal = !item ? QCoreApplication::translate("CopyGroup", "It is not there any more")
                          : textOf(item->blockedReason.value_or(""));
    asked.note = item ? textOf(item->note.value_or("")) : QString();
    asked.bytes = item ? item->estimatedBytes : 0;
    settle();
}

void CopyGroup::settle() {
    figures_ = {};
    figures_.here = static_cast<std::size_t>(std::ranges::count(copies_, false, &Copy::isGone));
    for (std::size_t i = 0; i < size(); ++i) {
        auto& copy = copies_[i];
        if (!mayTick(i)) {
            copy.isTicked = false;
            continue;
        }
        const auto least = copy.note.isEmpty() ? copy.bytes : 0;
        figures_.most += copy.bytes;
        figures_.least += least;
        ++figures_.tickable;
        if (!copy.isTicked)
            continue;
        figures_.tickedMost += copy.bytes;
        figures_.tickedLeast += least;
        ++figures_.ticked;
    }
}

} // namespace orbel
