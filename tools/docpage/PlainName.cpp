#include "tools/docpage/PlainName.h"

QString plainName(const QString &name)
{
    return name.startsWith(QLatin1Char(':')) ? QStringLiteral("./") + name : name;
}
