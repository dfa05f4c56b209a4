#include "Support/FakeMoves.h"

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

std::expected<std::string, std::string> FakeTrash::moveToTrash(const std::string& path,
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
    return target;
}

std::expected<void, std::string> FakeRestore::move(const std::string& from, const std::string& to) {
    asked.push_back(to);
    if (failure)
        return std::unexpected(*failure);
    call(beforeMoving, from);
    if (fs::exists(fs::symlink_status(to)))
        return std::unexpected("Something already exists there");
    fs::rename(from, to);
    call(afterMoving, to);
    return {};
}

} // namespace orbel::test
