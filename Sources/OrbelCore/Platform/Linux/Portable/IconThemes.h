#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orbel::platform {

/// Where icon themes lie, in order of precedence, and at last the folder of icons of no theme. `dataFolders`:
/// separated by ":"; empty means the usual ones.
std::vector<std::string> iconFolders(const std::string& home, std::string_view dataHome,
                                     std::string_view dataFolders);

/// The application icons of a desktop: those of its theme, of the themes that it inherits from, of the theme
/// that all share, and those of no theme. The themes' descriptions are read once, at construction; after that
/// it is immutable.
class IconThemes {
public:
    IconThemes(std::vector<std::string> folders, const std::string& theme);

    /// The file of an icon: `icon` itself when it is the path of a file, else the first of that name (PNG,
    /// SVG or XPM), in the first theme that has one, of the size that is nearest. Empty when there is none.
    std::string file(std::string_view icon, int size) const;

private:
    struct Folder {
        std::string path;
        int smallest = 0; ///< icons in it fit from this size to that, in pixels
        int largest = 0;
    };
    using Theme = std::vector<Folder>;

    void add(const std::string& name, std::vector<std::string>& known);

    std::vector<std::string> folders_;
    std::vector<Theme> themes_;
};

} // namespace orbel::platform
