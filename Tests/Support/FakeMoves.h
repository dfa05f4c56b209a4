#pragma once

#include "Delete/TrashOperations.h"
#include "Journal/RestoreOperations.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orbel::test {

/// A Trash that is a plain folder, with a hook at each point where the world may change.
class FakeTrash : public TrashOperations {
public:
    /// `files`: the folder that holds what was moved; made when missing.
    explicit FakeTrash(std::string files) : files_(std::move(files)) {}

    std::expected<TrashedItem, std::string> moveToTrash(const std::string& path,
                                                        const AboutToMove& aboutToMove) override;

    std::vector<std::string> asked; ///< every path it was to move, in order
    std::function<void(const std::string&path)> beforeAsking, beforeMoving;
    std::function<void(const std::string& trashPath)> afterMoving;
    std::optional<std::string> failure;      ///< the words with which a move fails
    std::optional<std::string> flushFailure; ///< of every move that is made

private:
    std::string files_;
};

/// Puts back as the program does, with the same hooks.
class FakeRestore : public RestoreOperations {
public:
    std::expected<RestoredItem, std::string> move(const std::string& from, const HeldFolder& folder,
                                                  const std::string& name) override;

    std::vector<std::string> asked; ///< every path it was to move from, in order
    std::function<void(const std::string&from)> beforeMoving, afterMoving;
    std::optional<std::string> failure;
    std::optional<std::string> flushFailure;
};

} // namespace orbel::test
