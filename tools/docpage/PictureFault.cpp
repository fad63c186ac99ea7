#include "tools/docpage/PictureFault.h"

#include "tools/docpage/DisplayManager.h"
#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/PictureCheck.h"
#include "tools/docpage/PictureSize.h"

#include <QImage>

QString pictureSizeFault(const QByteArray &picture)
{
    const QSize size = pictureSize(picture);
    if (qint64(size.width()) * size.height() <= kMaxPixels)
        return {};
    return QStringLiteral("picture too large: %1 x %2 pixels").arg(size.width()).arg(size.height());
}

QString pictureStructureFault(const QByteArray &picture)
{
    // Of an incomplete picture the decoder may make an image with the missing part in grey.
    const PictureCheck check = PictureCheck::of(picture);
    if (check.format != DocCovRslt::PAGE_FORMAT_NONE && !check.fault.isEmpty())
        return check.fault;
    return pictureSizeFault(picture);
}

QString decoderFault(const QString &messages)
{
    // The JPG decoder makes an image of anything, but tells when it had to invent a part of it.
    if (messages.contains(QStringLiteral("Corrupt JPEG data")) ||
        messages.contains(QStringLiteral("Premature end")))
        return QStringLiteral("JPG picture is corrupt (picture data)");
    return {};
}

QString pictureFault(const QByteArray &picture)
{
    QString fault = pictureStructureFault(picture);
    if (!fault.isEmpty())
        return fault;

    const LibraryLog::DecoderSilence silence;
    LibraryLog::takeMessages(); // about other pictures
    const bool isDecoded = !QImage::fromData(picture).isNull();
    fault = decoderFault(LibraryLog::takeMessages());
    if (isDecoded || !fault.isEmpty())
        return fault;
    fault = PictureCheck::of(picture).fault;
    return fault.isEmpty() ? undecodedFault(false) : fault;
}
