#include "tools/docimport/Importer.h"

#include "tools/docimport/DocumentImport.h"
#include "tools/docpage/Console.h"
#include "tools/docpage/EndRequest.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>

namespace {

// The folder of an input's pages.
QString folderOf(const QString &input, const ImportOptions &options)
{
    if (options.inputs.size() == 1)
        return options.output;
    const QFileInfo file(input);
    const QString name = file.completeBaseName();
    const bool isName =
        !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..");
    return QDir(options.output).filePath(isName ? name : file.fileName());
}

/// The inputs of a call.
class Import
{
public:
    Import(const ImportOptions &options, const EndRequest &request)
        : m_options(options)
        , m_request(request)
        , m_rules(options.isForced, options.inputs)
    {
    }

    int run()
    {
        const QString refusal = refusalOfReport();
        if (!refusal.isEmpty())
            return reportFault(m_options.report, refusal);
        for (const QString &input : m_options.inputs) {
            add(input);
            if (m_request.isMade())
                return ExitStatus::Failed;
        }
        saveReport();
        return m_status;
    }

private:
    // Before the work begins. It must not take the name of a page, even of one that is not there
    // yet.
    QString refusalOfReport() const
    {
        if (m_options.report.isEmpty())
            return {};
        const QString refusal = m_rules.refusal(m_options.report);
        if (!refusal.isEmpty())
            return refusal;
        const QFileInfo file(m_options.report);
        static const QRegularExpression page(QStringLiteral("\\Apage_[0-9]+\\z"));
        if (page.match(file.fileName()).hasMatch())
            return QStringLiteral("is the name of a page result file");
        const QString folder = file.absolutePath();
        const bool willBe =
            folder == QDir::cleanPath(QFileInfo(m_options.output).absoluteFilePath());
        return willBe || QFileInfo(folder).isDir() ? QString()
                                                   : QStringLiteral("there is no such folder");
    }

    void add(const QString &input)
    {
        const QString folder = folderOf(input, m_options);
        m_reports.append(m_folders.contains(folder)
                             ? refused(input, folder)
                             : DocumentImport(input, folder, m_options, m_rules, m_request).run());
        m_folders.insert(folder);
        if (!m_reports.constLast().fault.isEmpty())
            m_status = ExitStatus::Failed;
    }

    static DocumentReport refused(const QString &input, const QString &folder)
    {
        DocumentReport report;
        report.input = input;
        report.output = folder;
        report.fault =
            QStringLiteral("an input before it has the same name, and takes the folder ") + folder;
        reportFault(input, report.fault);
        return report;
    }

    void saveReport()
    {
        if (m_options.report.isEmpty())
            return;
        // The one folder that need not be there, nor come to be when inputs fail.
        QString fault = createFolder(QFileInfo(m_options.report).absolutePath());
        if (fault.isEmpty())
            fault = saveFile(m_options.report, m_rules, {reportJson(m_reports)});
        if (!fault.isEmpty())
            m_status = reportFault(m_options.report, fault);
    }

    const ImportOptions &m_options;
    const EndRequest &m_request;
    const OutputRules m_rules;
    QSet<QString> m_folders;
    QVector<DocumentReport> m_reports;
    int m_status = ExitStatus::Done;
};

} // namespace

int importDocuments(const ImportOptions &options, const EndRequest &request)
{
    return Import(options, request).run();
}
