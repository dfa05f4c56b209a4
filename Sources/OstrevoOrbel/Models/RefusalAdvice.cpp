#include "Models/RefusalAdvice.h"

#include "Delete/Advice.h"
#include "Models/Wording.h"

namespace orbel {

QString RefusalAdvice::on(const QString& reason) {
    return textOf(adviceOn(withoutIsolates(reason).toStdString()).value_or(""));
}

QString RefusalAdvice::after(const QString& reason) {
    const auto advice = on(reason);
    return advice.isEmpty() ? reason : reason + QLatin1Char('\n') + advice;
}

} // namespace orbel
