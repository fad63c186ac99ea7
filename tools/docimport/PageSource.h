#pragma once

#include "common/DocCovRslt.h"
#include "tools/docimport/ImportReport.h"
#include "tools/docimport/pdf/SlideWorkers.h"

#include <QVector>

/// The content of a page result file.
struct PagePayload
{
    QByteArray bytes;
    DocCovRslt::PAGE_FORMAT_DEF format = DocCovRslt::PAGE_FORMAT_NONE;
};

/// A document, as that of which pages are made. Pages are counted from 0.
class PageSource
{
public:
    PageSource() = default;
    virtual ~PageSource() = default;
    Q_DISABLE_COPY_MOVE(PageSource)

    /// Finds out what pages there are.
    /// \return what is wrong; empty when they are known, or an end was requested
    virtual QString open() = 0;

    virtual int pageCount() const = 0;

    /// Makes everything ready for these pages.
    /// \return what is wrong; empty when it is ready, or an end was requested
    virtual QString prepare(const QVector<int> &pages) = 0;

    /// Makes one of them. On any thread, on several at once.
    /// \param number that of its page result file
    /// \param report its number and page are there already
    /// \return what is wrong; empty when `payload` is the page
    virtual QString makePage(int page, int number, SlideTools &tools, PagePayload &payload,
                             SlideReport &report) const = 0;

    /// Why no page is animated, when that was tried; else empty.
    virtual QString note() const = 0;
};
