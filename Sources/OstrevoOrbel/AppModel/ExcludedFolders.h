#pragma once

#include "Scan/Exclusions.h"

#include <QSettings>
#include <string>
#include <vector>

namespace orbel {

/// The folders that no scan of the window enters, kept in the settings. Used on the main thread.
class ExcludedFolders {
public:
    /// `settings` outlive this.
    explicit ExcludedFolders(QSettings& settings);

    /// Real paths in their visible form, ascending.
    const std::vector<std::string>& paths() const { return paths_; }
    Exclusions exclusions() const { return {.paths = paths_, .patterns = {}}; }
    bool contains(const std::string& path) const;

    // False when nothing changed.

    bool add(const std::string& path);
    bool remove(const std::string& path);

private:
    void write() const;

    QSettings& settings_;
    std::vector<std::string> paths_;
};

} // namespace orbel
