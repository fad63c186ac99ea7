#pragma once

#include "common/DocDisplayGlobal.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <KxBase/KxByteArray.h>
#include <KxBase/KxVariant.h>
#include <KxBase/KxVariantMap.h>

#include <list>
#include <map>
#include <string>

/// \file
/// Conversions between Qt's values, those of the standard library and the dynamic values of KxBase.
/// Texts of the latter two are UTF-8; one of about 1 GiB or more, which Qt cannot hold, becomes an
/// empty QString. All functions are reentrant and none fails: what has no counterpart is told by
/// qCritical() and becomes an empty value in its place.

/// A dynamic value as Qt's, maps and lists as deep as the stack allows (ten thousand in each other
/// and more). Nothing (code 0) becomes an invalid value silently, kinds without a counterpart (6,
/// 10 and above) with a message.
DOCDISPLAY_EXPORT QVariant KxVariantToQVariant(const KxBase::KxVariant &value);
DOCDISPLAY_EXPORT QMap<QString, QVariant> KxVariantToQVariant(const KxBase::KxVariantMap &map);
DOCDISPLAY_EXPORT QList<QVariant> KxVariantToQVariant(const std::list<KxBase::KxVariant> &list);

/// Qt's value as a dynamic one, maps and lists likewise. Unsigned numbers become signed ones and
/// may wrap. A QStringList becomes its one string, or an empty one when it has not exactly one.
/// An invalid value becomes nothing (code 0) silently, types without a counterpart with a message.
DOCDISPLAY_EXPORT KxBase::KxVariant QVariantToKxVariant(const QVariant &value);
DOCDISPLAY_EXPORT KxBase::KxVariantMap QVariantToKxVariant(const QMap<QString, QVariant> &map);
DOCDISPLAY_EXPORT std::list<KxBase::KxVariant> QVariantToKxVariant(const QList<QVariant> &list);

/// A copy of the bytes; empty, not null, when there are none.
DOCDISPLAY_EXPORT QByteArray KxByteArrayToQByteArray(const KxBase::KxByteArray &bytes);
DOCDISPLAY_EXPORT KxBase::KxByteArray QByteArrayToKxByteArray(const QByteArray &bytes);

/// The same texts in the same order.
DOCDISPLAY_EXPORT std::list<std::string> QStringListToStdStringList(const QStringList &list);
DOCDISPLAY_EXPORT QStringList StdStringListToQStringList(const std::list<std::string> &list);

/// The same entries with values of the other type: strings, or QVariant::toString().
DOCDISPLAY_EXPORT QMap<QString, QVariant> QStringMap2Varmap(const QMap<QString, QString> &map);
DOCDISPLAY_EXPORT QMap<QString, QString> Varmap2QStringMap(const QMap<QString, QVariant> &map);

/// The same entries. Keys end at their first NUL; of equal ones the later entry counts.
DOCDISPLAY_EXPORT QMap<QString, QString>
StdstringMap2QStringMap(const std::map<std::string, std::string> &map);

/// The same entries, in place of those that `out` had.
DOCDISPLAY_EXPORT void QStringMap2StdStringMap(const QMap<QString, QString> &map,
                                               std::map<std::string, std::string> &out);

/// All entries in the order of their keys as "key=value;", the last one's semicolon included.
/// Nothing is escaped.
DOCDISPLAY_EXPORT QString QStringMapToString(const QMap<QString, QString> &map);

/// The value of exactly this key; empty, or invalid, when there is none.
DOCDISPLAY_EXPORT QString getMapValue(const QMap<QString, QString> &map, const QString &key);
DOCDISPLAY_EXPORT std::string getMapValue(const std::map<std::string, std::string> &map,
                                          const std::string &key);
DOCDISPLAY_EXPORT QVariant getMapValue(const QMap<QString, QVariant> &map, const QString &key);

/// The value of a key as a number; `def` when there is none or it is invalid, and 0 when it is no
/// number.
DOCDISPLAY_EXPORT int getMapIntValue(const QMap<QString, QVariant> &map, const QString &key,
                                     int def);

/// Whether `s` is "1" or, in any case, "true"; `def` when it is empty.
DOCDISPLAY_EXPORT bool Cover_boolStr_Tobool(const QString &s, bool def);

/// `url` with `domain` in place of its host, which is everything from behind the first "//", or
/// from the start, to the next "/" or the end: user and port go as well.
DOCDISPLAY_EXPORT QString replaceDomainOfURL(const QString &url, const QString &domain);
