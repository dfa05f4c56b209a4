#pragma once

#include <QString>
#include <string>

namespace orbel {

/// The provider of the pictures of applications, in addresses.
inline constexpr auto iconProvider = QLatin1String("appicon");

/// What an Image shows for an icon: the path of a file, or a name for the desktop's icon themes.
/// Empty for none.
QString iconAddress(const std::string& icon);

/// The icon that an address of the provider ends in.
std::string iconAt(const QString& id);

} // namespace orbel
