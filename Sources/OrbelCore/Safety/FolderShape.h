#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orbel {

/// What a folder is as a whole, recognised by the names in it. No part of such a folder means anything alone:
/// an empty folder in it is there for a purpose.
struct FolderShape {
    struct Part {
        std::string_view name; ///< empty for none
        bool isFolder = false;
    };

    std::string_view meaning; ///< as in "part of {meaning}"
    /// All of these lie in the folder. The first one is rare, so it tells where to look closer.
    std::array<Part, 5> parts;
    /// A name in it begins with one of these; unless all are empty.
    std::array<std::string_view, 3> beginnings{};
    std::string_view insideOf{}; ///< what the folder above it is called; empty for any name
    bool isProtected = true;     ///< nothing of it is moved

    /// The names in one folder, wherever they come from.
    class Names {
    public:
        Names() = default;
        Names(const Names&) = delete;
        Names& operator=(const Names&) = delete;
        virtual ~Names() = default;
        virtual bool has(const Part& part) const = 0;
        virtual bool hasBeginning(std::string_view beginning) const = 0;
    };

    /// Whether a folder with these names, in a folder called `above`, is of this shape.
    bool matches(const Names& names, std::string_view above) const;

    static std::span<const FolderShape> all();
    static std::span<const FolderShape> allProtected();
    static const FolderShape& gitRepository();

    /// The first of these shapes that the folder at this path has on the disk; null when it has none or is no
    /// folder. Looks at names, never into files.
    static const FolderShape* at(const std::string& folder, std::span<const FolderShape> among = all());
};

} // namespace orbel
