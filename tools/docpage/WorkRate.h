#pragma once

#include <QString>

/// How fast work goes and when it will be done, as "35.2 MB/s, 0:07 left"; empty when nothing can
/// be told yet.
QString workRate(qint64 bytesDone, qint64 bytesInAll, qint64 elapsedMs);
