#include "tools/docviewer/ThumbnailRenderer.h"

#include "tools/docviewer/ScaledImage.h"

#include <new>

ThumbnailRenderer::ThumbnailRenderer(const ViewerDocument &document, QSize box)
    : m_box(box)
    , m_pages(document)
{
}

PagePicture ThumbnailRenderer::render(int page)
{
    PagePicture picture;
    try {
        picture = m_pages.picture({static_cast<quint32>(page), kEnd, kEnd});
        if (picture.fault.isEmpty())
            picture.image = fitted(picture.image);
    } catch (const std::bad_alloc &) {
        picture = {{}, QStringLiteral("out of memory")};
    }
    return picture;
}

QImage ThumbnailRenderer::fitted(const QImage &image) const
{
    QSize size = image.size();
    if (size.width() > m_box.width() || size.height() > m_box.height())
        size = size.scaled(m_box, Qt::KeepAspectRatio).expandedTo({1, 1});
    return scaledImage(image, size).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}
