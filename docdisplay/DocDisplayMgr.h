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
/// page that does not exist is false. The reasons are logged. A page that holds slide animation
/// data can be part of a document, but this version has no image for it.
class DOCDISPLAY_EXPORT DocDisplayMgr : public QObject
{
    Q_OBJECT

public:
    /// A position in a document.
    struct AnimStatus
    {
        quint32 page;           ///< page index from 0
        quint32 step;           ///< step within the page; 0: its first; 0xFFFFFFFF: its last
        quint32 passedDuration; ///< ms played within the step; 0xFFFFFFFF: played to its end
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
    /// AddDocPage() replaces them, all others are empty. A negative count gives no slots.
    /// A slot takes 8 bytes; throws std::bad_alloc, with nothing changed, when memory runs out.
    virtual void Init(DocCovRslt::DOCRSLT_TYPE type, int pageCount) = 0;

    /// Names the page result file of one slot, in any order; a later name replaces an earlier one.
    /// The file is neither opened nor looked for here, and is read anew for every image.
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
    /// \return false when there is no such page; nothing has changed then.
    virtual bool SetAnimStatus(const AnimStatus &status) = 0;

    /// Copies the current position into `status`.
    virtual void GetAnimStatus(AnimStatus &status) = 0;

    /// Which navigation is possible: the bits of ActionState. An empty document gives 9.
    virtual int GetActionState() = 0;

    /// One step forward: to the next page, with a passed duration of 1 ms.
    /// \return false on the last page; the position is kept then.
    virtual bool NextAction() = 0;

    /// One step back: to the previous page; in a static document with a passed duration of 1 ms, in
    /// a slide deck to its end, {page, 0xFFFFFFFF, 0xFFFFFFFF}.
    /// \return false on page 0; the position is kept then.
    virtual bool PrevAction() = 0;

    /// The image of the current position.
    virtual QImage GetImg() = 0;

    /// The image of any position; the current one does not move. Every call reads the page's file,
    /// once to learn its format and once to decode it.
    /// \return the picture as it is encoded: in its own size in pixels and in the format that
    ///         QImage decodes it to, whatever picture format of the host's Qt it is. A small file
    ///         may announce a huge picture. Null when nothing can be shown.
    virtual QImage GetImg(const AnimStatus &status) = 0;

    /// Drops cached frame pictures. Pages that are pictures are never cached.
    virtual void ClearPicCach() = 0;

Q_SIGNALS:
    /// The image of the current position has changed: a slide deck was positioned, or a running
    /// animation has a new frame. Static documents never send it. On the manager's thread.
    void s_PptAnimUpdate();

    /// The running animation step has finished. On the manager's thread.
    void s_PptAnimFnished();
};

/// A new manager without a document (kind 3, no pages). The caller owns it and ends it with
/// DocDisplayMgr::Destroy(). Throws std::bad_alloc when memory runs out.
DOCDISPLAY_EXPORT DocDisplayMgr *CreateDisplayMgr();
