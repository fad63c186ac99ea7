#pragma once

#include "tools/docviewer/ThumbnailWorker.h"

#include <QObject>

/// Makes the thumbnails of a document's pages in the background, one at a time, and hands them over
/// on its own thread. Deleting it waits for the page in work at most.
class ThumbnailLoader : public QObject
{
    Q_OBJECT

public:
    explicit ThumbnailLoader(QObject *parent = nullptr);

    /// Replaces the document. Nothing of the former one is handed over from here on.
    /// \param box in pixels of the screen, that each thumbnail fits into
    void setDocument(const ViewerDocument &document, QSize box);

    /// Asks for pages, the first one first. Pages that were asked for before and have not been
    /// begun are forgotten: whoever scrolls on does not wait for what is out of sight.
    void request(const QVector<int> &pages);

Q_SIGNALS:
    /// \param fault why there is no thumbnail; empty when there is one
    void loaded(int page, const QImage &thumbnail, const QString &fault);

private:
    Q_INVOKABLE void deliver();

    int m_generation = 0; // counts the documents
    ThumbnailWorker m_worker;
};
