#include "tools/docpage/PictureSize.h"

#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/PngStructure.h"

#include <QBuffer>
#include <QImageReader>

QSize pictureSize(const QByteArray &picture)
{
    // Its reader makes room for all that a chunk of text announces before it has seen any of it.
    if (PngStructure::isPng(picture))
        return PngStructure::size(picture);
    QBuffer buffer;
    buffer.setData(picture);
    QImageReader reader(&buffer);
    const LibraryLog::DecoderSilence silence;
    const QSize size = reader.size();
    return size.isEmpty() ? QSize() : size; // some formats announce a side of 0
}
