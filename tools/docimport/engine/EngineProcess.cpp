#include "tools/docimport/engine/EngineProcess.h"

#include <QDir>
#include <QStandardPaths>

#include <csignal>

#include <sys/prctl.h>
#include <unistd.h>

namespace {

// Settings of the user's are not read, nor are any left, but the fonts are those of the user.
QProcessEnvironment environmentIn(const QString &folder)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), folder);
    environment.insert(QStringLiteral("TMPDIR"), folder);
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), folder + QStringLiteral("/.cache"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), folder + QStringLiteral("/.config"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"),
                       QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8")); // names of files
    environment.insert(QStringLiteral("SAL_USE_VCLPLUGIN"), QStringLiteral("svp")); // no screen
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS"})
        environment.remove(QLatin1String(variable));
    return environment;
}

} // namespace

EngineProcess::EngineProcess(const Confinement &confinement)
    : m_confinement(confinement)
    , m_parent(::getpid())
{
}

void EngineProcess::begin(const QString &program, const QStringList &arguments,
                          const QString &folder, const QString &log)
{
    setProcessEnvironment(environmentIn(folder));
    setWorkingDirectory(folder);
    setProcessChannelMode(QProcess::MergedChannels);
    setStandardInputFile(QProcess::nullDevice());
    setStandardOutputFile(log, QIODevice::Append);
    start(program, arguments);
    m_group = static_cast<pid_t>(processId());
}

void EngineProcess::end()
{
    waitForStarted(); // no signal reaches it before
    if (m_group > 0)
        ::kill(-m_group, SIGKILL);
    m_group = 0;
    waitForFinished(-1);
}

// In the child.
void EngineProcess::setupChildProcess()
{
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != m_parent) // it has ended before that was asked for
        ::_exit(1);
    m_confinement.enter();
}
