#include "common/AppInfo.h"

#include <QFileInfo>

#include <KxCommon/KxIniFile.h>

#include <array>

#include <unistd.h>

QString GetAppPathFileName()
{
    constexpr size_t kLongest = 4096;
    std::array<char, kLongest + 1> path{}; // ends with a NUL whatever is read
    if (::readlink("/proc/self/exe", path.data(), kLongest) == -1)
        return {};
    return QString::fromUtf8(path.data());
}

QString GetAppPath()
{
    const QString file = GetAppPathFileName();
    return file.left(file.lastIndexOf(QLatin1Char('/')) + 1);
}

QString GetAppName()
{
    return QFileInfo(GetAppPathFileName()).fileName();
}

QString GetAppBaseName()
{
    return QFileInfo(GetAppPathFileName()).baseName();
}

QString GetAppVer()
{
    return GetInifileString(QStringLiteral("VER"), QStringLiteral("Ver"),
                            GetAppPath() + QStringLiteral("UpdateInfo.ini"));
}

QString GetKxPrintDir()
{
    return QLatin1String("");
}

std::string MeetDeviceType()
{
    return "pc";
}

bool GetRegKey(const QString & /*key*/, unsigned int & /*value*/)
{
    return false;
}

bool GetRegKey(const QString & /*key*/, QString & /*value*/)
{
    return false;
}

bool SetRegKey(const QString & /*key*/, unsigned int /*value*/)
{
    return false;
}

bool SetRegKey(const QString & /*key*/, const QString & /*value*/)
{
    return false;
}

bool DelRegKey(const QString & /*key*/)
{
    return false;
}

bool DealRegistryCfg(const QString & /*cfg*/)
{
    return false;
}
