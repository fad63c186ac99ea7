#include "tools/docimport/engine/Confinement.h"

#include <QFile>

#include <linux/landlock.h>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// Of versions of the kernel's interface that its header may be older than.
constexpr quint64 kRefer = 1U << 13;
constexpr quint64 kTruncate = 1U << 14;
constexpr quint64 kNoTcp = 1U << 0 | 1U << 1; // to bind, and to connect

struct Ruleset
{
    quint64 files;
    quint64 network;
};

constexpr quint64 kRead =
    LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr quint64 kFirstVersion = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1; // it was the last of them
constexpr quint64 kOfFiles = LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_READ_FILE |
                             LANDLOCK_ACCESS_FS_WRITE_FILE | kTruncate;

// Where programs, their libraries, settings and fonts are, and no documents of users.
constexpr const char *kSystemFolders[] = {
    "/usr",   "/bin",       "/lib",     "/lib32",
    "/lib64", "/libx32",    "/etc",     "/opt",
    "/proc",  "/sys",       "/dev",     "/run",
    "/nix",   "/var/cache", "/var/lib", "/var/spool/libreoffice"};

int knownVersion()
{
    return static_cast<int>(
        ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION));
}

} // namespace

Confinement::Confinement()
{
    const int version = knownVersion();
    if (version < 1)
        return;
    m_known = kFirstVersion;
    if (version >= 2)
        m_known |= kRefer;
    if (version >= 3)
        m_known |= kTruncate;
    const Ruleset rules = {m_known, version >= 4 ? kNoTcp : 0};
    const size_t size = version >= 4 ? sizeof rules : sizeof rules.files;
    m_rules = static_cast<int>(::syscall(SYS_landlock_create_ruleset, &rules, size, 0));

    for (const char *folder : kSystemFolders)
        allowReading(QString::fromLatin1(folder));
    allow(QStringLiteral("/dev/null"), LANDLOCK_ACCESS_FS_WRITE_FILE);
}

Confinement::~Confinement()
{
    if (m_rules >= 0)
        ::close(m_rules);
}

void Confinement::allowReading(const QString &path)
{
    allow(path, kRead);
}

void Confinement::allowAll(const QString &folder)
{
    allow(folder, m_known);
}

void Confinement::allowSockets(const QString &folder)
{
    allow(folder, LANDLOCK_ACCESS_FS_MAKE_SOCK);
}

// What is not there needs no permission.
void Confinement::allow(const QString &path, quint64 accesses)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_PATH | O_CLOEXEC);
    struct stat status = {};
    if (m_rules >= 0 && file >= 0 && ::fstat(file, &status) == 0) {
        landlock_path_beneath_attr rule = {};
        rule.allowed_access = accesses & m_known & (S_ISDIR(status.st_mode) ? m_known : kOfFiles);
        rule.parent_fd = file;
        ::syscall(SYS_landlock_add_rule, m_rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
    }
    if (file >= 0)
        ::close(file);
}

void Confinement::enter() const
{
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0); // which the kernel wants first
    ::syscall(SYS_landlock_restrict_self, m_rules, 0);
}
