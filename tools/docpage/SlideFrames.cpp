#include "tools/docpage/SlideFrames.h"

namespace {

qint64 countFrames(const SlidePlayer &player, unsigned int interval)
{
    qint64 count = 1;
    for (unsigned int step = 1; step <= player->GetStepCount(); ++step)
        count += 1 + (qint64(player->GetStepDuration(step)) + interval - 1) / interval;
    return count;
}

} // namespace

QString Frame::label() const
{
    return step == 0 ? QStringLiteral("home") : QStringLiteral("step %1, %2 ms").arg(step).arg(ms);
}

QString frameCountFault(qint64 frames, QSize size)
{
    constexpr qint64 kMaxFrames = 100000;                     // over an hour at 25 frames a second
    constexpr auto kMaxPixelsOfAll = Q_INT64_C(0x1000000000); // 33140 frames of 1920 x 1080
    if (frames > kMaxFrames)
        return QStringLiteral("too long: %1 frames").arg(frames);
    if (frames * size.width() * size.height() > kMaxPixelsOfAll)
        return QStringLiteral("too long: %1 frames of %2 x %3 pixels")
            .arg(frames)
            .arg(size.width())
            .arg(size.height());
    return {};
}

SlideFrames::SlideFrames(const QByteArray &payload, unsigned int page, int fps)
    : m_player(payload, page, fps)
    , m_interval(static_cast<unsigned int>(1000 / fps))
    , m_fault(m_player.fault())
{
    if (!m_fault.isEmpty())
        return;
    m_count = countFrames(m_player, m_interval);
    paint();
    if (m_fault.isEmpty())
        m_fault = frameCountFault(m_count, m_frame.image.size());
}

void SlideFrames::paint()
{
    m_frame = {m_player->GetAnimStep(), m_player->GetAnimPassedDuration(), m_player.frame()};
    m_fault = m_player.fault();
}

bool SlideFrames::next()
{
    if (!m_fault.isEmpty())
        return false;
    const unsigned int duration = m_player->GetStepDuration(m_frame.step);
    // At home nothing is left to be played, and the next step does not start at once.
    const bool isMoved = m_frame.ms < duration
                             ? m_player->nextFrame(qMin(m_interval, duration - m_frame.ms))
                             : m_player->nextStep();
    if (isMoved)
        paint();
    return isMoved && m_fault.isEmpty();
}
