#pragma once

#include <QStringList>

/// The files of a document's pages, or why there are none to be had.
struct Document
{
    QString name;
    QStringList pages;
    QString fault;

    /// The document that a command is given: a folder, whose files count in the natural order of
    /// their names, or the files themselves.
    static Document of(const QStringList &arguments);

    /// What is wrong with a page number; empty when there is such a page.
    QString pageFault(unsigned int page) const;
};
