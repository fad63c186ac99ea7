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
/// ...
/// page.release();                        // both lists are released, deleted and empty
/// \endcode
class DOCDISPLAY_EXPORT PPT_Page : public PPT_OBJ
{
public:
    bool streamTo(CStdDataStream &stream) const override;

    /// Reads a page; its shapes and effects are appended to those that are there.
    /// \return whether the stream's status is Ok afterwards; if not, all shapes and effects are
    ///         gone, also those from before the call.
    bool streamFrom(CStdDataStream &stream) override;

    /// Releases and deletes all shapes and effects. The other fields stay.
    void release() override;

    /// Releases and deletes the list's elements, in order, and empties it. Null elements are
    /// skipped.
    void ClearDat(std::list<PPT_Shape *> &list);
    void ClearDat(std::list<PPT_Effect *> &list);

    /// The first shape with the identifier `id` (a shape, despite the operation's name), which
    /// stays the page's; null when there is none.
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
    /// \return false when the data ends behind the head, which leaves the model without pages;
    /// false
    ///         also when it ends in the head, or magic or version are not this model's, which
    ///         leaves the pages as they were.
    bool streamFrom(CStdDataStream &stream) override;

    /// Releases and deletes all pages. The head stays.
    void release() override;

    /// The page with the identifier `pageId`, which stays the model's; null when there is none.
    PPT_Page *getPage(unsigned short pageId);

    /// Releases and deletes the map's pages, in ascending order, and empties it.
    void ClearDat(std::map<unsigned short, PPT_Page *> &map);

    /// Makes `dst` a model of the one page `pageId` of this model, with this model's head. What
    /// `dst`, another model, held is released. The page is shared, not copied: take it out of `dst`
    /// again before either model is released, or it is freed twice: \code PPT_fileDat one; if
    /// (model.makePageFileDat(3, one)) {
    ///     one.streamTo(stream);
    ///     one.pages.clear();   // the page is still the model's
    /// }
    /// \endcode
    /// \return false, with `dst` untouched, when there is no such page.
    bool makePageFileDat(unsigned short pageId, PPT_fileDat &dst);

    /// Moves every page of `src`, another model, that this model lacks into it, and releases the
    /// others with `src`, which is without pages then. No head changes. \code
    /// model.appendPageFileDat(other);   // nothing is left of other but its head
    /// \endcode
    void appendPageFileDat(PPT_fileDat &src);

    PPT_FileHead head;
    std::map<unsigned short, PPT_Page *> pages; ///< owned; by identifier
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
