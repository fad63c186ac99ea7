#include "tools/docpage/deck/FieldReader.h"

#include "tools/docpage/deck/FloatText.h"

#include <cmath>
#include <limits>

namespace {

template <typename Number>
Number integer(const JsonNode &node, const QString &orElse = {})
{
    using Limits = std::numeric_limits<Number>;
    return static_cast<Number>(node.integer(Limits::min(), Limits::max(), orElse));
}

} // namespace

void readField(const JsonNode &node, quint16 &number)
{
    number = integer<quint16>(node);
}

void readField(const JsonNode &node, qint16 &number)
{
    number = integer<qint16>(node);
}

void readField(const JsonNode &node, qint8 &flag)
{
    flag = node.value().isBool() ? qint8(node.value().toBool() ? -1 : 0)
                                 : integer<qint8>(node, QStringLiteral("true, false or "));
}

void readField(const JsonNode &node, float &number)
{
    constexpr double kMost = 3.4028235e38; // as the largest float is written
    if (node.value().isDouble() && std::abs(node.value().toDouble()) <= kMost) {
        number = static_cast<float>(node.value().toDouble());
        return;
    }
    const std::optional<float> special = floatOfText(node.value().toString());
    if (!special)
        node.mustBe(QStringLiteral("a number from -3.4028235e+38 to 3.4028235e+38, \"nan\", "
                                   "\"inf\", \"-inf\", \"-0\" or bits as \"0xffc00001\""));
    number = *special;
}

void readField(const JsonNode &node, Trigger<qint8> trigger)
{
    const QString text = node.value().toString();
    for (const TriggerName &name : kTriggerNames) {
        if (text == QLatin1String(name.name)) {
            trigger.type = name.type;
            return;
        }
    }
    trigger.type = integer<qint8>(node, QStringLiteral("\"click\", \"with\", \"after\" or "));
}
