#pragma once

#include "common/QNamedThread.h"
#include "tools/docviewer/ThumbnailRenderer.h"

#include <QVector>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <vector>

/// The thread that makes thumbnails, one at a time, in the order of a list that may be replaced at
/// any time. All operations are the owner's thread's. It starts with the first page to be done.
class ThumbnailWorker : public QNamedThread
{
public:
    struct Result
    {
        int page;
        PagePicture thumbnail;
    };

    /// \param receiver its slot deliver() is called, on its own thread, when there are results
    explicit ThumbnailWorker(QObject *receiver);

    /// Waits for the page in work, no longer.
    ~ThumbnailWorker() override;

    /// Forgets the pages to be done, and all results: that of the page in work, too.
    void setDocument(const ViewerDocument &document, QSize box);

    /// The pages that are to be done, the first one first, in place of those still waiting. The
    /// page in work is not started again.
    void setQueue(const QVector<int> &pages);

    /// The results since the last call.
    std::vector<Result> takeResults();

protected:
    void run() override;

private:
    bool isDone(int page) const;

    QObject *const m_receiver;

    // Whatever passes from one thread to the other does so under this lock.
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_isEnding = false;
    int m_generation = 0; // counts the documents, to tell late results
    ViewerDocument m_document;
    QSize m_box;
    std::deque<int> m_queue; // no container of Qt's, which would be shared with the owner's
    int m_pageInWork = -1;   // of the present document
    std::vector<Result> m_results;
};
