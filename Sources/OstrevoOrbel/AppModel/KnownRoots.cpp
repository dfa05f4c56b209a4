#include "AppModel/KnownRoots.h"

#include "Util/FileUrl.h"
#include "Util/PathText.h"

#include <algorithm>
#include <QStringList>
#include <utility>

namespace orbel {

namespace {

const QString rootsKey = QStringLiteral("measured");
constexpr std::size_t mostFolders = 8;

/// "1284301 file:///home/mira"
std::optional<KnownRoots::Root> rootIn(const QString& line) {
    const auto space = line.indexOf(QLatin1Char(' '));
    bool isNumber = false;
    const auto entries = line.left(space).toULongLong(&isNumber);
    auto path = pathOfFileUrl(line.mid(space + 1).toStdString());
    if (!isNumber || !path || path->empty())
        return std::nullopt;
    return KnownRoots::Root{.path = std::move(*path), .entries = entries};
}

} // namespace

KnownRoots::KnownRoots(QSettings& settings, std::string wholeDisk)
    : settings_(settings), wholeDisk_(std::move(wholeDisk)) {
    for (const auto& line : settings.value(rootsKey).toStringList()) {
        if (auto root = rootIn(line))
            roots_.push_back(std::move(*root));
    }
}

std::optional<std::uint64_t> KnownRoots::entriesOf(const std::string& root) const {
    const auto found = std::ranges::find(roots_, root, &Root::path);
    return found == roots_.end() || found->entries == 0 ? std::nullopt : std::optional(found->entries);
}

void KnownRoots::note(const std::string& root, std::optional<std::uint64_t> entries) {
    Root noted{.path = root, .entries = entries ? *entries : entriesOf(root).value_or(0)};
    std::erase_if(roots_, [&](const Root& known) { return known.path == root; });
    roots_.insert(roots_.begin(), std::move(noted));
    std::size_t folders = 0;
    std::erase_if(roots_,
                  [&](const Root& known) { return known.path != wholeDisk_ && ++folders > mostFolders; });
    write();
}

void KnownRoots::forgetEntries(const std::string& path) {
    for (auto& root : roots_) {
        if (isPathInside(path, root.path))
            root.entries = 0;
    }
    write();
}

std::optional<std::string> KnownRoots::latest() const {
    return roots_.empty() ? std::nullopt : std::optional(roots_.front().path);
}

std::vector<std::string> KnownRoots::folders() const {
    std::vector<std::string> folders;
    for (const auto& root : roots_) {
        if (root.path != wholeDisk_)
            folders.push_back(root.path);
    }
    return folders;
}

void KnownRoots::forgetFolders() {
    std::erase_if(roots_, [this](const Root& known) { return known.path != wholeDisk_; });
    write();
}

void KnownRoots::write() const {
    QStringList lines;
    for (const auto& root : roots_)
        lines << QString::number(root.entries) + QLatin1Char(' ')
                     + QString::fromStdString(fileUrl(root.path));
    settings_.setValue(rootsKey, lines);
}

} // namespace orbel
