#pragma once

#include <QString>

/// What a child process may reach: the system's own folders for reading, those it is given, and no
/// network. So whatever a document makes its engine do, it cannot read or change what is the
/// user's. The kernel sees to it, where it can; older ones keep the process from less, or from
/// nothing.
class Confinement
{
public:
    Confinement();
    ~Confinement();
    Q_DISABLE_COPY_MOVE(Confinement)

    void allowReading(const QString &path);
    void allowAll(const QString &folder);
    /// Sockets that are files, which the owner is to remove.
    void allowSockets(const QString &folder);

    /// From now on, for this process and those that it starts. To be called in the child, before it
    /// becomes another program.
    void enter() const;

private:
    void allow(const QString &path, quint64 accesses);

    int m_rules = -1; // a descriptor; negative when the kernel knows no rules
    quint64 m_known = 0;
};
