#include "common/PathHelper.h"

#include <QStandardPaths>

namespace {

constexpr QLatin1Char kSeparator('/');
constexpr QLatin1Char kColon(':');

QString folder(QStandardPaths::StandardLocation location)
{
    return AddBackslashAtend(QStandardPaths::writableLocation(location));
}

} // namespace

char GetBackslash_reverse()
{
    return '\\';
}

QString CorrectPathFormat(const QString &path)
{
    QString corrected = path;
    return corrected.replace(QLatin1Char(GetBackslash_reverse()), kSeparator);
}

QString AddBackslashAtBegin(const QString &path)
{
    const QString corrected = CorrectPathFormat(path);
    return corrected.startsWith(kSeparator) ? corrected : kSeparator + corrected;
}

QString RmBackslashAtBegin(const QString &path)
{
    const QString corrected = CorrectPathFormat(path);
    return corrected.startsWith(kSeparator) ? corrected.mid(1) : corrected;
}

QString AddBackslashAtend(const QString &path)
{
    const QString corrected = CorrectPathFormat(path);
    return corrected.endsWith(kSeparator) ? corrected : corrected + kSeparator;
}

QString RmBackslashAtend(const QString &path)
{
    const QString corrected = CorrectPathFormat(path);
    return corrected.endsWith(kSeparator) ? corrected.chopped(1) : corrected;
}

QString GetSysTempPath()
{
    return folder(QStandardPaths::TempLocation);
}

QString GetSysAppDataPath()
{
    return folder(QStandardPaths::AppDataLocation);
}

QString GetSysDocumentsPath()
{
    return folder(QStandardPaths::DocumentsLocation);
}

QString GetSysDownloadPath()
{
    return folder(QStandardPaths::DownloadLocation);
}

QString GetSysHomePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
}

QString FileNameIllegalCharDeal(const QString &name)
{
    QString legal = name;
    legal.remove(QLatin1Char('\r'));
    for (const char illegal : {'\\', '/', ':', '*', '"', '\'', '<', '>', '|', '?', '\n'})
        legal.replace(QLatin1Char(illegal), QLatin1Char('_'));
    return legal;
}

QString GetSuffixWithDot(const QFileInfo &info)
{
    const QString suffix = info.suffix();
    return suffix.isEmpty() ? QString() : QLatin1Char('.') + suffix;
}

QString GetDriveNameFromFile(const QString &path)
{
    const int colon = path.indexOf(kColon);
    return colon > 0 ? path.left(colon) + QStringLiteral(":\\") : QString();
}

bool IsLocFile(const QString &path)
{
    return path.startsWith(QLatin1Char('.')) || path.startsWith(kSeparator) ||
           (path.size() > 1 && path[1] == kColon) || !path.contains(kColon);
}
