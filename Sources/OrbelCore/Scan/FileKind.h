#pragma once

#include "Util/RawValue.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// What a node is to a person, derived from its name alone. The raw values are stored in the tree
/// and in exports.
enum class FileKind : std::uint8_t {
    folder = 0,
    video = 1,
    diskImage = 2,
    archive = 3,
    document = 4,
    application = 5,
    virtualMachine = 6,
    other = 7
};

inline constexpr std::array<FileKind, 8> allFileKinds{
    FileKind::folder,   FileKind::video,       FileKind::diskImage,      FileKind::archive,
    FileKind::document, FileKind::application, FileKind::virtualMachine, FileKind::other};

template <>
struct RawValues<FileKind> {
    static constexpr std::array<std::string_view, 8> names{
        "folder", "video", "diskImage", "archive", "document", "application", "virtualMachine", "other"};
};

/// The kind's name in the plural, as lists and legends show it.
std::string_view title(FileKind kind);

/// The kind of that raw value; `other` for an invalid value.
FileKind fileKindFromRawValue(std::uint8_t rawValue);

/// The kind of an entry of this name. Names are raw bytes; only ASCII letters are compared
/// regardless of case.
FileKind classify(std::string_view name, bool isFolder, bool isPackage);

/// Whether a directory of this name is shown as one item.
bool isPackage(std::string_view name);

/// The lower-cased text after the last dot. None when there is no dot, the last one is the first character,
/// nothing follows it, or more than 12 characters do.
std::optional<std::string> pathExtension(std::string_view name);

/// The kind that files of this lower-case extension have; absent when it is not a listed one.
std::optional<FileKind> kindByExtension(std::string_view extension);

} // namespace orbel
