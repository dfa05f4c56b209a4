#include "Safety/SteamLibrary.h"

#include "Util/PathText.h"
#include "Util/ReadFile.h"
#include "Util/ShownText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <system_error>

namespace orbel {

namespace {

constexpr std::uint64_t mostManifestBytes = 256 * 1024;
constexpr std::size_t mostManifests = 5000;
constexpr std::size_t mostIdDigits = 20;

/// Takes apart `"key" "value"` and `"key" { … }`, whose texts may be escaped by backslashes.
class ManifestReader {
public:
    explicit ManifestReader(std::string_view text) : rest_(text) {}

    /// The next text, "{" or "}"; absent at the end, and at what can be none of these.
    std::optional<std::string> next() {
        for (;;) {
            rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size()));
            if (!rest_.starts_with("//"))
                break;
            rest_.remove_prefix(std::min(rest_.find('\n'), rest_.size()));
        }
        if (rest_.empty())
            return std::nullopt;
        const char first = rest_.front();
        rest_.remove_prefix(1);
        isText_ = first == '"';
        if (isText_)
            return text();
        return first == '{' || first == '}' ? std::optional(std::string(1, first)) : std::nullopt;
    }

    /// Whether the last was a text, even one that is a brace.
    bool isText() const { return isText_; }

private:
    std::optional<std::string> text() {
        std::string text;
        while (!rest_.empty()) {
            const char byte = rest_.front();
            rest_.remove_prefix(1);
            if (byte == '"')
                return text;
            if (byte == '\\' && !rest_.empty()) {
                text += rest_.front() == 'n' ? '\n' : rest_.front() == 't' ? '\t' : rest_.front();
                rest_.remove_prefix(1);
            } else {
                text += byte;
            }
        }
        return std::nullopt;
    }

    std::string_view rest_;
    bool isText_ = false;
};

bool isAppId(std::string_view text) {
    return !text.empty() && text.size() <= mostIdDigits
           && std::ranges::all_of(text, [](char byte) { return byte >= '0' && byte <= '9'; });
}

std::vector<SteamGame> gamesIn(const std::string& steamapps) {
    std::vector<SteamGame> games;
    std::error_code error;
    std::filesystem::directory_iterator entries(steamapps, error);
    for (; !error && entries != std::filesystem::directory_iterator() && games.size() < mostManifests;
         entries.increment(error)) {
        const auto name = entries->path().filename().string();
        if (!name.starts_with("appmanifest_") || !name.ends_with(".acf"))
            continue;
        const auto text = readRegularFile(entries->path().string(), mostManifestBytes);
        if (auto game = steamGameIn(text.value_or("")))
            games.push_back(*std::move(game));
    }
    return games;
}

} // namespace

std::optional<SteamGame> steamGameIn(std::string_view manifest) {
    ManifestReader reader(manifest);
    SteamGame game;
    std::size_t depth = 0;
    while (const auto key = reader.next()) {
        if (!reader.isText()) {
            if (*key == "{")
                ++depth;
            else if (depth-- == 0)
                break;
            continue;
        }
        const auto value = reader.next();
        if (!value)
            break;
        if (!reader.isText()) {
            if (*value == "}")
                break;
            ++depth;
        } else if (depth == 1 && *key == "appid") {
            game.appId = *value;
        } else if (depth == 1 && *key == "name") {
            game.name = visibleText(*value);
        } else if (depth == 1 && *key == "installdir") {
            game.folder = *value;
        }
    }
    return isAppId(game.appId) && !game.name.empty() && !game.folder.empty() ? std::optional(std::move(game))
                                                                             : std::nullopt;
}

const SteamGame* steamGameAt(const std::string& steamapps, std::string_view folder, SteamLibraries& known) {
    const auto [library, isNew] = known.try_emplace(steamapps);
    if (isNew)
        library->second = gamesIn(steamapps);
    const auto game = std::ranges::find(library->second, folder, &SteamGame::folder);
    return game == library->second.end() ? nullptr : &*game;
}

} // namespace orbel
