#include "tools/docimport/PageFolder.h"

#include "emfdeal/EmfDeal.h"
#include "tools/docpage/PageFile.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>

namespace {

// The numbers of the pages that there are, in ascending order.
QVector<int> pagesIn(const QString &folder)
{
    static const QRegularExpression name(QStringLiteral("\\Apage_(0|[1-9][0-9]{0,8})\\z"));
    QVector<int> numbers;
    for (const QString &entry : QDir(folder).entryList(QDir::AllEntries | QDir::System)) {
        const QRegularExpressionMatch match = name.match(entry);
        if (match.hasMatch())
            numbers.append(match.captured(1).toInt());
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

} // namespace

PageFolder::PageFolder(const QString &folder, const OutputRules &rules)
    : m_folder(folder)
    , m_rules(rules)
    , m_staging(folder)
{
}

PageFolder::Fault PageFolder::check() const
{
    for (const int number : pagesIn(m_folder)) {
        const QString page = QDir(m_folder).filePath(pageFileName(number));
        const QString refusal = m_rules.refusal(page);
        if (!refusal.isEmpty())
            return {page, refusal};
    }
    return {};
}

PageFolder::Fault PageFolder::checkCount(int count) const
{
    for (const int number : pagesIn(m_folder)) {
        if (number >= count)
            return {QDir(m_folder).filePath(pageFileName(number)),
                    QStringLiteral("would stay behind the %1 pages of this document; remove it, "
                                   "or choose another folder")
                        .arg(count)};
    }
    return {};
}

PageFolder::Fault PageFolder::create()
{
    QString fault = m_staging.create();
    if (fault.isEmpty())
        fault = createWork();
    return {m_folder, fault};
}

// The engine takes some characters of a path for its own, however they are written: then it is
// another path.
QString PageFolder::createWork()
{
    static const QRegularExpression special(QStringLiteral("[$;]"));
    m_work = m_staging.filePath(QStringLiteral("work"));
    if (m_work.contains(special)) {
        m_workElsewhere = std::make_unique<QTemporaryDir>(QStringLiteral("/tmp/docimport-XXXXXX"));
        if (!m_workElsewhere->isValid())
            return m_workElsewhere->errorString();
        m_work = m_workElsewhere->filePath(QStringLiteral("work"));
    }
    return createFolder(m_work);
}

QString PageFolder::keepWork()
{
    if (m_workElsewhere) {
        m_workElsewhere->setAutoRemove(false);
        return m_work;
    }
    const QString staging = QDir(m_staging.filePath({})).absolutePath();
    const QString kept = staging + QStringLiteral("-work");
    return QDir().rename(m_work, kept) ? QDir(m_folder).filePath(QFileInfo(kept).fileName())
                                       : QString();
}

QString PageFolder::save(int number, const PagePayload &payload) const
{
    return saveFile(stagedPage(number), OutputRules(false, {}),
                    {EmfDeal::getHeader(payload.bytes.size(), payload.format), payload.bytes});
}

PageFolder::Fault PageFolder::publish(int count)
{
    QStringList staged;
    for (int number = 0; number < count; ++number)
        staged.append(stagedPage(number));
    Fault fault;
    fault.words = m_staging.publish(staged, m_rules, fault.file);
    return fault;
}
