#include "tools/docimport/engine/EngineProfile.h"

#include "tools/docimport/engine/EngineServices.h"
#include "tools/docimport/engine/EngineUrl.h"
#include "tools/docpage/OutputFile.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QSettings>
#include <QUrl>

#include <unistd.h>

namespace {

struct Setting
{
    const char *path;
    const char *name;
    const char *value;
};

// Only pictures ask whether what they link may be fetched. All that goes through the network is
// sent to a proxy that is not there; port 9 discards, where anything listens at all.
constexpr Setting kSettings[] = {
    {"Office.Common/Security/Scripting", "MacroSecurityLevel", "3"},
    {"Office.Common/Security/Scripting", "DisableMacrosExecution", "true"},
    {"Office.Common/Security/Scripting", "BlockUntrustedRefererLinks", "true"},
    {"Inet/Settings", "ooInetProxyType", "1"},
    {"Inet/Settings", "ooInetNoProxy", ""},
    {"Inet/Settings", "ooInetHTTPProxyName", "127.0.0.1"},
    {"Inet/Settings", "ooInetHTTPProxyPort", "9"},
    {"Inet/Settings", "ooInetHTTPSProxyName", "127.0.0.1"},
    {"Inet/Settings", "ooInetHTTPSProxyPort", "9"},
    {"Inet/Settings", "ooInetFTPProxyName", "127.0.0.1"},
    {"Inet/Settings", "ooInetFTPProxyPort", "9"},
    {"Office.Writer/Content/Update", "Link", "0"},
    {"Office.Calc/Content/Update", "Link", "1"},
    {"Office.Common/History", "PickListSize", "0"},
    {"Office.Common/Misc", "FirstRun", "false"},
    {"Office.Common/Misc", "CrashReport", "false"},
    {"Office.Common/Misc", "ShowTipOfTheDay", "false"},
    {"Office.Recovery/AutoSave", "Enabled", "false"},
    {"Office.Recovery/RecoveryInfo", "Enabled", "false"},
    {"Setup/Office", "ooSetupInstCompleted", "true"},
};

QByteArray settingsFile()
{
    QByteArray xml = R"(<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">
)";
    for (const Setting &setting : kSettings) {
        xml += QByteArray(R"(<item oor:path="/org.openoffice.)") + setting.path +
               R"("><prop oor:name=")" + setting.name + R"(" oor:op="fuse"><value>)" +
               setting.value + "</value></prop></item>\n";
    }
    return xml + "</oor:items>\n";
}

// By which the engine sees that its extensions are up to date; empty when it is not told.
QString buildOf(const QString &engine)
{
    const QSettings version(QFileInfo(engine).path() + QStringLiteral("/versionrc"),
                            QSettings::IniFormat);
    return version.value(QStringLiteral("Version/buildid")).toString();
}

} // namespace

EngineProfile::EngineProfile(const QString &folder)
    : m_folder(folder)
{
}

QString EngineProfile::create(const QString &engine)
{
    const QString extensions = m_folder + QStringLiteral("/user/extensions");
    const OutputRules rules(true, {});
    QString fault = createFolder(extensions);
    if (fault.isEmpty())
        fault = saveFile(m_folder + QStringLiteral("/user/registrymodifications.xcu"), rules,
                         {settingsFile()});
    const QString build = buildOf(engine);
    if (fault.isEmpty() && !build.isEmpty())
        fault = saveFile(extensions + QStringLiteral("/buildid"), rules, {build.toUtf8()});
    return fault.isEmpty()
               ? writeServices(engine, m_folder + QStringLiteral("/services"), m_services)
               : fault;
}

QStringList EngineProfile::arguments() const
{
    QStringList arguments{QStringLiteral("-env:UserInstallation=") + engineUrl(m_folder)};
    if (!m_services.isEmpty())
        arguments += m_services;
    return arguments;
}

// Its name has a digest of the profile's URL, as the engine itself would write that.
void EngineProfile::removeSocket() const
{
    const QString url = QStringLiteral("file://") +
                        QString::fromLatin1(QUrl::toPercentEncoding(m_folder, "/!$&'()*+,:=@"));
    const QByteArray digest = QCryptographicHash::hash(
        QByteArray::fromRawData(reinterpret_cast<const char *>(url.utf16()), 2 * url.size()),
        QCryptographicHash::Md5);
    QByteArray path = "/tmp/OSL_PIPE_" + QByteArray::number(::getuid()) + "_SingleOfficeIPC_";
    for (const char byte : digest)
        path += QByteArray::number(static_cast<uchar>(byte), 16); // without a leading zero
    ::unlink(path.constData());
}
