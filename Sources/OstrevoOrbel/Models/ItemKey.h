#pragma once

#include <QString>
#include <Qt>
#include <string>
#include <string_view>

namespace orbel {

/// The role in which a list gives the key of a row's item. QML writes it as Qt.UserRole - 1.
constexpr int keyRole = Qt::UserRole - 1;

/// What tells an item on the disk in QML: its absolute path as a "file://" URL, which keeps every byte of a
/// path that is not valid UTF-8. Empty for an empty path.
QString keyOf(std::string_view path);

/// The path of a key; empty when it is not a key.
std::string pathOfKey(const QString& key);

} // namespace orbel
