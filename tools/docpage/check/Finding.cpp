#include "tools/docpage/check/Finding.h"

#include <algorithm>

namespace {

constexpr size_t kMaxFindings = 1000;

} // namespace

const char *severityName(Severity severity)
{
    switch (severity) {
    case Severity::Note:
        return "note";
    case Severity::Warning:
        return "warning";
    case Severity::Error:
        break;
    }
    return "error";
}

void Findings::add(Severity severity, const char *code, qint64 offset, const QString &words)
{
    if (makeRoom(severity))
        ofSeverity(severity).push_back({severity, code, offset, words});
}

const std::vector<Finding> &Findings::ofSeverity(Severity severity) const
{
    return m_findings.at(static_cast<size_t>(severity));
}

std::vector<Finding> &Findings::ofSeverity(Severity severity)
{
    return m_findings.at(static_cast<size_t>(severity));
}

// For one more, at the cost of a less severe one if need be.
bool Findings::makeRoom(Severity severity)
{
    size_t kept = 0;
    for (const std::vector<Finding> &findings : m_findings)
        kept += findings.size();
    if (kept < kMaxFindings)
        return true;
    ++m_leftOut;
    for (const Severity less : {Severity::Note, Severity::Warning}) {
        if (less < severity && !ofSeverity(less).empty()) {
            ofSeverity(less).pop_back();
            return true;
        }
    }
    return false;
}

std::vector<Finding> Findings::inOrder() const
{
    std::vector<Finding> findings;
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note})
        findings.insert(findings.end(), ofSeverity(severity).begin(), ofSeverity(severity).end());
    std::stable_sort(findings.begin(), findings.end(), [](const Finding &one, const Finding &two) {
        return one.offset < two.offset;
    });
    return findings;
}
