#pragma once

#include "common/DocDisplayGlobal.h"

#include <QDateTime>
#include <QString>

/// \file
/// Moments and durations as short texts. Moments are shown in local time: that of the environment
/// variable TZ or of the system. All functions are reentrant; none logs, and none throws on
/// bad input.

/// The moment `t` seconds after 1970-01-01 00:00:00 UTC, as local time. A negative `t` counts as
/// the unsigned number of the same bits: moments reach from 1970 to 2106.
/// From 2038 on Qt has daylight saving begin and end on the days on which it does in 2037, for all
/// functions here: in Berlin, 2050-03-27 01:00 UTC is 02:00, though summer has begun by then.
DOCDISPLAY_EXPORT QDateTime CoverTime(int t);

/// A UTC time as local time, both as "yyyy-MM-dd hh:mm:ss". Empty when `utcText` has another form;
/// nothing is trimmed. Empty, too, for a UTC time whose reading local clocks leave out (as 02:30:00
/// on the night that daylight saving begins): Qt takes the text for local time while it reads it.
/// It reads the digits of the default QLocale, too, and writes 0 to 9.
DOCDISPLAY_EXPORT QString CoverTime2LocalTime(const QString &utcText);

/// The moment `t` of CoverTime() as "hh:mm:ss" when it is on today's local date, and otherwise as
/// "hh:mm:ss (yyyy-MM-dd)".
DOCDISPLAY_EXPORT QString CoverTime2Str(int t);

/// The same without seconds: "hh:mm" or "hh:mm (yyyy-MM-dd)".
DOCDISPLAY_EXPORT QString CoverTime2MinStr(int t);

/// A duration in seconds as "MM:SS", or as "HH:MM:SS" when it has full hours or `showHours` is
/// true; hours may have more than two digits. Of a negative duration each field has the sign, and
/// there are no hours without `showHours`: -65 is "-1:-5".
DOCDISPLAY_EXPORT QString CoverDuration2Str(int seconds, bool showHours);
