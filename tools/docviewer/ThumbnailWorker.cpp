#include "tools/docviewer/ThumbnailWorker.h"

#include <algorithm>
#include <utility>

ThumbnailWorker::ThumbnailWorker(QObject *receiver)
    : m_receiver(receiver)
{
    setObjectName(QStringLiteral("Thumbnails"));
}

ThumbnailWorker::~ThumbnailWorker()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
        m_wake.notify_one();
    }
    wait();
    const std::lock_guard<std::mutex> lock(m_mutex); // its last unlock is before all that follows
}

void ThumbnailWorker::setDocument(const ViewerDocument &document, QSize box)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_generation;
    m_document = document;
    m_box = box;
    m_queue.clear();
    m_pageInWork = -1;
    m_results.clear();
}

void ThumbnailWorker::setQueue(const QVector<int> &pages)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_queue.clear();
        for (const int page : pages) {
            if (page != m_pageInWork && !isDone(page))
                m_queue.push_back(page);
        }
        m_wake.notify_one();
    }
    if (!pages.isEmpty() && !isRunning())
        start();
}

bool ThumbnailWorker::isDone(int page) const
{
    return std::any_of(m_results.cbegin(), m_results.cend(),
                       [page](const Result &result) { return result.page == page; });
}

std::vector<ThumbnailWorker::Result> ThumbnailWorker::takeResults()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_results, {});
}

void ThumbnailWorker::run()
{
    std::unique_ptr<ThumbnailRenderer> renderer;
    int generation = 0; // the renderer's
    std::unique_lock<std::mutex> lock(m_mutex);
    updateThreadName();
    for (;;) {
        m_wake.wait(lock, [this] { return m_isEnding || !m_queue.empty(); });
        if (m_isEnding)
            return;
        const int page = m_queue.front();
        m_queue.pop_front();
        m_pageInWork = page;
        const bool isNew = std::exchange(generation, m_generation) != m_generation;
        const ViewerDocument document = m_document;
        const QSize box = m_box;
        lock.unlock();

        if (isNew)
            renderer = std::make_unique<ThumbnailRenderer>(document, box);
        PagePicture thumbnail = renderer->render(page);

        lock.lock();
        if (generation != m_generation)
            continue;
        m_pageInWork = -1;
        m_results.push_back({page, std::move(thumbnail)});
        if (m_results.size() == 1)
            QMetaObject::invokeMethod(m_receiver, "deliver", Qt::QueuedConnection);
    }
}
