#pragma once

#include "Delete/TrashOperations.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

namespace orbel {

/// A Trash that counts what is moved to it, so that a batch which is under way can tell, at each item,
/// whether the one before it moved. The count may be read by any thread.
class CountedTrash final : public TrashOperations {
public:
    explicit CountedTrash(std::shared_ptr<TrashOperations> trash) : trash_(std::move(trash)) {}

    std::uint64_t moves() const { return moves_; }

    std::expected<TrashedItem, std::string> moveToTrash(const std::string& path,
                                                        const AboutToMove& aboutToMove) override {
        auto moved = trash_->moveToTrash(path, aboutToMove);
        if (moved)
            ++moves_;
        return moved;
    }

private:
    std::shared_ptr<TrashOperations> trash_;
    std::atomic<std::uint64_t> moves_ = 0;
};

} // namespace orbel
