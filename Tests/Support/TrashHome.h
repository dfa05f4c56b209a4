#pragma once

#include "Support/TemporaryFolder.h"

#include <string>
#include <string_view>
#include <vector>

namespace orbel::test {

/// What is in a Trash, sorted: "files/name" and "info/name.trashinfo"; nothing when there is no Trash.
std::vector<std::string> contentsOfTrash(const std::string& trash);

/// A home folder of a test with its Trash, which does not exist until something makes it.
class TrashHome : public TemporaryFolder {
public:
    std::string trash() const { return path(".local/share/Trash"); }
    std::string trashed(std::string_view name) const { return trash() + "/files/" + std::string(name); }
    std::string infoOf(std::string_view name) const {
        return trash() + "/info/" + std::string(name) + ".trashinfo";
    }

    std::vector<std::string> contents() const { return contentsOfTrash(trash()); }

    /// Puts a file into the Trash as a program that keeps to the desktop's rules would have, as if it came
    /// from `from`.
    void putIntoTrash(std::string_view name, const std::string& from, std::string_view content = "x") const;
};

} // namespace orbel::test
