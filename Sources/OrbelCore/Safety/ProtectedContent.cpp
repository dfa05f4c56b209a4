#include "Safety/ProtectedContent.h"

#include "Safety/FolderShape.h"
#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

namespace orbel {

namespace {

enum class Where : std::uint8_t { whole, beginning, ending };

struct NameRule {
    Where where;
    std::string_view text;
    std::string_view meaning;
};

constexpr std::string_view passwords = "passwords of a browser";
constexpr std::string_view privateKey = "a private key";
constexpr std::string_view backup = "part of a backup";

constexpr auto rules = std::to_array<NameRule>({
    {Where::whole, "key4.db", passwords},
    {Where::whole, "key3.db", passwords},
    {Where::whole, "logins.json", passwords},
    {Where::whole, "Login Data", passwords},
    {Where::ending, ".kdbx", "a password store"},
    {Where::ending, ".kdb", "a password store"},
    {Where::whole, "wallet.dat", "a wallet"},
    {Where::whole, "secring.gpg", privateKey},
    {Where::whole, "private-keys-v1.d", "private keys"},
    {Where::whole, "id_rsa", privateKey},
    {Where::whole, "id_ecdsa", privateKey},
    {Where::whole, "id_ed25519", privateKey},
    {Where::ending, ".ppk", privateKey},
    {Where::ending, ".keystore", "a key store"},
    {Where::ending, ".jks", "a key store"},
    {Where::whole, "credentials.tfrc.json", "credentials"},
    {Where::whole, "digikam4.db", "the database of a photo library"},
    {Where::beginning, "duplicity-full", backup},
    {Where::beginning, "duplicity-inc", backup},
});

/// What lies in folders called so, one inside the other, is made from something else.
constexpr auto testDataFolders = std::to_array<std::array<std::string_view, 3>>(
    {{"node_modules"}, {"target"}, {"site-packages"}, {"go", "pkg", "mod"}, {".cargo", "registry"}});

constexpr std::size_t pairOf(char one, char other) {
    return static_cast<std::size_t>(static_cast<unsigned char>(one)) * 256
           + static_cast<unsigned char>(other);
}

/// Whether a rule's name ends in these two bytes; almost every name is told apart by them.
constexpr auto endsARule = [] {
    std::array<bool, 65'536> ends{};
    for (const auto& rule : rules)
        if (rule.where != Where::beginning)
            ends[pairOf(rule.text[rule.text.size() - 2], rule.text.back())] = true;
    return ends;
}();

bool mayFollowARule(std::string_view name) {
    return name.size() >= 2
           && (endsARule[pairOf(name[name.size() - 2], name.back())] || name.starts_with("duplicity-"));
}

bool follows(std::string_view name, const NameRule& rule) {
    switch (rule.where) {
    case Where::whole:
        return name == rule.text;
    case Where::beginning:
        return name.starts_with(rule.text);
    case Where::ending:
        break;
    }
    return name.ends_with(rule.text);
}

} // namespace

std::optional<std::string_view> ProtectedContent::meaningOf(std::string_view name) {
    if (!mayFollowARule(name))
        return std::nullopt;
    const auto found =
        std::ranges::find_if(rules, [name](const NameRule& rule) { return follows(name, rule); });
    return found == rules.end() ? std::nullopt : std::optional(found->meaning);
}

bool ProtectedContent::isTestData(std::string_view path) {
    const auto names = pathComponents(path);
    return std::ranges::any_of(testDataFolders, [&](const auto& folders) {
        const auto end = std::ranges::find(folders, std::string_view());
        return !std::ranges::search(names, std::ranges::subrange(folders.begin(), end)).empty();
    });
}

std::optional<std::string> ProtectedContent::reason(const std::string& real, bool isDirectory,
                                                    const std::string& homePath, KnownShapes& known) {
    if (!isPathInside(real, homePath) || isTestData(parentPath(real).substr(homePath.size())))
        return std::nullopt;
    const auto shapeOf = [&](const std::string& folder) {
        const auto [shape, isNew] = known.try_emplace(folder);
        if (isNew)
            shape->second = FolderShape::at(folder, FolderShape::allProtected());
        return shape->second;
    };
    const auto isA = [](std::string_view meaning) { return "Protected: " + std::string(meaning); };
    const auto inParentheses = [&](const std::string& path) {
        return " (" + tildePath(path, homePath) + ")";
    };

    std::string path = homePath;
    for (const auto name : pathComponents(std::string_view(real).substr(homePath.size()))) {
        path = joinedPath(path, name);
        const bool isItself = path == real;
        if (const auto meaning = meaningOf(name))
            return isA(*meaning) + (isItself ? "" : inParentheses(path));
        if (isItself && !isDirectory)
            break;
        if (const auto* shape = shapeOf(path))
            return isItself ? isA(shape->meaning)
                            : isA("part of " + std::string(shape->meaning)) + inParentheses(path);
    }
    return std::nullopt;
}

} // namespace orbel
