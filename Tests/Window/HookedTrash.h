#pragma once

#include "Delete/LiveTrash.h"

#include <functional>
#include <string>

namespace orbel::test {

/// The live Trash, with a hook before each move, on the thread that moves.
class HookedTrash final : public TrashOperations {
public:
    explicit HookedTrash(const std::string& folder) : trash_(folder) {}

    std::expected<TrashedItem, std::string> moveToTrash(const std::string& path,
                                                        const AboutToMove& aboutToMove) override {
        if (beforeMoving)
            beforeMoving(path);
        return trash_.moveToTrash(path, aboutToMove);
    }

    std::function<void(const std::string& path)> beforeMoving;

private:
    LiveTrash trash_;
};

} // namespace orbel::test
