#include "tools/docviewer/ThumbnailLoader.h"

#include <QPointer>

ThumbnailLoader::ThumbnailLoader(QObject *parent)
    : QObject(parent)
    , m_worker(this)
{
}

void ThumbnailLoader::setDocument(const ViewerDocument &document, QSize box)
{
    ++m_generation;
    m_worker.setDocument(document, box);
}

void ThumbnailLoader::request(const QVector<int> &pages)
{
    m_worker.setQueue(pages);
}

void ThumbnailLoader::deliver()
{
    const QPointer<ThumbnailLoader> self(this); // null when a receiver has deleted it
    const int generation = m_generation;
    for (const ThumbnailWorker::Result &result : m_worker.takeResults()) {
        Q_EMIT loaded(result.page, result.thumbnail.image, result.thumbnail.fault);
        if (!self || generation != m_generation)
            return;
    }
}
