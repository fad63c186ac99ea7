#pragma once

#include "tools/docpage/OutputFile.h"

#include <QHash>
#include <QStringList>

#include <vector>

/// Saves the pictures of a deck as files of a folder: collects them first, so that it can be told
/// whether all of them may be written.
class PictureExtractor
{
public:
    /// \param folder is created when missing, also for no pictures; empty when nothing is added
    /// \param namedFolder the folder as it is called in the pictures' names; empty when it is not
    PictureExtractor(const QString &folder, const QString &namedFolder)
        : m_folder(folder)
        , m_namedFolder(namedFolder)
    {
    }

    /// Adds a picture, unless one with the same bytes is there already.
    /// \param stem the file's name without its extension, which goes by the content; not the same
    ///        for two pictures
    /// \return the name of the file in the JSON
    QString add(const QByteArray &picture, const QString &stem);

    /// The names of the files in the folder.
    QStringList fileNames() const;

    /// Says why not all of the files may be written.
    /// \return the exit status
    int reportRefusals(const OutputRules &rules) const;

    /// Saves the pictures, and says what went wrong.
    /// \return the exit status
    int save(const OutputRules &rules) const;

private:
    struct File
    {
        QString name;
        QByteArray picture;
    };
    QString pathOf(const File &file) const;

    QString m_folder;
    QString m_namedFolder;
    std::vector<File> m_files;
    QHash<QByteArray, QString> m_names; // of the files, by their bytes
};
