#include "tools/docpage/WorkRate.h"

#include <algorithm>
#include <cmath>

QString workRate(qint64 bytesDone, qint64 bytesInAll, qint64 elapsedMs)
{
    if (bytesDone <= 0 || elapsedMs <= 0)
        return {};
    const double bytesPerMs = static_cast<double>(bytesDone) / static_cast<double>(elapsedMs);
    const qint64 bytesLeft = std::max<qint64>(bytesInAll - bytesDone, 0); // a file may have grown
    const double msLeft = static_cast<double>(bytesLeft) / bytesPerMs;
    const auto secondsLeft = static_cast<qint64>(std::ceil(msLeft / 1000));
    return QStringLiteral("%1 MB/s, %2:%3 left")
        .arg(bytesPerMs / 1000, 0, 'f', 1)
        .arg(secondsLeft / 60)
        .arg(secondsLeft % 60, 2, 10, QLatin1Char('0'));
}
