#include "tools/docpage/deck/FloatText.h"

#include <QRegularExpression>

#include <cmath>
#include <cstring>

namespace {

struct Name
{
    const char *text;
    quint32 bits;
};

constexpr Name kNames[] = {
    {"nan", 0x7FC00000}, {"inf", 0x7F800000}, {"-inf", 0xFF800000}, {"-0", 0x80000000}};

float floatOfBits(quint32 bits)
{
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

QString shortDecimal(float value)
{
    constexpr int kEnoughDigits = 9;
    for (int digits = 6;; ++digits) {
        const QString text = QString::number(static_cast<double>(value), 'g', digits);
        if (digits == kEnoughDigits || bitsOf(static_cast<float>(text.toDouble())) == bitsOf(value))
            return text;
    }
}

} // namespace

quint32 bitsOf(float value)
{
    quint32 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

QString floatText(float value)
{
    for (const Name &name : kNames) {
        if (bitsOf(value) == name.bits)
            return QLatin1String(name.text);
    }
    if (std::isnan(value))
        return QStringLiteral("0x%1").arg(bitsOf(value), 8, 16, QLatin1Char('0'));
    return shortDecimal(value);
}

bool isJsonNumber(float value)
{
    return std::isfinite(value) && !(value == 0 && std::signbit(value));
}

std::optional<float> floatOfText(const QString &text)
{
    for (const Name &name : kNames) {
        if (text == QLatin1String(name.text))
            return floatOfBits(name.bits);
    }
    static const QRegularExpression bits(QStringLiteral("\\A0x[0-9a-fA-F]{8}\\z"));
    if (bits.match(text).hasMatch())
        return floatOfBits(text.mid(2).toUInt(nullptr, 16));
    return std::nullopt;
}
