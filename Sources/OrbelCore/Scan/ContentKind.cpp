#include "Scan/ContentKind.h"

#include "Scan/ExtensionTable.h"

namespace orbel {

namespace {

using std::string_view;

constexpr bool isFileKind(ContentKind kind) {
    return static_cast<std::size_t>(kind) < allFileKinds.size();
}

constexpr bool isFinal(FileKind kind) {
    return kind != FileKind::other && kind != FileKind::document;
}

constexpr auto table = [] {
    ExtensionTable<ContentKind, 2048> listed;
    for (const ContentRow& row : contentTable) {
        if (isFileKind(row.kind))
            forEachExtension(row.extensions, [&](string_view extension) { listed[extension] = row.kind; });
    }
    for (const ContentRow& row : contentTable) {
        if (isFileKind(row.kind))
            continue;
        forEachExtension(row.extensions, [&](string_view extension) {
            const auto* const known = listed.find(extension);
            const bool isNew = known == nullptr || *known == ContentKind::document;
            ORBEL_CHECK(isNew, "an extension of two kinds");
            listed[extension] = row.kind;
        });
    }
    return listed;
}();

/// Without a version, a number or a date at its end, and without what parts them from it.
string_view withoutVersion(string_view name) {
    constexpr string_view separators = ".-_~";
    const auto last = name.find_last_not_of("0123456789.-_~");
    if (last == string_view::npos)
        return {};
    return name.substr(0, name.find_first_of(separators, last + 1));
}

} // namespace

string_view tellingExtension(string_view name) {
    const auto extension = extensionIn(name);
    if (table.find(extension) != nullptr)
        return extension;
    const auto plain = withoutVersion(name);
    if (plain.size() != name.size())
        return extensionIn(plain);
    return extension.find_first_of("-_") == string_view::npos ? extension : string_view{};
}

ContentKind contentKind(string_view name, FileKind kind) {
    return isFinal(kind) ? sameContent(kind) : contentKindOf(kind, tellingExtension(name));
}

ContentKind contentKindOf(FileKind kind, string_view extension) {
    const auto* const known = isFinal(kind) ? nullptr : table.find(extension);
    return known == nullptr ? sameContent(kind) : *known;
}

ContentKind classifyContent(string_view name, bool isFolder, bool isPackage) {
    return contentKind(name, classify(name, isFolder, isPackage));
}

ContentKind contentKind(const FileTree& tree, NodeIndex node) {
    return contentKind(tree.nameBytes(node), tree.kind(node));
}

} // namespace orbel
