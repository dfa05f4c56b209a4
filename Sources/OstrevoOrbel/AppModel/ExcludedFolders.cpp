#include "AppModel/ExcludedFolders.h"

#include "Util/FileUrl.h"

#include <algorithm>
#include <QStringList>
#include <utility>

namespace orbel {

namespace {

const QString excludedKey = QStringLiteral("excludedFolders");

} // namespace

ExcludedFolders::ExcludedFolders(QSettings& settings) : settings_(settings) {
    for (const auto& url : settings.value(excludedKey).toStringList()) {
        if (auto path = pathOfFileUrl(url.toStdString()); path && path->starts_with('/'))
            paths_.push_back(std::move(*path));
    }
    std::ranges::sort(paths_);
}

bool ExcludedFolders::contains(const std::string& path) const {
    return std::ranges::binary_search(paths_, path);
}

bool ExcludedFolders::add(const std::string& path) {
    const auto place = std::ranges::lower_bound(paths_, path);
    if (place != paths_.end() && *place == path)
        return false;
    paths_.insert(place, path);
    write();
    return true;
}

bool ExcludedFolders::remove(const std::string& path) {
    if (std::erase(paths_, path) == 0)
        return false;
    write();
    return true;
}

void ExcludedFolders::write() const {
    QStringList urls;
    for (const auto& path : paths_)
        urls << QString::fromStdString(fileUrl(path));
    settings_.setValue(excludedKey, urls);
}

} // namespace orbel
