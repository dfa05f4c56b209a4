#include "Support/TrashHome.h"

#include <algorithm>
#include <filesystem>

namespace orbel::test {

std::vector<std::string> contentsOfTrash(const std::string& trash) {
    std::vector<std::string> names;
    for (const std::string folder : {"files", "info"}) {
        std::error_code missing;
        for (const auto& entry : std::filesystem::directory_iterator(trash + "/" + folder, missing))
            names.push_back(folder + "/" + entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

void TrashHome::putIntoTrash(std::string_view name, const std::string& from, std::string_view content) const {
    file(".local/share/Trash/files/" + std::string(name), content);
    file(".local/share/Trash/info/" + std::string(name) + ".trashinfo",
         "[Trash Info]\nPath=" + from + "\nDeletionDate=2024-01-02T03:04:05\n");
}

} // namespace orbel::test
