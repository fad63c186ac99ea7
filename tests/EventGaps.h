#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

// The largest time between two rounds of the event loop.
class EventGaps
{
public:
    EventGaps()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_context, [this] { note(); });
        m_timer.start(1);
        m_clock.start();
    }

    qint64 largest()
    {
        note();
        return m_largest;
    }

private:
    void note()
    {
        const qint64 now = m_clock.elapsed();
        m_largest = qMax(m_largest, now - m_last);
        m_last = now;
    }

    QObject m_context;
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_last = 0;
    qint64 m_largest = 0;
};
