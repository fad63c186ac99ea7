#pragma once

#include <QByteArray>

#include <functional>

#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

/// A terminal as the standard error of one run of a program.
class Terminal
{
public:
    Terminal()
        : m_end(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        if (m_end < 0 || ::grantpt(m_end) != 0 || ::unlockpt(m_end) != 0)
            qFatal("no terminal");
        m_name = ::ptsname(m_end);
    }
    ~Terminal() { ::close(m_end); }
    Q_DISABLE_COPY_MOVE(Terminal)

    /// For the child.
    std::function<void()> attach() const
    {
        return [this] { ::dup2(::open(m_name.constData(), O_WRONLY | O_NOCTTY), STDERR_FILENO); };
    }

    /// What has been written, once the child has ended.
    QByteArray shown() const
    {
        QByteArray text;
        char buffer[4096];
        for (ssize_t n = 0; (n = ::read(m_end, buffer, sizeof buffer)) > 0;)
            text.append(buffer, static_cast<int>(n));
        return text;
    }

private:
    int m_end;
    QByteArray m_name;
};
