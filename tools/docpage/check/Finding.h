#pragma once

#include <QString>

#include <array>
#include <vector>

enum class Severity {
    Note,    ///< worth knowing
    Warning, ///< all there is to show is shown, but most likely not as it was meant
    Error    ///< something there is to show is not shown
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

/// The findings of a file. A hostile one may have any number, so a thousand are kept, the most
/// severe and of these the first, and the others counted.
class Findings
{
public:
    void add(Severity severity, const char *code, qint64 offset, const QString &words);

    bool hasError() const { return !ofSeverity(Severity::Error).empty(); }

    /// In the order in which they stand in the file; of one place, the most severe first.
    std::vector<Finding> inOrder() const;

    /// How many are not among them.
    qint64 leftOut() const { return m_leftOut; }

private:
    const std::vector<Finding> &ofSeverity(Severity severity) const;
    std::vector<Finding> &ofSeverity(Severity severity);
    bool makeRoom(Severity severity);

    std::array<std::vector<Finding>, 3> m_findings; // by severity
    qint64 m_leftOut = 0;
};
