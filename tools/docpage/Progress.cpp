#include "tools/docpage/Progress.h"

#include <cstdio>

#include <unistd.h>

namespace {

constexpr qint64 kIntervalMs = 100;

} // namespace

Progress::Progress()
    : m_isTerminal(::isatty(STDERR_FILENO) == 1)
{
}

void Progress::show(const QString &text)
{
    if (!m_isTerminal || (m_sinceShown.isValid() && m_sinceShown.elapsed() < kIntervalMs))
        return;
    m_sinceShown.start();
    // Padded, so that nothing stays of a longer text.
    std::fprintf(stderr, "\r%s", text.leftJustified(m_length).toUtf8().constData());
    m_length = text.size();
}

void Progress::clear()
{
    if (m_length > 0)
        std::fprintf(stderr, "\r%*s\r", m_length, "");
    m_length = 0;
}
