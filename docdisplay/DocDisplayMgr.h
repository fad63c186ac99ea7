#pragma once

#include "common/DocCovRslt.h"
#include "common/DocDisplayGlobal.h"

#include <QImage>
#include <QObject>
#include <QString>

/// Shows one converted document: it is told the document's kind and page count, is given one page
/// result file per page, and hands back page images.
///
/// Create it with CreateDisplayMgr(), end it with Destroy(). Not thread-safe: use it on the thread
/// that created it. No operation throws on bad input: what cannot be shown is a null image, and a
/// page that does not exist is false. What is wrong with a page's file is logged; of what is wrong
/// with its content the null image alone tells.
///
/// Pages that hold slide animation data are slides. In a slide deck (kind 1) the slide of the
/// current position is live: it is kept loaded, and it plays in real time, driven by the thread's
/// event loop. There is no pause. In every other document a slide is shown in its final state.
class DOCDISPLAY_EXPORT DocDisplayMgr : public QObject
{
    Q_OBJECT

public:
    /// A position in a document.
    struct AnimStatus
    {
        quint32 page;           ///< page index from 0
        quint32 step;           ///< step within the page, from 1; 0: home, before the first step;
                                ///< 0xFFFFFFFF: the last one
        quint32 passedDuration; ///< ms played within the step; 0: at its start and not running;
                                ///< 0xFFFFFFFF: played to its end
    };

    /// Bits of GetActionState().
    enum ActionState : int {
        ACTION_FIRST_PAGE = 0x1, ///< the current page is page 0
        ACTION_AT_HOME = 0x2,    ///< slide deck: at the start of the page's animation
        ACTION_AT_END = 0x4,     ///< slide deck: at the end of the page's animation
        ACTION_LAST_PAGE = 0x8   ///< there is no next page
    };

    DocDisplayMgr();
    ~DocDisplayMgr() override;

    /// Deletes the object. The pointer must not be used afterwards.
    virtual void Destroy() = 0;

    /// Starts a document of `pageCount` page slots and goes to page 0, step 0, 0 ms. May be called
    /// again for another document: slots that both documents have keep their files until
    /// AddDocPage() replaces them, all others are empty. A negative count gives no slots. No slide
    /// is live until a position is set, also in a deck, and nothing runs any more.
    /// A slot takes 8 bytes; throws std::bad_alloc, with nothing changed, when memory runs out.
    virtual void Init(DocCovRslt::DOCRSLT_TYPE type, int pageCount) = 0;

    /// Names the page result file of one slot, in any order; a later name replaces an earlier one.
    /// The file is neither opened nor looked for here, and is read anew for every image. A slide
    /// that is live stays as it was loaded until the position has been on another page.
    /// \return false without a document (kind above 2) or when `page` is not below the slot count.
    virtual bool AddDocPage(unsigned int page, const QString &file) = 0;

    /// Whether the slot exists, is filled, and its file (or a folder) exists. The content is not
    /// examined.
    virtual bool IsPageCanDisplay(unsigned int page) = 0;

    /// The number of page slots.
    virtual unsigned int GetPageCount() = 0;

    /// The same as SetAnimStatus({page, 0, 0}).
    virtual bool SetCurPage(unsigned int page) = 0;

    /// The current page, from 0. It is 0 also when there are no pages.
    virtual unsigned int GetCurPage() = 0;

    /// Whether the document is an animated slide deck (kind 1).
    virtual bool IsDocHaveAnimation() = 0;

    /// Moves to a position. A static document takes over step and duration as they are.
    ///
    /// A slide deck loads the slide unless it is live, goes to the step and the time, or to the
    /// end where they are beyond it, sends s_PptAnimUpdate(), and starts to play when
    /// `passedDuration` is not 0. From home the first step is entered when it starts by itself. A
    /// step that has ended, as home always has, is started as well: one more update is sent, and
    /// s_PptAnimFnished(). A page that is no slide, or cannot be loaded, becomes the current one
    /// without a signal; no slide is live then.
    /// \return false when there is no such page; nothing has changed then.
    virtual bool SetAnimStatus(const AnimStatus &status) = 0;

    /// Copies the current position into `status`: as SetAnimStatus() was given it, or as the last
    /// NextAction() or PrevAction() left it. It does not move on while a slide plays.
    virtual void GetAnimStatus(AnimStatus &status) = 0;

    /// Which navigation is possible: the bits of ActionState. Those of a slide tell of the live one
    /// as it plays, and are both set while none is live. An empty document gives 9, an empty slide
    /// deck 15.
    virtual int GetActionState() = 0;

    /// One step forward. Within a step of a slide deck: to its end; at the end of a step: to the
    /// next one. Either way the player is started, and sends no signal at once. At the end of a
    /// slide, and in other documents: to the next page, as SetAnimStatus() with step 0 and 1 ms.
    /// \return false at the end of the last page; the position is kept then.
    virtual bool NextAction() = 0;

    /// One step back. Within a slide of a slide deck: to the end of the step before, or home from
    /// the first one. The player is stopped, and sends no signal. At home, and in other documents:
    /// to the previous page, as SetAnimStatus() with 0xFFFFFFFF for step and time in a slide deck,
    /// with step 0 and 1 ms in other documents.
    /// \return false at the start of page 0; the position is kept then.
    virtual bool PrevAction() = 0;

    /// The image of the current position.
    virtual QImage GetImg() = 0;

    /// The image of any position; the current one does not move, and a slide that plays is not
    /// disturbed. Every call reads the page's file, once to learn its format and, but for the live
    /// slide, once to decode it.
    ///
    /// The live slide is shown as it plays, whatever step and time are asked for. Another slide of
    /// a deck is shown at that position, which loads it for this one image. No slide but the live
    /// one is shown while the file of the current page is missing.
    /// \return a picture as it is encoded: in its own size in pixels and in the format that QImage
    ///         decodes it to, whatever picture format of the host's Qt it is; a frame of a slide in
    ///         the size of its background and in a 32-bit format. A small file may announce a huge
    ///         picture. Null when nothing can be shown.
    virtual QImage GetImg(const AnimStatus &status) = 0;

    /// Drops the decoded pictures of the live slide, until its next image. Nothing else is cached.
    virtual void ClearPicCach() = 0;

    // Both signals come on the manager's thread. Receivers may call any operation, also Init(),
    // SetAnimStatus() and Destroy(). A tick of the player that is under way then still comes to its
    // end, which may be s_PptAnimFnished(); after Destroy() nothing comes.
Q_SIGNALS:
    /// The image of the current position has changed: a slide deck was positioned, or a running
    /// animation has a new frame. Static documents never send it.
    void s_PptAnimUpdate();

    /// The running animation step has finished. Sent after the update for its last frame.
    void s_PptAnimFnished();
};

/// A new manager without a document (kind 3, no pages). The caller owns it and ends it with
/// DocDisplayMgr::Destroy(). Throws std::bad_alloc when memory runs out.
DOCDISPLAY_EXPORT DocDisplayMgr *CreateDisplayMgr();
