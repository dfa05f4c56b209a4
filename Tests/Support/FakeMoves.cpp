#include "Support/FakeMoves.h"

#include "Journal/LiveRestore.h"
#include "Util/PathText.h"

#include <filesystem>

namespace orbel::test {

namespace fs = std::filesystem;

namespace {

template <class Hook>
void call(const Hook& hook, const std::string& path) {
    if (hook)
        hook(path);
}

} // namespace

std::expected<TrashedItem, std::string> FakeTrash::moveToTrash(const std::string& path,
                                                               const AboutToMove& aboutToMove) {
    asked.push_back(path);
    fs::create_directories(files_);
    const auto target = joinedPath(files_, lastPathComponent(path));
    call(beforeAsking, path);
    if (auto go = aboutToMove({.trashPath = target}); !go)
        return std::unexpected(go.error());
    if (failure)
        return std::unexpected(*failure);
    call(beforeMoving, path);
    fs::rename(path, target);
    call(afterMoving, target);
    return TrashedItem{.path = target, .flushFailure = flushFailure};
}

std::expected<RestoredItem, std::string> FakeRestore::move(const std::string& from, const HeldFolder& folder,
                                                           const std::string& name) {
    asked.push_back(from);
    if (failure)
        return std::unexpected(*failure);
    call(beforeMoving, from);
    auto moved = LiveRestore().move(from, folder, name);
    call(afterMoving, from);
    if (moved && flushFailure)
        moved->flushFailure = flushFailure;
    return moved;
}

} // namespace orbel::test
