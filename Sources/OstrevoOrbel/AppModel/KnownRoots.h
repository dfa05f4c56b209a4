#pragma once

#include <cstdint>
#include <optional>
#include <QSettings>
#include <string>
#include <vector>

namespace orbel {

/// What was measured before, the latest first, with how many entries it had; kept in the settings. Used on
/// the main thread.
class KnownRoots {
public:
    struct Root {
        std::string path;          ///< as it was measured
        std::uint64_t entries = 0; ///< of the last complete scan; 0: there was none

        bool operator==(const Root&) const = default;
    };

    /// `settings` outlive this. `wholeDisk` is known beside the folders, and never one of them.
    KnownRoots(QSettings& settings, std::string wholeDisk);

    /// Of the last complete scan of this root; absent when there was none.
    std::optional<std::uint64_t> entriesOf(const std::string& root) const;
    /// Has been measured just now. `entries` are absent when the scan was stopped.
    void note(const std::string& root, std::optional<std::uint64_t> entries);

    /// What is left out of measuring has changed at this path: what holds it has another number of entries.
    void forgetEntries(const std::string& path);

    /// What was measured last, the whole disk or a folder.
    std::optional<std::string> latest() const;
    /// The folders that were measured, the latest first: eight at most.
    std::vector<std::string> folders() const;
    void forgetFolders();

private:
    void write() const;

    QSettings& settings_;
    std::string wholeDisk_;
    std::vector<Root> roots_;
};

} // namespace orbel
