#pragma once

#include "tools/docpage/OutputFile.h"

#include <QHash>

/// Saves the pictures of a deck as files of a folder.
class PictureExtractor
{
public:
    /// \param folder is created when missing, once there is something to put into it
    PictureExtractor(const QString &folder, const OutputRules &rules)
        : m_folder(folder)
        , m_rules(rules)
    {
    }

    /// Saves a picture, unless one with the same bytes is saved already.
    /// \param stem the file's name without its extension, which goes by the content
    /// \return the path of the file
    QString save(const QByteArray &picture, const QString &stem);

    /// The file or folder that could not be written first, and what went wrong with it; empty when
    /// nothing did.
    QString failedFile() const { return m_failedFile; }
    QString fault() const { return m_fault; }

private:
    void fail(const QString &file, const QString &fault);

    QString m_folder;
    const OutputRules &m_rules;
    QHash<QByteArray, QString> m_saved;
    QString m_failedFile;
    QString m_fault;
};
