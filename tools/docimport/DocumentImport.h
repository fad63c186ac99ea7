#pragma once

#include "tools/docimport/ImportOptions.h"
#include "tools/docimport/InputKind.h"
#include "tools/docimport/PageFolder.h"
#include "tools/docpage/Progress.h"

#include <memory>

class EndRequest;

/// One input on its way to a folder of pages. What goes wrong is told at once.
class DocumentImport
{
public:
    DocumentImport(const QString &input, const QString &folder, const ImportOptions &options,
                   const OutputRules &rules, const EndRequest &request);

    DocumentReport run();

private:
    bool import();
    bool isGood(const PageFolder::Fault &fault);
    bool openSource(const InputKind &kind);
    bool choosePages();
    bool makePages();
    void settleWork();
    void tellDone();
    void show(const QString &what);

    const QString m_input;
    const ImportOptions &m_options;
    const EndRequest &m_request;
    PageFolder m_folder;
    std::unique_ptr<PageSource> m_source; // goes before the folder in which it works
    QVector<int> m_pages;
    Progress m_progress;
    DocumentReport m_report;
};
