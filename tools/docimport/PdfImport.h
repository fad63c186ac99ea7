#pragma once

#include "tools/docimport/ImportOptions.h"
#include "tools/docimport/PageSource.h"

/// A PDF document, each page of which becomes a picture.
class PdfImport : public PageSource
{
public:
    PdfImport(const QString &path, const ImportOptions &options);

    QString open() override;
    int pageCount() const override { return m_pageCount; }
    QString prepare(const QVector<int> &) override { return {}; }
    QString makePage(int page, int number, SlideTools &tools, PagePayload &payload,
                     SlideReport &report) const override;
    QString note() const override { return {}; }

    /// Draws a page on white paper.
    /// \return what is wrong; empty when `image` is the page
    QString draw(int page, SlideTools &tools, QImage &image, SlideReport &report) const;

    /// An image of it as the payload of a page result file.
    QString encode(const QImage &image, PagePayload &payload) const;

private:
    const QString m_path;
    const ImportOptions &m_options;
    int m_pageCount = 0;
};

/// Draws a page of any PDF document with so many pixels.
/// \return what is wrong; empty when `image` is the page
QString drawPage(const QString &pdf, int page, const QSize &pixels, const QColor &paper,
                 SlideTools &tools, QImage &image);
