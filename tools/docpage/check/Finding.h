#pragma once

#include <QString>

#include <vector>

enum class Severity {
    Note,    ///< worth knowing
    Warning, ///< is shown, but most likely not as it was meant
    Error    ///< is not shown
};

/// "note", "warning", "error".
const char *severityName(Severity severity);

/// Something to be said of a page result file.
struct Finding
{
    Severity severity;
    const char *code; ///< one word for the kind of finding, which stays; not copied
    qint64 offset;    ///< where in the file that stands which is meant
    QString words;
};

/// The findings of a file. A hostile one may have any number, so the first thousand are kept and
/// the others counted.
class Findings
{
public:
    void add(Severity severity, const char *code, qint64 offset, const QString &words);

    bool hasError() const { return m_hasError; }

    /// In the order in which they stand in the file.
    std::vector<Finding> inOrder() const;

    /// How many are not among them.
    qint64 leftOut() const { return m_leftOut; }

private:
    std::vector<Finding> m_findings;
    qint64 m_leftOut = 0;
    bool m_hasError = false;
};
