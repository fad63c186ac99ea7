#pragma once

#include "tools/docpage/OutputFile.h"

#include <QStringList>

#include <memory>

class QTemporaryDir;

/// A place for page result files in the making: a hidden folder inside the one that they are for,
/// so that giving them their names copies nothing. It is gone with the object, and so are the
/// folders that were created for it, unless the pages have been given their names. What ends the
/// program waits while names are given and while it is removed.
class StagingFolder
{
public:
    explicit StagingFolder(const QString &folder);
    ~StagingFolder();
    Q_DISABLE_COPY_MOVE(StagingFolder)

    /// Creates both folders.
    /// \return what went wrong; empty when they are there
    QString create();

    /// A file in it; with an empty name the folder, with a slash at its end.
    QString filePath(const QString &name) const;

    /// Gives the files `staged`, which are in it, the names of page 0, page 1 and so on: all of
    /// them, or none when one must not be. When all is done, this folder is gone.
    /// \return what went wrong, `file` being the page; empty when all is done
    QString publish(const QStringList &staged, const OutputRules &rules, QString &file);

private:
    void removeStaging();

    const QString m_folder;
    QStringList m_created; // the outermost first
    std::unique_ptr<QTemporaryDir> m_staging;
    bool m_isPublished = false;
};
