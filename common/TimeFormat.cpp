#include "common/TimeFormat.h"

#include <QCalendar>
#include <QTimeZone>

namespace {

// Qt makes its list of calendars on the first use of dates or their texts, without a lock. So every
// function has this made, which is done by one thread, before it uses them.
const QCalendar &calendar()
{
    static const QCalendar gregorian;
    return gregorian;
}

QString timeText(int t, const QString &pattern)
{
    const QDateTime time = CoverTime(t);
    const bool isToday = time.date() == QDate::currentDate();
    return time.toString(isToday ? pattern : pattern + QStringLiteral(" (yyyy-MM-dd)"), calendar());
}

} // namespace

QDateTime CoverTime(int t)
{
    calendar();
    QDateTime time;
    time.setSecsSinceEpoch(static_cast<quint32>(t));
    return time.toTimeSpec(Qt::LocalTime);
}

QString CoverTime2LocalTime(const QString &utcText)
{
    static const QString pattern = QStringLiteral("yyyy-MM-dd hh:mm:ss");
    QDateTime time = QDateTime::fromString(utcText, pattern, calendar());
    time.setTimeZone(QTimeZone::utc());
    return time.toTimeSpec(Qt::LocalTime).toString(pattern, calendar());
}

QString CoverTime2Str(int t)
{
    return timeText(t, QStringLiteral("hh:mm:ss"));
}

QString CoverTime2MinStr(int t)
{
    return timeText(t, QStringLiteral("hh:mm"));
}

QString CoverDuration2Str(int seconds, bool showHours)
{
    const int hours = seconds / 3600;
    QString text;
    if (hours > 0 || showHours)
        text += QString::asprintf("%02d:", hours);
    return text + QString::asprintf("%02d:%02d", seconds % 3600 / 60, seconds % 60);
}
