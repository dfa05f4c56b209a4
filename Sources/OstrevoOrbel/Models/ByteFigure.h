#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// A count of bytes as a screen binds to it: the number for lengths and comparisons, the words for people.
/// "63.6 GB" is also given in two, for screens that set number and unit in different sizes. As ByteFormat
/// writes it, with the digits and the decimal sign of the desktop's locale.
class ByteFigure {
    Q_GADGET
    QML_VALUE_TYPE(byteFigure)
    Q_PROPERTY(quint64 bytes READ bytes)
    Q_PROPERTY(QString text READ text)
    Q_PROPERTY(QString value READ value)
    Q_PROPERTY(QString unit READ unit)

public:
    ByteFigure() = default;
    explicit ByteFigure(quint64 bytes) : bytes_(bytes) {}

    quint64 bytes() const { return bytes_; }
    QString text() const;
    QString value() const;
    QString unit() const;

    /// `words` of the core with each figure of this count as it is written here.
    QString in(QString words) const;

    bool operator==(const ByteFigure&) const = default;

private:
    quint64 bytes_ = 0;
};

/// "+5.2 GB", "−5.2 GB"; nothing has no sign.
QString differenceText(qint64 bytes);

/// The share of a whole, for the length of a bar; 0 of nothing.
inline double fractionOf(quint64 bytes, quint64 whole) {
    return whole == 0 ? 0 : static_cast<double>(bytes) / static_cast<double>(whole);
}

} // namespace orbel
