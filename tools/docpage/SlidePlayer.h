#pragma once

#include "pptanim/PPTAnimDisplayBase.h"
#include "tools/docpage/deck/SlideModel.h"

#include <QString>

#include <memory>

/// Frames a second, unless others are asked for.
constexpr int kFramesPerSecond = 25;

/// Why a slide cannot be shown at all: it is not there, has no background, or announces pictures
/// that take too much memory. Empty when it may be shown. Decodes nothing.
/// \param payload of a page result file of format 3
/// \param model is filled with it; must be fresh
QString slideSizeFault(const QByteArray &payload, unsigned int page, SlideModel &model);

/// That, or what the player would not say: that one of the slide's pictures is left out or shown in
/// part. Decodes all of them.
QString slideFault(const QByteArray &payload, unsigned int page);

/// A slide of an animated deck in a player of the library.
class SlidePlayer
{
public:
    /// \param payload of a page result file of format 3
    /// \param page the page to load
    /// \param fps frames a second
    SlidePlayer(const QByteArray &payload, unsigned int page, int fps = kFramesPerSecond);

    /// Why the slide cannot be played; empty when it can.
    const QString &fault() const { return m_fault; }

    PPTAnimDisplayBase *operator->() const { return m_player.get(); }

    /// The frame at the present position. Null, with a fault, when there is none.
    QImage frame();

private:
    QString load(const QByteArray &payload, unsigned int page, int fps);

    std::unique_ptr<PPTAnimDisplayBase> m_player;
    QString m_fault;
};
