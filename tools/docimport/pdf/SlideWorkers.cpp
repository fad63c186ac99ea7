#include "tools/docimport/pdf/SlideWorkers.h"

#include "tools/docpage/EndRequest.h"

#include <QMutex>
#include <QSemaphore>
#include <QThread>

#include <atomic>
#include <new>
#include <vector>

namespace {

constexpr int kMostThreads = 4;        // each has the documents in memory
constexpr int kProgressInterval = 100; // ms

using SlideWork = std::function<QString(int, SlideTools &)>;

/// What the threads share.
class SharedWork
{
public:
    SharedWork(int count, const SlideWork &work, int limit)
        : m_count(count)
        , m_work(work)
        , m_limit(limit)
    {
    }

    /// What each of them does.
    void run()
    {
        SlideTools tools;
        tools.isStopped = [&] { return m_isStopped || tools.deadline.hasExpired(); };
        for (int slide = m_next++; slide < m_count && !m_isStopped; slide = m_next++) {
            tools.deadline.setRemainingTime(1000 * qint64(m_limit));
            const QString fault = faultOf(slide, tools);
            if (!fault.isEmpty())
                stop(fault);
            m_done.release();
        }
        m_ended.release();
    }

    void stop(const QString &fault = {})
    {
        const QMutexLocker lock(&m_mutex);
        if (!m_isStopped)
            m_fault = fault;
        m_isStopped = true;
    }

    QString fault()
    {
        const QMutexLocker lock(&m_mutex);
        return m_fault;
    }
    int doneCount() const { return m_done.available(); }
    bool waitForEnd(int threads, int ms) { return m_ended.tryAcquire(threads, ms); }

private:
    QString faultOf(int slide, SlideTools &tools)
    {
        try {
            return m_work(slide, tools);
        } catch (const std::bad_alloc &) {
            return QStringLiteral("out of memory");
        }
    }

    const int m_count;
    const SlideWork &m_work;
    const int m_limit;
    std::atomic<int> m_next{0};
    std::atomic<bool> m_isStopped{false};
    QMutex m_mutex;
    QString m_fault;
    QSemaphore m_done;
    QSemaphore m_ended;
};

/// The threads at work, which have ended with it.
class Threads
{
public:
    explicit Threads(SharedWork &shared)
        : m_shared(shared)
    {
    }
    ~Threads()
    {
        m_shared.stop();
        for (const auto &thread : m_threads)
            thread->wait();
    }
    Q_DISABLE_COPY_MOVE(Threads)

    /// Returns whether there is one more.
    bool start()
    {
        m_threads.emplace_back(QThread::create([this] { m_shared.run(); }));
        m_threads.back()->start();
        return m_threads.back()->isRunning() || m_threads.back()->isFinished();
    }

private:
    SharedWork &m_shared;
    std::vector<std::unique_ptr<QThread>> m_threads;
};

} // namespace

QString workOnSlides(int count, const std::function<QString(int, SlideTools &)> &work, int limit,
                     const EndRequest &request, const std::function<void(int)> &onDone)
{
    SharedWork shared(count, work, limit);
    Threads threads(shared);
    const int wanted = qBound(1, QThread::idealThreadCount(), qMin(count, kMostThreads));
    int started = 0;
    while (started < wanted && threads.start())
        ++started;
    if (started == 0)
        return QStringLiteral("no thread can be started");
    do {
        onDone(shared.doneCount());
        if (request.isMade())
            shared.stop();
    } while (!shared.waitForEnd(started, kProgressInterval));
    return shared.fault();
}
