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
    return reader.size();
}
