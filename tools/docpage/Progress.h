#pragma once

#include <QElapsedTimer>
#include <QString>

/// A line on the terminal that tells how far the work is. Nothing is shown when standard error is
/// no terminal.
class Progress
{
public:
    Progress();
    ~Progress() { clear(); }
    Q_DISABLE_COPY_MOVE(Progress)

    /// Shows `text` in place of what was shown, at most ten times a second.
    void show(const QString &text);

    /// Takes the line away, as before any other output.
    void clear();

private:
    const bool m_isTerminal;
    QElapsedTimer m_sinceShown; // not valid until the first time
    int m_length = 0;           // of what is shown
};
