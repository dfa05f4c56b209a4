#include "Models/Wording.h"

#include "Util/Utf8.h"

#include <cmath>
#include <QDateTime>
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

namespace {

QDateTime localTime(std::chrono::system_clock::time_point time) {
    return QDateTime::fromSecsSinceEpoch(std::chrono::system_clock::to_time_t(time));
}

/// "today at 09:12", or the day in that format and "at 09:12".
QString dayAndClock(std::chrono::system_clock::time_point time, std::chrono::system_clock::time_point now,
                    const QString& dayFormat) {
    const auto then = localTime(time);
    const auto clock = then.toString(QStringLiteral("HH:mm"));
    if (then.date() == localTime(now).date())
        return QStringLiteral("today at %1").arg(clock);
    const QLocale english(QLocale::English);
    return QStringLiteral("%1 at %2").arg(english.toString(then.date(), dayFormat), clock);
}

} // namespace

QString whenText(std::chrono::system_clock::time_point time, std::chrono::system_clock::time_point now) {
    return dayAndClock(time, now, QStringLiteral("'on' d MMMM"));
}

QString dateText(std::chrono::system_clock::time_point time, std::chrono::system_clock::time_point now) {
    return dayAndClock(time, now, QStringLiteral("d MMMM yyyy"));
}

QString dayText(std::chrono::sys_time<std::chrono::microseconds> time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
    return QLocale(QLocale::English)
        .toString(QDateTime::fromSecsSinceEpoch(seconds), QStringLiteral("d MMMM yyyy"));
}

} // namespace orbel
