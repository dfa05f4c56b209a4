#pragma once

#include "Find/InstalledApp.h"
#include "Util/Iso8601.h"

#include <expected>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace orbel {

class InstalledNames;

/// Which applications were seen as installed, and when last: what makes "removed since" a fact. A small file
/// of this user's own beside the journal. A damaged one, or another user's, is never believed; a damaged one
/// is replaced the next time. Any thread; of two that write at a time one is kept, and whole.
class SeenPackages {
public:
    /// An application that came with a package.
    struct App {
        std::string manager; ///< as InstalledApp::manager
        std::string package;
        std::string id;   ///< of its launcher
        std::string name; ///< for people
        std::string day;  ///< on which it was seen as installed last, "2025-01-31", in UTC

        bool operator==(const App&) const = default;
    };

    struct Content {
        std::vector<App> apps;
        /// What is not to be told any more although it is still there: "{kind}:{id}".
        std::set<std::string> dismissed{};

        /// Takes in what is installed now.
        void see(std::span<const InstalledApp> installed, Date now);
        /// Those of which the package is gone. What does not answer has removed nothing.
        std::vector<App> gone(const InstalledNames& installed) const;

        bool operator==(const Content&) const = default;
    };

    struct Reading {
        Content content;
        std::optional<std::string> failure{}; ///< why there is a file, and nothing of it is believed
    };

    /// The file at this absolute path; with an empty one nothing is ever kept. Creates nothing on disk.
    explicit SeenPackages(std::string path) : path_(std::move(path)) {}

    /// Its place in the folder where applications keep their data.
    static std::string defaultPath(const std::string& applicationSupportFolder);

    Reading read() const;
    /// Replaces the file (mode 0600), making the folder when missing. The error is for the user.
    std::expected<void, std::string> write(const Content& content) const;
    /// Leaves out what RemovedApp::key() says from now on, until it is gone or installed again.
    std::expected<void, std::string> dismiss(const std::string& key) const;

private:
    std::string path_;
};

} // namespace orbel
