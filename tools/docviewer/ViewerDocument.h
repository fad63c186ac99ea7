#pragma once

#include <QStringList>

/// The page result files of a document, or why there are none to be had. A value type.
struct ViewerDocument
{
    QString name;            ///< the whole path of the folder or file
    QStringList files;       ///< one for each page
    bool isAnimated = false; ///< one page at least says that it holds slide animation data
    QString fault;           ///< why it cannot be shown; empty when it has pages

    /// A folder, whose files count in the natural order of their names, or a single file. Of each
    /// file only the header is read.
    static ViewerDocument open(const QString &path);

    bool isSingleFile() const { return files.size() == 1 && files.constFirst() == name; }

    /// Why nothing may be saved under a name: it is that of a page, or would be one, in the
    /// document's folder. Empty when it may.
    QString savingFault(const QString &path) const;
};
