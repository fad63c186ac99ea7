#include "tools/docpage/deck/FieldText.h"

#include "tools/docpage/deck/FloatText.h"

namespace {

QString quoted(const QString &text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

} // namespace

QString fieldText(quint16 number)
{
    return QString::number(number);
}

QString fieldText(qint16 number)
{
    return QString::number(number);
}

QString fieldText(qint8 flag)
{
    switch (flag) {
    case 0:
        return QStringLiteral("false");
    case -1:
        return QStringLiteral("true");
    default:
        return QString::number(flag);
    }
}

QString fieldText(float number)
{
    const QString text = floatText(number);
    return isJsonNumber(number) ? text : quoted(text);
}

QString fieldText(Trigger<const qint8> trigger)
{
    for (const TriggerName &name : kTriggerNames) {
        if (name.type == trigger.type)
            return quoted(QLatin1String(name.name));
    }
    return QString::number(trigger.type);
}

bool isZero(float number)
{
    return bitsOf(number) == 0;
}
