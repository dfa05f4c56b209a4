#include "Models/ItemKey.h"

#include "Util/FileUrl.h"

namespace orbel {

QString keyOf(std::string_view path) {
    return path.empty() ? QString() : QString::fromStdString(fileUrl(path));
}

std::string pathOfKey(const QString& key) {
    return pathOfFileUrl(key.toStdString()).value_or(std::string());
}

} // namespace orbel
