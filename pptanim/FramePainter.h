#pragma once

#include "pptanim/ReadyPictures.h"
#include "pptanim/RunningFrame.h"
#include "pptanim/Scene.h"

#include <memory>

/// Paints scenes, frame after frame: the pixels are those of the background with each picture
/// painted on it. While frames follow each other in which the same pictures rest in the same places
/// and the same ones move, it paints only what the moving ones touch.
class FramePainter
{
public:
    /// The image is the caller's: it never changes, on whatever thread it is used and dropped.
    QImage paint(const Scene &scene);

    /// Forgets what was prepared for more frames like the last one.
    void endRun();

    /// Forgets all.
    void clear();

private:
    void prepare(const Scene &scene);

    SceneKind m_kind; // the last scene's
    std::unique_ptr<RunningFrame> m_running;
    ReadyPictures m_ready;
};
