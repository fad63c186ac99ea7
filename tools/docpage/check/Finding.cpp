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
    m_hasError = m_hasError || severity == Severity::Error;
    if (m_findings.size() < kMaxFindings)
        m_findings.push_back({severity, code, offset, words});
    else
        ++m_leftOut;
}

std::vector<Finding> Findings::inOrder() const
{
    std::vector<Finding> findings = m_findings;
    std::stable_sort(findings.begin(), findings.end(), [](const Finding &one, const Finding &two) {
        return one.offset < two.offset;
    });
    return findings;
}
