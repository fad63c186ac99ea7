#include "SelfRun.h"
#include "common/TimeFormat.h"

#include <QtTest>

#include <cstdio>
#include <ctime>
#include <limits>

namespace {

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();

// Values of TZ that need no time zone files.
const char kUtc[] = "UTC0";
const char kEast8[] = "XXX-8";
const char kEast14[] = "XXX-14";
const char kWest12[] = "XXX12";
const char kBerlin[] = "CET-1CEST,M3.5.0,M10.5.0/3";
const char kNewYork[] = "EST5EDT,M3.2.0,M11.1.0";
const char kSaoPaulo[] = "XXX3";
const char kIndia[] = "IST-5:30";
const char kNewfoundland[] = "NST3:30NDT,M3.2.0,M11.1.0";

QByteArray inZone(const char *zone, const QStringList &arguments)
{
    return runSelf(arguments, {QStringLiteral("TZ=") + QLatin1String(zone)});
}

// What the C library makes of a moment: another formulation of local time.
std::string localText(const char *format, time_t moment)
{
    tm local = {};
    ::localtime_r(&moment, &local);
    char text[64] = {};
    (void)::strftime(text, sizeof text, format, &local);
    return text;
}

time_t midnight(int daysFromToday)
{
    const time_t now = ::time(nullptr);
    tm local = {};
    ::localtime_r(&now, &local);
    local.tm_mday += daysFromToday;
    local.tm_hour = local.tm_min = local.tm_sec = 0;
    local.tm_isdst = -1;
    return ::mktime(&local);
}

// Lines "what|got|expected".
void appendMoment(std::string &lines, const char *what, time_t moment, bool isToday)
{
    const auto line = [&](const char *function, const QString &got, const char *pattern) {
        const std::string expected =
            localText(pattern, moment) + (isToday ? "" : localText(" (%Y-%m-%d)", moment));
        lines +=
            std::string(what) + ", " + function + '|' + got.toStdString() + '|' + expected + '\n';
    };
    line("seconds", CoverTime2Str(static_cast<int>(moment)), "%H:%M:%S");
    line("minutes", CoverTime2MinStr(static_cast<int>(moment)), "%H:%M");
}

std::string aroundToday()
{
    std::string lines;
    time_t day = 0;
    do { // again when midnight was in between
        day = midnight(0);
        lines.clear();
        appendMoment(lines, "now", ::time(nullptr), true);
        appendMoment(lines, "first second of today", midnight(0), true);
        appendMoment(lines, "last second of today", midnight(1) - 1, true);
        appendMoment(lines, "last second of yesterday", midnight(0) - 1, false);
        appendMoment(lines, "last minute of yesterday", midnight(0) - 60, false);
        appendMoment(lines, "first second of yesterday", midnight(-1), false);
        appendMoment(lines, "first second of tomorrow", midnight(1), false);
        appendMoment(lines, "noon of yesterday", midnight(-1) + 43200, false);
        appendMoment(lines, "noon of tomorrow", midnight(1) + 43200, false);
        appendMoment(lines, "a week ago", midnight(-7) + 43200, false);
        appendMoment(lines, "in 30 days", midnight(30) + 43200, false);
    } while (midnight(0) != day);
    return lines;
}

// This program as the child of a test.
int runChild(const QStringList &arguments)
{
    if (arguments.first() == QLatin1String("--today")) {
        std::fputs(aroundToday().c_str(), stdout);
        return 0;
    }
    if (arguments.first() == QLatin1String("--moment")) {
        const int t = arguments.last().toInt();
        const QDateTime time = CoverTime(t);
        std::printf("%s %s %lld\n%s\n%s\n",
                    qPrintable(time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"))),
                    time.timeSpec() == Qt::LocalTime ? "local" : "not local",
                    time.toMSecsSinceEpoch(), qPrintable(CoverTime2Str(t)),
                    qPrintable(CoverTime2MinStr(t)));
        return 0;
    }
    std::printf("%s\n", qPrintable(CoverTime2LocalTime(arguments.last())));
    return 0;
}

} // namespace

class TestTimeFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void moment_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<int>("t");
        QTest::addColumn<QByteArray>("date");
        QTest::addColumn<QByteArray>("minutes");
        QTest::addColumn<QByteArray>("seconds");
        const auto row = [](const char *name, const char *zone, int t, const char *date,
                            const char *minutes, const char *seconds) {
            QTest::newRow(name) << QByteArray(zone) << t << QByteArray(date) << QByteArray(minutes)
                                << QByteArray(seconds);
        };
        row("UTC: 0", kUtc, 0, "1970-01-01", "00:00", ":00");
        row("UTC: 1", kUtc, 1, "1970-01-01", "00:00", ":01");
        row("UTC: last second of a day", kUtc, 86399, "1970-01-01", "23:59", ":59");
        row("UTC: the largest", kUtc, kMax, "2038-01-19", "03:14", ":07");
        row("UTC: the smallest is the one after it", kUtc, kMin, "2038-01-19", "03:14", ":08");
        row("UTC: -1 is the last of all", kUtc, -1, "2106-02-07", "06:28", ":15");
        row("UTC: 29 February", kUtc, 1582934400, "2020-02-29", "00:00", ":00");
        row("UTC+8: 0", kEast8, 0, "1970-01-01", "08:00", ":00");
        row("UTC+8: the next day", kEast8, 1577807999, "2019-12-31", "23:59", ":59");
        row("UTC+8: the next year", kEast8, 1577808000, "2020-01-01", "00:00", ":00");
        row("UTC+8: -1", kEast8, -1, "2106-02-07", "14:28", ":15");
        row("UTC+14: 0", kEast14, 0, "1970-01-01", "14:00", ":00");
        row("UTC-12: 0 is the day before", kWest12, 0, "1969-12-31", "12:00", ":00");
        row("UTC-3: 0 is the day before", kSaoPaulo, 0, "1969-12-31", "21:00", ":00");
        row("UTC-3: -1", kSaoPaulo, -1, "2106-02-07", "03:28", ":15");
        row("UTC+5:30: 0", kIndia, 0, "1970-01-01", "05:30", ":00");
        row("UTC+5:30: 2020", kIndia, 1577836800, "2020-01-01", "05:30", ":00");
        row("Berlin: winter", kBerlin, 1577836800, "2020-01-01", "01:00", ":00");
        row("Berlin: summer", kBerlin, 1593561600, "2020-07-01", "02:00", ":00");
        row("Berlin: before it begins", kBerlin, 1585443599, "2020-03-29", "01:59", ":59");
        row("Berlin: it begins", kBerlin, 1585443600, "2020-03-29", "03:00", ":00");
        row("Berlin: 2 o'clock, first", kBerlin, 1603584000, "2020-10-25", "02:00", ":00");
        row("Berlin: before it ends", kBerlin, 1603587599, "2020-10-25", "02:59", ":59");
        row("Berlin: 2 o'clock, again", kBerlin, 1603587600, "2020-10-25", "02:00", ":00");
        row("Berlin: an hour later", kBerlin, 1603591200, "2020-10-25", "03:00", ":00");
        row("New York: before it begins", kNewYork, 1583650799, "2020-03-08", "01:59", ":59");
        row("New York: it begins", kNewYork, 1583650800, "2020-03-08", "03:00", ":00");
        row("New York: before it ends", kNewYork, 1604210399, "2020-11-01", "01:59", ":59");
        row("New York: 1 o'clock, again", kNewYork, 1604210400, "2020-11-01", "01:00", ":00");
        // After 2037 the days on which it begins and ends are those of 2037: 29 March, 25 October.
        const auto unsignedMoment = [](quint32 moment) { return static_cast<int>(moment); };
        row("Berlin: winter of 2050", kBerlin, unsignedMoment(2524608000U), "2050-01-01", "01:00",
            ":00");
        row("Berlin: summer of 2050", kBerlin, unsignedMoment(2540246400U), "2050-07-01", "02:00",
            ":00");
        row("Berlin: it should begin in 2050", kBerlin, unsignedMoment(2531955600U), "2050-03-27",
            "02:00", ":00");
        row("Newfoundland: winter", kNewfoundland, 1577836800, "2019-12-31", "20:30", ":00");
        row("Newfoundland: summer", kNewfoundland, 1593561600, "2020-06-30", "21:30", ":00");
    }
    void moment()
    {
        QFETCH(QByteArray, zone);
        QFETCH(int, t);
        QFETCH(QByteArray, date);
        QFETCH(QByteArray, minutes);
        QFETCH(QByteArray, seconds);
        const qint64 unsignedMs = qint64(static_cast<quint32>(t)) * 1000;
        const QList<QByteArray> lines =
            inZone(zone, {QStringLiteral("--moment"), QString::number(t)}).split('\n');
        QCOMPARE(lines.value(0),
                 date + ' ' + minutes + seconds + " local " + QByteArray::number(unsignedMs));
        QCOMPARE(lines.value(1), minutes + seconds + " (" + date + ')');
        QCOMPARE(lines.value(2), minutes + " (" + date + ')');
    }

    // The date goes by the local calendar, however near in time a moment is.
    void today_data()
    {
        QTest::addColumn<QByteArray>("zone");
        for (const char *zone :
             {kUtc, kEast8, kEast14, kWest12, kBerlin, kNewYork, kSaoPaulo, kIndia, kNewfoundland})
            QTest::newRow(zone) << QByteArray(zone);
    }
    void today()
    {
        QFETCH(QByteArray, zone);
        const QByteArray out = inZone(zone, {QStringLiteral("--today")});
        QCOMPARE(out.count('\n'), 22);
        for (const QByteArray &line : out.chopped(1).split('\n')) {
            const QList<QByteArray> parts = line.split('|');
            QCOMPARE(parts.size(), 3);
            QCOMPARE(parts[0] + ": " + parts[1], parts[0] + ": " + parts[2]);
        }
    }

    void localTime_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QString>("utc");
        QTest::addColumn<QByteArray>("local");
        const auto row = [](const char *name, const char *zone, const char *utc,
                            const char *local) {
            QTest::newRow(name) << QByteArray(zone) << QString::fromLatin1(utc)
                                << QByteArray(local);
        };
        row("UTC: as it is", kUtc, "2020-02-29 23:59:59", "2020-02-29 23:59:59");
        row("UTC+8", kEast8, "2020-01-01 00:00:00", "2020-01-01 08:00:00");
        row("UTC+8: the next year", kEast8, "2019-12-31 16:00:00", "2020-01-01 00:00:00");
        row("UTC+8: before 1970", kEast8, "1969-12-31 23:59:59", "1970-01-01 07:59:59");
        row("UTC+8: after 2038", kEast8, "2050-06-30 20:00:00", "2050-07-01 04:00:00");
        row("UTC+8: empty", kEast8, "", "");
        row("UTC-12: the day before", kWest12, "2020-03-01 00:00:00", "2020-02-29 12:00:00");
        row("UTC-3: the year before", kSaoPaulo, "2020-01-01 02:59:59", "2019-12-31 23:59:59");
        row("UTC+5:30", kIndia, "2020-01-01 00:00:00", "2020-01-01 05:30:00");
        row("Newfoundland: winter", kNewfoundland, "2020-01-01 00:00:00", "2019-12-31 20:30:00");
        row("Newfoundland: summer", kNewfoundland, "2020-07-01 00:00:00", "2020-06-30 21:30:00");
        row("UTC+8: the last year of four digits", kEast8, "9999-12-31 23:59:59",
            "10000-01-01 07:59:59");
        row("UTC+8: the first year", kEast8, "0001-01-01 00:00:00", "0001-01-01 08:00:00");
        row("UTC-12: before the first year", kWest12, "0001-01-01 00:00:00",
            "-0001-12-31 12:00:00");
        row("UTC: no year 0", kUtc, "0000-01-01 00:00:00", "");
        row("Berlin: summer of 1965", kBerlin, "1965-07-01 00:00:00", "1965-07-01 01:00:00");
        row("Berlin: winter of 2050", kBerlin, "2050-01-01 00:00:00", "2050-01-01 01:00:00");
        row("Berlin: summer of 2050", kBerlin, "2050-07-01 00:00:00", "2050-07-01 02:00:00");
        row("Berlin: it should begin in 2050", kBerlin, "2050-03-27 01:00:00",
            "2050-03-27 02:00:00");
        row("Berlin: winter", kBerlin, "2020-01-01 00:00:00", "2020-01-01 01:00:00");
        row("Berlin: summer", kBerlin, "2020-07-01 00:00:00", "2020-07-01 02:00:00");
        row("Berlin: before it begins", kBerlin, "2020-03-29 00:59:59", "2020-03-29 01:59:59");
        row("Berlin: it begins", kBerlin, "2020-03-29 01:00:00", "2020-03-29 03:00:00");
        row("Berlin: reads as before the gap", kBerlin, "2020-03-29 01:59:59",
            "2020-03-29 03:59:59");
        row("Berlin: reads as the gap's begin", kBerlin, "2020-03-29 02:00:00", "");
        row("Berlin: reads as in the gap", kBerlin, "2020-03-29 02:30:00", "");
        row("Berlin: reads as the gap's end", kBerlin, "2020-03-29 02:59:59", "");
        row("Berlin: reads as after the gap", kBerlin, "2020-03-29 03:00:00",
            "2020-03-29 05:00:00");
        row("Berlin: before it ends", kBerlin, "2020-10-25 00:59:59", "2020-10-25 02:59:59");
        row("Berlin: it ends", kBerlin, "2020-10-25 01:00:00", "2020-10-25 02:00:00");
        row("Berlin: reads as the hour there is twice", kBerlin, "2020-10-25 02:30:00",
            "2020-10-25 03:30:00");
        row("Berlin: reads as after that hour", kBerlin, "2020-10-25 03:00:00",
            "2020-10-25 04:00:00");
        row("New York: before it begins", kNewYork, "2020-03-08 06:59:59", "2020-03-08 01:59:59");
        row("New York: it begins", kNewYork, "2020-03-08 07:00:00", "2020-03-08 03:00:00");
        row("New York: reads as in the gap", kNewYork, "2020-03-08 02:30:00", "");
        row("New York: before it ends", kNewYork, "2020-11-01 05:59:59", "2020-11-01 01:59:59");
        row("New York: it ends", kNewYork, "2020-11-01 06:00:00", "2020-11-01 01:00:00");
        row("New York: reads as the hour there is twice", kNewYork, "2020-11-01 01:30:00",
            "2020-10-31 21:30:00");
    }
    void localTime()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QString, utc);
        QFETCH(QByteArray, local);
        QCOMPARE(inZone(zone, {QStringLiteral("--local"), utc}), local + '\n');
    }

    void otherForm_data()
    {
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const QString &text) { QTest::newRow(name) << text; };
        const QString good = QStringLiteral("2020-01-01 00:00:00");
        row("null", QString());
        row("empty", QStringLiteral(""));
        row("one character", QStringLiteral("2"));
        row("date only", QStringLiteral("2020-01-01"));
        row("time only", QStringLiteral("00:00:00"));
        row("T in between", QStringLiteral("2020-01-01T00:00:00"));
        row("no seconds", QStringLiteral("2020-01-01 00:00"));
        row("empty seconds", QStringLiteral("2020-01-01 00:00:"));
        row("fraction", good + QStringLiteral(".000"));
        row("zone", good + QStringLiteral("Z"));
        row("offset", good + QStringLiteral("+00:00"));
        row("blank in front", QStringLiteral(" ") + good);
        row("blank behind", good + QStringLiteral(" "));
        row("line feed behind", good + QStringLiteral("\n"));
        row("two blanks", QStringLiteral("2020-01-01  00:00:00"));
        row("tab", QStringLiteral("2020-01-01\t00:00:00"));
        row("slashes", QStringLiteral("2020/01/01 00:00:00"));
        row("single digits", QStringLiteral("2020-1-1 0:0:0"));
        row("two digits of the year", QStringLiteral("20-01-01 00:00:00"));
        row("five digits of the year", QStringLiteral("10000-01-01 00:00:00"));
        row("sign", QStringLiteral("-2020-01-01 00:00:00"));
        row("other order", QStringLiteral("01-01-2020 00:00:00"));
        row("month 0", QStringLiteral("2020-00-01 00:00:00"));
        row("month 13", QStringLiteral("2020-13-01 00:00:00"));
        row("day 0", QStringLiteral("2020-01-00 00:00:00"));
        row("30 February", QStringLiteral("2020-02-30 00:00:00"));
        row("29 February of no leap year", QStringLiteral("2019-02-29 00:00:00"));
        row("hour 24", QStringLiteral("2020-01-01 24:00:00"));
        row("minute 60", QStringLiteral("2020-01-01 00:60:00"));
        row("second 60", QStringLiteral("2020-01-01 00:00:60"));
        row("PM", QStringLiteral("2020-01-01 01:00:00 PM"));
        row("words", QStringLiteral("yyyy-MM-dd hh:mm:ss"));
        row("NUL in it", QString::fromUcs4(U"2020-01-01\0000:00:00", 19));
        row("NUL behind", good + QChar(0));
        row("beyond the BMP", QString::fromUcs4(U"2020-01-01 00:00:0\U0001F600", 19));
        row("lone surrogate", QStringLiteral("2020-01-01 00:00:0") + QChar(0xD83D));
        row("very long", good + QString(100000, QLatin1Char('0')));
        row("very many", good.repeated(10000));
    }
    void otherForm()
    {
        QFETCH(QString, text);
        QCOMPARE(CoverTime2LocalTime(text), QString());
    }

    // Digits are read in the default locale's script as well, and written as 0 to 9.
    void digitsOfTheDefaultLocale()
    {
        const QString arabic = QStringLiteral(
            "\u0662\u0660\u0662\u0660-\u0660\u0661-\u0660\u0661 \u0660\u0660:\u0660\u0660:"
            "\u0660\u0660");
        const QString latin = QStringLiteral("2020-01-01 00:00:00");
        QCOMPARE(CoverTime2LocalTime(arabic), QString());
        QLocale::setDefault(QLocale(QStringLiteral("ar_EG")));
        const QString ofArabic = CoverTime2LocalTime(arabic);
        const QString ofLatin = CoverTime2LocalTime(latin);
        const QString epoch = CoverTime2Str(0);
        QLocale::setDefault(QLocale::c());
        QCOMPARE(ofArabic, latin);
        QCOMPARE(ofLatin, latin);
        QCOMPARE(epoch, QStringLiteral("00:00:00 (1970-01-01)"));
    }

    void duration_data()
    {
        QTest::addColumn<int>("seconds");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("withHours");
        const auto row = [](int seconds, const char *text, const char *withHours) {
            QTest::newRow(QByteArray::number(seconds).constData())
                << seconds << QString::fromLatin1(text) << QString::fromLatin1(withHours);
        };
        row(0, "00:00", "00:00:00");
        row(1, "00:01", "00:00:01");
        row(9, "00:09", "00:00:09");
        row(59, "00:59", "00:00:59");
        row(60, "01:00", "00:01:00");
        row(65, "01:05", "00:01:05");
        row(3599, "59:59", "00:59:59");
        row(3600, "01:00:00", "01:00:00");
        row(3725, "01:02:05", "01:02:05");
        row(86399, "23:59:59", "23:59:59");
        row(86400, "24:00:00", "24:00:00");
        row(359999, "99:59:59", "99:59:59");
        row(360000, "100:00:00", "100:00:00");
        row(kMax, "596523:14:07", "596523:14:07");
        row(-1, "00:-1", "00:00:-1");
        row(-59, "00:-59", "00:00:-59");
        row(-60, "-1:00", "00:-1:00");
        row(-65, "-1:-5", "00:-1:-5");
        row(-3599, "-59:-59", "00:-59:-59");
        row(-3600, "00:00", "-1:00:00");
        row(-3665, "-1:-5", "-1:-1:-5");
        row(-360000, "00:00", "-100:00:00");
        row(kMin, "-14:-8", "-596523:-14:-8");
    }
    void duration()
    {
        QFETCH(int, seconds);
        QTEST(CoverDuration2Str(seconds, false), "text");
        QTEST(CoverDuration2Str(seconds, true), "withHours");
    }
};

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("TZ")) // which the children are given
        qputenv("TZ", "UTC");
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const QStringList forChild{QStringLiteral("--today"), QStringLiteral("--moment"),
                               QStringLiteral("--local")};
    if (forChild.contains(arguments.value(0)))
        return runChild(arguments);
    TestTimeFormat test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_timeformat.moc"
