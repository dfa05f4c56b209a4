#include "Models/ByteFigure.h"

#include "Models/Wording.h"
#include "Safety/ByteFormat.h"

namespace orbel {

QString ByteFigure::text() const {
    return value() + QLatin1Char(' ') + unit();
}

QString differenceText(qint64 bytes) {
    const auto count = static_cast<quint64>(bytes);
    const auto sign = bytes > 0 ? QStringLiteral("+") : bytes < 0 ? QStringLiteral("\u2212") : QString();
    return sign + ByteFigure(bytes < 0 ? -count : count).text();
}

QString ByteFigure::value() const {
    const auto value = ByteFormat::parts(bytes_).value;
    const auto point = value.find('.');
    const auto decimals = point == std::string::npos ? 0 : value.size() - point - 1;
    return decimalText(QString::fromStdString(value).toDouble(), static_cast<int>(decimals));
}

QString ByteFigure::unit() const {
    return QString::fromStdString(ByteFormat::parts(bytes_).unit);
}

QString ByteFigure::in(QString words) const {
    return words.replace(QString::fromStdString(ByteFormat::string(bytes_)), text());
}

} // namespace orbel
