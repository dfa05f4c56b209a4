#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::platform {

/// The text of a .desktop file, or of another file of that form: groups of keys with values. Nothing in a
/// file makes reading it fail; a malformed line is passed over. Immutable.
class DesktopEntry {
public:
    static constexpr std::string_view mainGroup = "Desktop Entry";

    /// Of several lines with one key in one group the last counts.
    static DesktopEntry parse(std::string_view text);

    /// Absent when there is no regular file of at most 1 MiB, or it has no main group. Never blocks.
    static std::optional<DesktopEntry> read(const std::string& path);

    /// The groups' names in the order of the file, each once.
    const std::vector<std::string>& groups() const { return groupNames_; }

    /// A value with its escapes (\s \n \t \r \\) resolved; absent when there is no such key, or when the
    /// value holds a zero byte, which no path and no argument can.
    std::optional<std::string> text(std::string_view key, std::string_view group = mainGroup) const;
    /// Only "true" is true.
    bool isTrue(std::string_view key, std::string_view group = mainGroup) const;

private:
    using Values = std::map<std::string, std::string, std::less<>>;

    std::vector<std::string> groupNames_;
    std::map<std::string, Values, std::less<>> groups_;
};

} // namespace orbel::platform
