#include "Models/Wording.h"

#include "Util/Utf8.h"

#include <cmath>
#include <QLocale>

namespace orbel {

QString textOf(std::string_view bytes) {
    return QString::fromStdString(lossyUtf8(bytes));
}

QString countText(std::uint64_t count) {
    static const QLocale locale(QLocale::English, QLocale::UnitedStates);
    return locale.toString(static_cast<qulonglong>(count));
}

QString countOf(std::uint64_t count, const QString& one, const QString& many) {
    return countText(count) + QLatin1Char(' ') + (count == 1 ? one : many);
}

QString durationText(double seconds) {
    constexpr double minute = 60;
    if (seconds < minute)
        return QString::number(seconds, 'f', 1) + QStringLiteral(" s");
    const auto whole = static_cast<std::uint64_t>(std::floor(seconds));
    return QStringLiteral("%1 min %2 s").arg(countText(whole / 60)).arg(whole % 60);
}

} // namespace orbel
