#include "common/ValueConvert.h"

#include <QDebug>

#include <limits>

using KxBase::KxByteArray;
using KxBase::KxVariant;
using KxBase::KxVariantMap;

namespace {

/// The type codes of KxVariant that have a counterpart, and that of user data.
enum KxType : unsigned int {
    KxNull = 0,
    KxBool = 1,
    KxInt = 2,
    KxInt64 = 3,
    KxDouble = 4,
    KxText = 5,
    KxBytes = 7,
    KxMap = 8,
    KxList = 9,
    KxUser = 10
};

// Qt takes the bytes of a text for the characters that it must have room for.
constexpr size_t kLongestText = (std::numeric_limits<int>::max() - 64) / sizeof(QChar);

QString fromStd(const std::string &text)
{
    if (text.size() > kLongestText)
        return {};
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

std::string toStd(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    return {utf8.constData(), static_cast<size_t>(utf8.size())};
}

// Without the place in this file, in all builds; the category is the default one.
QMessageLogger logger()
{
    return {nullptr, 0, nullptr};
}

} // namespace

QVariant KxVariantToQVariant(const KxVariant &value)
{
    switch (value.type()) {
    case KxNull:
        return {};
    case KxBool:
        return value.toBool();
    case KxInt:
        return value.toInt();
    case KxInt64:
        return static_cast<qlonglong>(value.toInt64());
    case KxDouble:
        return value.toDouble();
    case KxText:
        return fromStd(value.toString());
    case KxBytes:
        return KxByteArrayToQByteArray(value.toByteArray());
    case KxMap:
        return KxVariantToQVariant(value.toMap());
    case KxList:
        return KxVariantToQVariant(value.toList());
    case KxUser:
        logger().critical("KxVariantToQVariant unsupport user type data!!!");
        return {};
    default:
        logger().critical("KxVariantToQVariant unsupport type:%d !!!",
                          static_cast<int>(value.type()));
        return {};
    }
}

QMap<QString, QVariant> KxVariantToQVariant(const KxVariantMap &map)
{
    QMap<QString, QVariant> converted;
    for (const auto &entry : map)
        converted[fromStd(entry.first)] = KxVariantToQVariant(entry.second);
    return converted;
}

QList<QVariant> KxVariantToQVariant(const std::list<KxVariant> &list)
{
    QList<QVariant> converted;
    for (const KxVariant &value : list)
        converted.append(KxVariantToQVariant(value));
    return converted;
}

KxVariant QVariantToKxVariant(const QVariant &value)
{
    switch (value.type()) {
    case QVariant::Invalid:
        return {};
    case QVariant::Bool:
        return value.toBool();
    case QVariant::Int:
    case QVariant::UInt:
        return value.toInt();
    case QVariant::LongLong:
    case QVariant::ULongLong:
        return static_cast<long>(value.toLongLong()); // the base library's 64 bits
    case QVariant::Double:
        return value.toDouble();
    case QVariant::String:
    case QVariant::StringList:
        return toStd(value.toString());
    case QVariant::Map:
        return QVariantToKxVariant(value.toMap());
    case QVariant::List:
        return QVariantToKxVariant(value.toList());
    case QVariant::ByteArray:
        return QByteArrayToKxByteArray(value.toByteArray());
    case QVariant::UserType: // every type of a host's own
        logger().critical("QVariantToKxVariant unsupport user type data!!!");
        return {};
    default:
        logger().critical("QVariantToKxVariant unsupport type:%d !!!",
                          static_cast<int>(value.type()));
        return {};
    }
}

KxVariantMap QVariantToKxVariant(const QMap<QString, QVariant> &map)
{
    KxVariantMap converted;
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        converted[toStd(entry.key())] = QVariantToKxVariant(entry.value());
    return converted;
}

std::list<KxVariant> QVariantToKxVariant(const QList<QVariant> &list)
{
    std::list<KxVariant> converted;
    for (const QVariant &value : list)
        converted.push_back(QVariantToKxVariant(value));
    return converted;
}

QByteArray KxByteArrayToQByteArray(const KxByteArray &bytes)
{
    if (bytes.size() == 0) // whose data may be a null pointer
        return QByteArrayLiteral("");
    return {bytes.constData(), bytes.size()};
}

KxByteArray QByteArrayToKxByteArray(const QByteArray &bytes)
{
    return {bytes.constData(), bytes.size()};
}

std::list<std::string> QStringListToStdStringList(const QStringList &list)
{
    std::list<std::string> converted;
    for (const QString &text : list)
        converted.push_back(toStd(text));
    return converted;
}

QStringList StdStringListToQStringList(const std::list<std::string> &list)
{
    QStringList converted;
    for (const std::string &text : list)
        converted.append(fromStd(text));
    return converted;
}

QMap<QString, QVariant> QStringMap2Varmap(const QMap<QString, QString> &map)
{
    QMap<QString, QVariant> converted;
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        converted.insert(entry.key(), entry.value());
    return converted;
}

QMap<QString, QString> Varmap2QStringMap(const QMap<QString, QVariant> &map)
{
    QMap<QString, QString> converted;
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        converted.insert(entry.key(), entry.value().toString());
    return converted;
}

QMap<QString, QString> StdstringMap2QStringMap(const std::map<std::string, std::string> &map)
{
    QMap<QString, QString> converted;
    for (const auto &entry : map) {
        const char *key = entry.first.c_str(); // which ends at the first NUL
        converted[fromStd(key)] = fromStd(entry.second);
    }
    return converted;
}

void QStringMap2StdStringMap(const QMap<QString, QString> &map,
                             std::map<std::string, std::string> &out)
{
    out.clear();
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        out[entry.key().toUtf8().constData()] = toStd(entry.value());
}

QString QStringMapToString(const QMap<QString, QString> &map)
{
    QString text;
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        text += entry.key() + QLatin1Char('=') + entry.value() + QLatin1Char(';');
    return text;
}

QString getMapValue(const QMap<QString, QString> &map, const QString &key)
{
    return map.value(key);
}

std::string getMapValue(const std::map<std::string, std::string> &map, const std::string &key)
{
    const auto found = map.find(key);
    return found == map.end() ? std::string() : found->second;
}

QVariant getMapValue(const QMap<QString, QVariant> &map, const QString &key)
{
    return map.value(key);
}

int getMapIntValue(const QMap<QString, QVariant> &map, const QString &key, int def)
{
    const QVariant value = getMapValue(map, key);
    return value.isValid() ? value.toInt() : def;
}

bool Cover_boolStr_Tobool(const QString &s, bool def)
{
    static const QString yes = QStringLiteral("true");
    if (s.isEmpty())
        return def;
    return s == QLatin1String("1") || s.compare(yes, Qt::CaseInsensitive) == 0;
}

QString replaceDomainOfURL(const QString &url, const QString &domain)
{
    const int slashes = url.indexOf(QLatin1String("//"));
    const int begin = slashes < 0 ? 0 : slashes + 2;
    const int end = url.indexOf(QLatin1Char('/'), begin);
    return url.left(begin) + domain + (end < 0 ? QString() : url.mid(end));
}
