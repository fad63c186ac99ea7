#pragma once

#include "tools/docimport/pdf/PdfFile.h"

#include <map>

/// The PDF documents that a thread has open.
class PdfCache
{
public:
    /// Opens the document unless it is open.
    /// \return what is wrong with it; empty when `file` is the document, which lives as long as
    /// this
    QString open(const QString &path, const PdfFile *&file);

private:
    std::map<QString, PdfFile> m_files;
};
