#include "tools/docpage/PictureSize.h"

#include "tools/docpage/LibraryLog.h"

#include <QBuffer>
#include <QImageReader>

QSize pictureSize(const QByteArray &picture)
{
    QBuffer buffer;
    buffer.setData(picture);
    QImageReader reader(&buffer);
    const LibraryLog::DecoderSilence silence;
    const QSize size = reader.size();
    return size.isEmpty() ? QSize() : size; // some formats announce a side of 0
}
