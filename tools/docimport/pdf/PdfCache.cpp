#include "tools/docimport/pdf/PdfCache.h"

QString PdfCache::open(const QString &path, const PdfFile *&file)
{
    const auto [at, isNew] = m_files.try_emplace(path);
    const QString fault = isNew ? at->second.open(path) : QString();
    if (!fault.isEmpty())
        m_files.erase(at);
    else
        file = &at->second;
    return fault;
}
