#pragma once

#include "common/DocDisplayGlobal.h"

#include <QByteArray>
#include <QImage>
#include <QObject>

/// Plays one slide of an animation model (pptdata/PPT_fileDat.h) step by step and frame by frame.
///
/// A step is what one click plays. A position is a step number, 0 being home, before the first
/// step, and the milliseconds played within that step. A player without a page is like one whose
/// page has no steps, and its image is null.
///
/// Create it with CreatePPTAnimDisplayer(). Not thread-safe: use it on the thread that created it,
/// whose event loop drives its timer and where its signals are sent. Bad data gives the results
/// said below; nothing is thrown or logged.
class DOCDISPLAY_EXPORT PPTAnimDisplayBase : public QObject
{
    Q_OBJECT

public:
    PPTAnimDisplayBase();
    ~PPTAnimDisplayBase() override;

    /// Loads one page and goes home, stopped and without cached pictures.
    /// \param pageId looked up by its low 16 bits
    /// \param data a whole model, as in the payload of a page result file of format 3
    /// \param fps frames a second while running: one each 1000 / fps ms (a whole number), or each
    ///        1000 ms when fps is below 1
    /// \return false when `data` is no model or has no such page; the player is cleared then.
    virtual bool Init(int pageId, const QByteArray &data, int fps) = 0;

    /// The page identifier that was given to Init(); -1 when cleared.
    virtual int GetPageID() = 0;

    /// Forgets the page, stops, and turns the caching of pictures off.
    virtual void Clear() = 0;

    /// The number of steps.
    virtual unsigned int GetStepCount() = 0;

    /// Turns the caching of decoded pictures on or off. On: decodes at once those that the present
    /// position shows, which after Init() are all of the page, and from then on keeps what it
    /// decodes, in a 32-bit format, until Clear() or ClearPicCachs(). Off: drops them.
    virtual void SetCachPic(bool on) = 0;

    /// Whether decoded pictures are cached.
    virtual bool IsCachPic() = 0;

    /// Drops the cached pictures. While caching is on they are cached again when they are painted.
    virtual void ClearPicCachs() = 0;

    /// Whether the position is step 0, 0 ms.
    virtual bool IsAtHome() = 0;

    /// Whether the last step has been played to its end.
    virtual bool IsAtEnd() = 0;

    /// Goes to step 0 and stops.
    virtual void GotoHome() = 0;

    /// Goes to the end of the last step and stops.
    virtual void GotoEnd() = 0;

    /// Goes to the start of a step, or of the last one when there are fewer, and stops.
    virtual void SetAnimStep(unsigned int step) = 0;

    /// Goes to a time within the present step, in ms, or to its end when it is shorter. Neither
    /// starts nor stops.
    virtual void SetAnimPassedDuration(unsigned int ms) = 0;

    /// How long a step lasts, in ms; 0 when there is no such step.
    virtual unsigned int GetStepDuration(unsigned int step) = 0;

    /// The present step.
    virtual unsigned int GetAnimStep() = 0;

    /// The ms played within the present step. After nextFrame() and StartRun() that may be more
    /// than it lasts.
    virtual unsigned int GetAnimPassedDuration() = 0;

    /// To the end of the present step, running or not; from there to the start of the next step,
    /// stopped.
    /// \return false at the end of the last step; nothing has changed then.
    virtual bool nextStep() = 0;

    /// To the end of the step before the present one, or home from step 1; stopped.
    /// \return false at step 0; nothing has changed then.
    virtual bool prevStep() = 0;

    /// Plays on by `ms`, which may lead past the step's end, but not into the next step. At home it
    /// enters a first step that starts by itself.
    /// \return false, with no time added, when the present step has ended already.
    virtual bool nextFrame(unsigned int ms) = 0;

    /// Plays back by `ms`, at most to the start of the present step.
    /// \return false when it is there already.
    virtual bool prevFrame(unsigned int ms) = 0;

    /// Starts to play the present step in real time. At its start the first millisecond counts as
    /// played.
    virtual void StartRun() = 0;

    /// Stops playing; the position stays.
    virtual void StopRun() = 0;

    /// Whether the step is being played.
    virtual bool IsRunning() = 0;

    /// The frame of the present position: the page's background with its shapes, in the size of the
    /// background in pixels. Null when there is no page or its background cannot be decoded; a
    /// shape whose picture cannot be decoded is left out. With caching off a background of indexed
    /// colours, which cannot be painted on, comes without shapes.
    virtual QImage GetImg() = 0;

Q_SIGNALS:
    /// Running: the frame of the present position is due. The position moves on when the receivers
    /// have returned. They may call any operation, and delete the player.
    void s_AnimUpdate();

    /// The running step has been played to its end, and the player has stopped. Sent after the
    /// s_AnimUpdate() for the last frame. Receivers may call any operation, and delete the player.
    void s_AnimFnished();
};

/// A new, cleared player. The caller owns it and deletes it. Throws std::bad_alloc when memory runs
/// out.
DOCDISPLAY_EXPORT PPTAnimDisplayBase *CreatePPTAnimDisplayer();
