#include "tools/docimport/engine/EngineUrl.h"

#include <QUrl>

// All that is no letter is encoded: a dollar sign would be taken for the beginning of a variable.
QString engineUrl(const QString &path)
{
    return QStringLiteral("file://") + QString::fromLatin1(QUrl::toPercentEncoding(path, "/"));
}
