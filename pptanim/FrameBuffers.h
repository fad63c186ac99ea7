#pragma once

#include <QImage>
#include <QRegion>

#include <vector>

/// Copies of an image that are painted on and handed out, and painted on once more as soon as
/// nobody else holds them.
class FrameBuffers
{
public:
    struct Buffer
    {
        QImage image;
        QRegion painted; // where it may differ from the original
        unsigned int turn = 0;
    };

    /// One to paint on, which is ours alone; its image is null when memory lacks. Valid until the
    /// next call.
    Buffer &next(const QImage &original);

private:
    Buffer &place();

    std::vector<Buffer> m_buffers; // the last one handed out is the last
    unsigned int m_turn = 0;
};
