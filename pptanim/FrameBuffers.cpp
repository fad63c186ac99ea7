#include "pptanim/FrameBuffers.h"

#include <algorithm>

namespace {

constexpr size_t kMostBuffers = 3;
constexpr unsigned int kPatience = 8; // turns

// Whoever held it may have dropped it on another thread, having read it there before it is written
// to here. Asking for the count orders nothing, but counting does, as a copy has it done.
bool isOurs(const QImage &image)
{
    return image.isDetached() && !QImage(image).isNull();
}

} // namespace

FrameBuffers::Buffer &FrameBuffers::next(const QImage &original)
{
    ++m_turn;
    // The last one that is free needs the least to be done to it.
    const auto free = std::find_if(m_buffers.rbegin(), m_buffers.rend(),
                                   [](const Buffer &buffer) { return isOurs(buffer.image); });
    if (free == m_buffers.rend()) {
        Buffer &fresh = place();
        fresh = {};
        fresh.image = original.copy();
    } else {
        std::rotate(free.base() - 1, free.base(), m_buffers.end());
    }
    m_buffers.back().turn = m_turn;
    return m_buffers.back();
}

// Where a new buffer goes when none is free. To take the place of the oldest each time would be to
// let go of those that are soon free, with one who holds as many as there are: so it is the newest,
// unless the oldest one has been held for so long that it does not seem to come back.
FrameBuffers::Buffer &FrameBuffers::place()
{
    if (m_buffers.size() < kMostBuffers)
        m_buffers.emplace_back();
    else if (m_turn - m_buffers.front().turn > kPatience)
        std::rotate(m_buffers.begin(), m_buffers.begin() + 1, m_buffers.end());
    return m_buffers.back();
}
