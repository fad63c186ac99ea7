#pragma once

#include <QColor>
#include <QImage>
#include <QString>

#include <functional>
#include <memory>

namespace Poppler {
class Document;
}

/// The pages of a PDF document. For one thread.
class PdfFile
{
public:
    PdfFile();
    ~PdfFile();
    Q_DISABLE_COPY_MOVE(PdfFile)

    /// Keeps what the PDF library has to say off standard error, for all files.
    static void silence();

    /// \return what is wrong with it; empty when it is open and has a page
    QString open(const QString &path);

    int pageCount() const;

    /// The size of a page as it is shown, in points; null when the page is damaged.
    QSizeF pageSize(int page) const;

    /// Draws a whole page on paper of that colour, opaque.
    /// \param isStopped asked now and then; the drawing ends early when it says so
    /// \return the image; null when the page is damaged, memory lacks or it was stopped
    QImage render(int page, const QSize &pixels, const QColor &paper,
                  const std::function<bool()> &isStopped) const;

private:
    std::unique_ptr<Poppler::Document> m_document;
};
