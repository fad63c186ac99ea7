#include "tools/docimport/deck/TimeValue.h"

#include <QStringList>

#include <cmath>

namespace {

std::optional<double> number(const QString &text)
{
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<double> clockSeconds(const QString &time)
{
    double seconds = 0;
    for (const QString &part : time.split(QLatin1Char(':'))) {
        const std::optional<double> value = number(part);
        if (!value)
            return {};
        seconds = seconds * 60 + *value;
    }
    return seconds;
}

} // namespace

std::optional<double> secondsOf(const QString &time)
{
    static constexpr struct
    {
        const char *name;
        double seconds;
    } kUnits[] = {{"ms", 0.001}, {"min", 60}, {"s", 1}, {"h", 3600}};

    const QString text = time.section(QLatin1Char(';'), 0, 0).trimmed();
    if (text.contains(QLatin1Char(':')))
        return clockSeconds(text);
    for (const auto &unit : kUnits) {
        const QLatin1String name(unit.name);
        if (!text.endsWith(name))
            continue;
        const std::optional<double> value = number(text.chopped(name.size()));
        return value ? std::optional(*value * unit.seconds) : std::nullopt;
    }
    return number(text);
}
