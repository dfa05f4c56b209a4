#include "Models/Wording.h"

#include "Util/ShownText.h"

#include <cmath>
#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

namespace orbel {

QString textOf(std::string_view bytes) {
    return QString::fromStdString(isolatedText(visibleText(bytes)));
}

QString visibleTextOf(std::string_view bytes) {
    return QString::fromStdString(visibleText(bytes));
}

QString isolated(const QString& visible) {
    return QString::fromStdString(isolatedText(visible.toStdString()));
}

QString withoutIsolates(QString text) {
    // Of what a name itself holds of them, none is left: they are written out.
    static const QRegularExpression isolates(QStringLiteral("[\u200E\u2066\u2068\u2069]"));
    return text.remove(isolates);
}

namespace {

bool isDesktopWithoutLocale() {
    return QLocale().language() == QLocale::C;
}

QLocale shownLocale() {
    return isDesktopWithoutLocale() ? QLocale(QLocale::English, QLocale::UnitedStates) : QLocale();
}

} // namespace

QString countText(std::uint64_t count) {
    auto locale = shownLocale();
    const bool groupsFour = locale.toString(1000).size() > 4;
    const auto separator = locale.groupSeparator();
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    auto digits = locale.toString(static_cast<qulonglong>(count));
    // Where four digits are not parted, Qt 6.4 does not part the first four of seven either.
    if (digits.size() > 4 || groupsFour)
        for (auto place = digits.size() - 3; place > 0; place -= 3)
            digits.insert(place, separator);
    return digits;
}

QString decimalText(double value, int decimals) {
    return shownLocale().toString(value, 'f', decimals);
}

QString countOf(std::uint64_t count, const QString& one, const QString& many) {
    return countText(count) + QLatin1Char(' ') + (count == 1 ? one : many);
}

QString durationText(double seconds) {
    constexpr double minute = 60;
    if (seconds < minute)
        return decimalText(seconds, 1) + QStringLiteral(" s");
    const auto whole = static_cast<std::uint64_t>(std::floor(seconds));
    return QStringLiteral("%1 min %2 s").arg(countText(whole / 60), countText(whole % 60));
}

namespace {

template <class Duration>
QDateTime localTime(std::chrono::time_point<std::chrono::system_clock, Duration> time) {
    return QDateTime::fromSecsSinceEpoch(
        std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count());
}

/// The locale's long form of a day, without the day of the week.
QString dayForm() {
    if (isDesktopWithoutLocale())
        return QStringLiteral("d MMMM yyyy");
    static const QRegularExpression weekday(QStringLiteral("^dddd[,،]?\\s*|[,،]?\\s*dddd$"));
    return QLocale().dateFormat(QLocale::LongFormat).remove(weekday);
}

/// The same without the year, and without what ties the year to the rest.
QString dayOfYearForm() {
    static const QRegularExpression yearFirst(QStringLiteral("^[^dM]*y+('[^']*'|[^dM'])*"));
    static const QRegularExpression yearLast(QStringLiteral("(?<=[dM]|[dM]\\.)('[^']*'|[^dM'])*y.*$"));
    return dayForm().remove(yearFirst).remove(yearLast);
}

QString dayIn(const QDateTime& time, const QString& form) {
    return isolated(shownLocale().toString(time.date(), form));
}

QString clockIn(const QDateTime& time) {
    return isolated(isDesktopWithoutLocale() ? time.toString(QStringLiteral("HH:mm"))
                                             : QLocale().toString(time.time(), QLocale::ShortFormat));
}

QString todayAt(const QDateTime& time) {
    return QStringLiteral("today at %1").arg(clockIn(time));
}

bool isSameDay(const QDateTime& time, std::chrono::system_clock::time_point now) {
    return time.date() == localTime(now).date();
}

/// The year only where it is another one.
QString recentDay(const QDateTime& time, std::chrono::system_clock::time_point now) {
    return dayIn(time, time.date().year() == localTime(now).date().year() ? dayOfYearForm() : dayForm());
}

QString dayAndClock(const QDateTime& time) {
    return QStringLiteral("%1 at %2").arg(dayIn(time, dayForm()), clockIn(time));
}

} // namespace

QString whenText(std::chrono::system_clock::time_point time, std::chrono::system_clock::time_point now) {
    const auto then = localTime(time);
    if (isSameDay(then, now))
        return todayAt(then);
    if (then.date().addDays(1) == localTime(now).date())
        return QStringLiteral("yesterday at %1").arg(clockIn(then));
    return QStringLiteral("on %1 at %2").arg(recentDay(then, now), clockIn(then));
}

QString dateText(std::chrono::system_clock::time_point time, std::chrono::system_clock::time_point now) {
    const auto then = localTime(time);
    return isSameDay(then, now) ? todayAt(then) : dayAndClock(then);
}

QString dayAndClockText(std::chrono::sys_seconds time) {
    return dayAndClock(localTime(time));
}

QString dayText(std::chrono::sys_time<std::chrono::microseconds> time) {
    return dayIn(localTime(time), dayForm());
}

QString recentDayText(std::chrono::sys_time<std::chrono::microseconds> time,
                      std::chrono::system_clock::time_point now) {
    const auto then = localTime(time);
    return isSameDay(then, now) ? todayAt(then) : recentDay(then, now);
}

QString clockText(std::chrono::sys_time<std::chrono::microseconds> time) {
    const auto then = localTime(time);
    if (isDesktopWithoutLocale())
        return then.toString(QStringLiteral("HH:mm:ss"));
    // The locale's form with seconds names the time zone too.
    static const QRegularExpression zone(QStringLiteral("^\\(?t+\\)?\\s*|[\\s,]*\\(?t+\\)?$"));
    return isolated(QLocale().toString(then.time(), QLocale().timeFormat(QLocale::LongFormat).remove(zone)));
}

} // namespace orbel
