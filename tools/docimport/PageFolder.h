#pragma once

#include "tools/docimport/PageSource.h"
#include "tools/docpage/StagingFolder.h"

#include <QTemporaryDir>

#include <memory>

/// The folder of a document's pages. They get their names together, when all of them are there, and
/// pages of another document are not left among them.
class PageFolder
{
public:
    PageFolder(const QString &folder, const OutputRules &rules);

    /// What cannot be done, and with which file.
    struct Fault
    {
        QString file;
        QString words; ///< empty when all is well
    };

    /// Whether there may be pages, as far as it can be told before any is made.
    Fault check() const;

    /// Whether they may be that many: those of a longer document would follow them.
    Fault checkCount(int count) const;

    Fault create();

    /// A place for what is needed on the way, which is gone with this object.
    QString workPath() const { return m_work; }
    /// Keeps that, and returns where it is then.
    QString keepWork();

    /// On any thread.
    QString save(int number, const PagePayload &payload) const;

    /// Gives pages 0 to `count` - 1 their names.
    Fault publish(int count);

private:
    QString createWork();
    QString stagedPage(int number) const { return m_staging.filePath(QString::number(number)); }

    const QString m_folder;
    const OutputRules &m_rules;
    StagingFolder m_staging;
    std::unique_ptr<QTemporaryDir> m_workElsewhere; // where the engine can have it
    QString m_work;
};
