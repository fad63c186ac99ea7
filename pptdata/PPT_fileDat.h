#pragma once

#include "common/DocDisplayGlobal.h"
#include "pptdata/PPT_Objects.h"

#include <list>
#include <map>

/// \file
/// The containers of the animation model: a page of shapes and effects, and the model of pages.
///
/// Children are held by owning pointers. The containers' destructors free nothing: end a container
/// with release(), which releases and deletes its children by their own types.

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// Everything animated on one page.
/// \code
/// PPT_Page page;
/// page.shapes.push_back(new PPT_Shape);  // the page owns it from here on
/// page.effects.push_back(new PPT_Effect);
/// page.release();                        // both lists are released, deleted and empty
/// \endcode
class DOCDISPLAY_EXPORT PPT_Page : public PPT_OBJ
{
public:
    /// Writes the page. Null elements of the lists are counted, but write nothing: a page with one
    /// cannot be read back.
    /// \return whether the stream's status is Ok afterwards.
    bool streamTo(CStdDataStream &stream) const override;

    /// Reads a page; its shapes and effects are appended to those that are there, and are the
    /// page's. To read anew, release first:
    /// \code
    /// page.release();
    /// const bool isRead = page.streamFrom(stream); // without release() the lists would grow
    /// \endcode
    /// \return whether the stream's status is Ok afterwards; if not, all shapes and effects are
    ///         gone, also those from before the call.
    bool streamFrom(CStdDataStream &stream) override;

    /// Releases and deletes all shapes and effects. The other fields stay.
    void release() override;

    /// Releases and deletes the list's elements, in order, and empties it. Null elements are
    /// skipped. The list need not be one of this page's:
    /// \code
    /// page.ClearDat(page.effects);                // the page stands still, its shapes stay
    ///
    /// std::list<PPT_Shape *> rest;
    /// rest.splice(rest.end(), page.shapes);       // taken out: the caller's now
    /// page.ClearDat(rest);                        // deleted
    /// \endcode
    void ClearDat(std::list<PPT_Shape *> &list);
    void ClearDat(std::list<PPT_Effect *> &list);

    /// The first shape with the identifier `id` (a shape, despite the operation's name), which
    /// stays the page's; null when there is none. Null elements are skipped.
    /// \code
    /// if (PPT_Shape *shape = page.getPage(7)) // not to be deleted: release() would do it again
    ///     shape->left += 10;
    /// \endcode
    PPT_Shape *getPage(unsigned short id);

    quint16 pageId = 0;   ///< the key of the page in its model
    QByteArray pageImage; ///< encoded picture of the page without its shapes
    PPT_SlideShowTransition transition;
    std::list<PPT_Shape *> shapes;   ///< owned; in the order of the stream
    std::list<PPT_Effect *> effects; ///< owned; in the order of the stream, which is played
};

/// A whole animation model: the payload of a page result file of format 3.
/// \code
/// PPT_fileDat model;
/// CStdDataStream stream(bytes);
/// if (model.streamFrom(stream))
///     PPT_Page *page = model.getPage(3); // stays the model's
/// model.release();                       // in any case
/// \endcode
class DOCDISPLAY_EXPORT PPT_fileDat : public PPT_OBJ
{
public:
    /// Writes the head and all pages in ascending order. Every entry of `pages` must hold a page.
    bool streamTo(CStdDataStream &stream) const override;

    /// Reads a model into this one: pages are added, and take the place of those with the same
    /// identifier, which are released and deleted.
    /// \code
    /// model.streamFrom(first);  // pages 1 and 2
    /// PPT_Page *two = model.getPage(2);
    /// model.streamFrom(second); // pages 2 and 3: the model has 1, 2 and 3 now, 2 is the second's,
    ///                           // and `two` is gone
    /// \endcode
    /// \return false when the data ends after the head: the model has no pages then, the earlier
    ///         ones are gone, too. False also when the data ends in the head, or magic or version
    ///         are not this model's: the pages are as they were then, and release() has not been
    ///         called.
    bool streamFrom(CStdDataStream &stream) override;

    /// Releases and deletes all pages. The head stays.
    void release() override;

    /// The page with the identifier `pageId`, which stays the model's; null when there is none, or
    /// a null entry.
    PPT_Page *getPage(unsigned short pageId);

    /// Releases and deletes the map's pages, in ascending order, and empties it. Null entries are
    /// skipped. The map need not be this model's:
    /// \code
    /// std::map<unsigned short, PPT_Page *> old;
    /// old.swap(model.pages); // taken out: the caller's now
    /// model.ClearDat(old);   // deleted
    /// \endcode
    void ClearDat(std::map<unsigned short, PPT_Page *> &map);

    /// Makes `dst` a model of the one page `pageId` of this model, with this model's head. What
    /// `dst`, another model, held is released. The page is shared, not copied: take it out of `dst`
    /// again before either model is released or `dst` is used again, or it is freed twice.
    /// \code
    /// PPT_fileDat one;
    /// if (model.makePageFileDat(3, one)) {
    ///     one.streamTo(stream);
    ///     one.pages.clear(); // without release(): the page is still the model's
    /// }
    /// \endcode
    /// \return false, with `dst` untouched, when there is no such page.
    bool makePageFileDat(unsigned short pageId, PPT_fileDat &dst);

    /// Moves every page of `src`, another model, that this model lacks into it, and releases the
    /// others with `src`, which is without pages then. No head changes.
    /// \code
    /// PPT_Page *three = other.getPage(3);
    /// model.appendPageFileDat(other); // `three` is the model's, or deleted if that had a page 3
    /// \endcode
    void appendPageFileDat(PPT_fileDat &src);

    PPT_FileHead head;
    std::map<unsigned short, PPT_Page *> pages; ///< owned; by identifier
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
