#include "pptanim/FramePainter.h"

#include <QPainter>

namespace {

// Preparing takes about as long as painting two frames of the 25 a second.
constexpr unsigned int kWorthwhile = 200; // ms

QImage paintedPlainly(const Scene &scene)
{
    QImage frame = scene.background;
    QPainter painter;
    if (!painter.begin(&frame)) // memory lacks
        return {};
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const Scene::Picture &picture : scene.pictures)
        painter.drawImage(picture.at, picture.image);
    painter.end();
    return frame;
}

} // namespace

QImage FramePainter::paint(const Scene &scene)
{
    SceneKind kind(scene);
    const bool isAgain = kind == m_kind;
    m_kind = std::move(kind);
    if (isAgain && scene.movingFor >= kWorthwhile && !(m_running && m_running->kind() == m_kind))
        prepare(scene);
    QImage frame;
    if (m_running)
        frame = m_running->paint(scene, m_ready);
    if (frame.isNull() || scene.movingFor == 0)
        m_running.reset();
    return frame.isNull() ? paintedPlainly(scene) : frame;
}

void FramePainter::prepare(const Scene &scene)
{
    m_running.reset(); // its memory is needed
    if (RunningFrame::fits(scene))
        m_running = std::make_unique<RunningFrame>(scene, m_kind);
}

void FramePainter::endRun()
{
    m_running.reset();
    m_kind = {};
}

void FramePainter::clear()
{
    endRun();
    m_ready.clear();
}
