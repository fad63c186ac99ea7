#include "FloatBits.h"
#include "common/FloatToInt.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kDenormal = std::numeric_limits<double>::denorm_min();
constexpr double kLargest = std::numeric_limits<double>::max();

// What a compiler works out by itself need not be what the processor does.
template <typename Conversion>
auto atRunTime(Conversion conversion, double value)
{
    const volatile double hidden = value;
    return conversion(hidden);
}

static_assert(toInt32(-1.9) == -1 && toInt32(1e300) == 2147483647);
static_assert(toUInt32(1.9) == 1 && toUInt32(-1.0) == 0);

} // namespace

/// Conversions from floating point. Every row is a value known at run time only.
class FloatToIntTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toSigned_data()
    {
        QTest::addColumn<quint64>("bits"); // of the double: a NaN keeps its kind
        QTest::addColumn<qint32>("expected");

        const auto row = [](const char *name, double value, qint32 expected) {
            QTest::newRow(name) << bitsOf<quint64>(value) << expected;
        };
        row("0", 0.0, 0);
        row("-0", -0.0, 0);
        row("0.5", 0.5, 0);
        row("-0.5", -0.5, 0);
        row("just below 1", std::nextafter(1.0, 0.0), 0);
        row("1", 1.0, 1);
        row("just above -1", std::nextafter(-1.0, 0.0), 0);
        row("-1", -1.0, -1);
        row("1.5", 1.5, 1);
        row("-1.5", -1.5, -1);
        row("2.999", 2.999, 2);
        row("-2.999", -2.999, -2);
        row("8388609", 8388609.0, 8388609);
        row("least denormal", kDenormal, 0);
        row("largest negative denormal", -kDenormal, 0);
        row("least normal", std::numeric_limits<double>::min(), 0);

        row("below the most by 1", 2147483646.0, 2147483646);
        row("below the most by a half", 2147483646.5, 2147483646);
        row("just below the most", std::nextafter(2147483647.0, 0.0), 2147483646);
        row("the most", 2147483647.0, 2147483647);
        row("just above the most", std::nextafter(2147483647.0, kInfinity), 2147483647);
        row("above the most by a half", 2147483647.5, 2147483647);
        row("2^31", 2147483648.0, 2147483647);
        row("2^32", 4294967296.0, 2147483647);
        row("2^32 + 1", 4294967297.0, 2147483647);
        row("2^63", 9223372036854775808.0, 2147483647);
        row("1e12", 1e12, 2147483647);
        row("largest", kLargest, 2147483647);
        row("infinity", kInfinity, 2147483647);

        row("above the least by 1", -2147483647.0, -2147483647);
        row("above the least by a half", -2147483647.5, -2147483647);
        row("just above the least", std::nextafter(-2147483648.0, 0.0), -2147483647);
        row("the least", -2147483648.0, -2147483647 - 1);
        row("just below the least", std::nextafter(-2147483648.0, -kInfinity), -2147483647 - 1);
        row("below the least by a half", -2147483648.5, -2147483647 - 1);
        row("below the least by 1", -2147483649.0, -2147483647 - 1);
        row("-2^32", -4294967296.0, -2147483647 - 1);
        row("-1e12", -1e12, -2147483647 - 1);
        row("most negative", -kLargest, -2147483647 - 1);
        row("-infinity", -kInfinity, -2147483647 - 1);

        QTest::newRow("NaN") << Q_UINT64_C(0x7FF8000000000000) << 0;
        QTest::newRow("NaN, negative") << Q_UINT64_C(0xFFF8000000000000) << 0;
        QTest::newRow("NaN, all bits") << Q_UINT64_C(0xFFFFFFFFFFFFFFFF) << 0;
        QTest::newRow("NaN, signalling") << Q_UINT64_C(0x7FF0000000000001) << 0;
        QTest::newRow("NaN, signalling and negative") << Q_UINT64_C(0xFFF0000000000001) << 0;
    }

    void toSigned()
    {
        QFETCH(quint64, bits);
        QFETCH(qint32, expected);
        QCOMPARE(atRunTime(toInt32, fromBits<double>(bits)), expected);
    }

    void toUnsigned_data()
    {
        QTest::addColumn<quint64>("bits");
        QTest::addColumn<quint32>("expected");

        const auto row = [](const char *name, double value, quint32 expected) {
            QTest::newRow(name) << bitsOf<quint64>(value) << expected;
        };
        row("0", 0.0, 0);
        row("-0", -0.0, 0);
        row("0.5", 0.5, 0);
        row("-0.5", -0.5, 0);
        row("just below 1", std::nextafter(1.0, 0.0), 0);
        row("1", 1.0, 1);
        row("1.5", 1.5, 1);
        row("2.999", 2.999, 2);
        row("least denormal", kDenormal, 0);
        row("largest negative denormal", -kDenormal, 0);

        row("-1", -1.0, 0);
        row("-1.5", -1.5, 0);
        row("-2^31", -2147483648.0, 0);
        row("-2^32", -4294967296.0, 0);
        row("-1e12", -1e12, 0);
        row("most negative", -kLargest, 0);
        row("-infinity", -kInfinity, 0);

        row("the most of a signed number", 2147483647.0, 2147483647U);
        row("2^31", 2147483648.0, 2147483648U);
        row("2^31 + 1.5", 2147483649.5, 2147483649U);
        row("4294967040, the last float below 2^32", 4294967040.0, 4294967040U);
        row("below the most by 1", 4294967294.0, 4294967294U);
        row("below the most by a half", 4294967294.5, 4294967294U);
        row("just below the most", std::nextafter(4294967295.0, 0.0), 4294967294U);
        row("the most", 4294967295.0, 4294967295U);
        row("just above the most", std::nextafter(4294967295.0, kInfinity), 4294967295U);
        row("above the most by a half", 4294967295.5, 4294967295U);
        row("2^32", 4294967296.0, 4294967295U);
        row("2^32 + 1", 4294967297.0, 4294967295U);
        row("2^63", 9223372036854775808.0, 4294967295U);
        row("2^64", 18446744073709551616.0, 4294967295U);
        row("1e13", 1e13, 4294967295U);
        row("largest", kLargest, 4294967295U);
        row("infinity", kInfinity, 4294967295U);

        QTest::newRow("NaN") << Q_UINT64_C(0x7FF8000000000000) << 0U;
        QTest::newRow("NaN, negative") << Q_UINT64_C(0xFFF8000000000000) << 0U;
        QTest::newRow("NaN, all bits") << Q_UINT64_C(0xFFFFFFFFFFFFFFFF) << 0U;
        QTest::newRow("NaN, signalling") << Q_UINT64_C(0x7FF0000000000001) << 0U;
        QTest::newRow("NaN, signalling and negative") << Q_UINT64_C(0xFFF0000000000001) << 0U;
    }

    void toUnsigned()
    {
        QFETCH(quint64, bits);
        QFETCH(quint32, expected);
        QCOMPARE(atRunTime(toUInt32, fromBits<double>(bits)), expected);
    }
};

QTEST_GUILESS_MAIN(FloatToIntTest)
#include "tst_floattoint.moc"
