#pragma once

#include "tools/docpage/SlidePlayer.h"

#include <QImage>
#include <QString>

/// An image of a page and its position.
struct Frame
{
    unsigned int step = 0;
    unsigned int ms = 0;
    QImage image;

    /// The position in words.
    QString label() const;
};

/// Why a page of so many frames is not worth saving; empty when it is.
/// \param size of each frame, in pixels
QString frameCountFault(qint64 frames, QSize size);

/// The frames of a slide from home to the end of its last step: of each step its start, one each
/// frame's time, and its end.
class SlideFrames
{
public:
    /// \param payload of a page result file of format 3
    /// \param page the page to load
    /// \param fps frames a second
    SlideFrames(const QByteArray &payload, unsigned int page, int fps);

    /// Why there are no frames, or no more; empty when that is not so.
    const QString &fault() const { return m_fault; }

    qint64 count() const { return m_count; }

    /// The present frame, at first that of home.
    const Frame &frame() const { return m_frame; }

    /// Goes to the next frame.
    /// \return false when there is none
    bool next();

private:
    void paint();

    SlidePlayer m_player;
    const unsigned int m_interval; // ms between two frames of a step
    qint64 m_count = 0;
    Frame m_frame;
    QString m_fault;
};
