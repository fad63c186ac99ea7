#include "tools/docpage/check/PictureVerdict.h"

#include "tools/docpage/DisplayManager.h"
#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/PictureCheck.h"
#include "tools/docpage/PictureFault.h"
#include "tools/docpage/PictureSize.h"
#include "tools/docpage/check/ChildRun.h"
#include "tools/docpage/check/ImageBytes.h"

#include <QBuffer>
#include <QDataStream>
#include <QImage>
#include <QImageReader>

#include <new>

namespace {

using Kind = PictureVerdict::Kind;

QByteArray formatOf(const QByteArray &picture)
{
    QBuffer buffer;
    buffer.setData(picture);
    buffer.open(QIODevice::ReadOnly);
    const LibraryLog::DecoderSilence silence;
    return QImageReader::imageFormat(&buffer);
}

PictureVerdict tooLarge(const QByteArray &format, QSize size, qint64 maxMemory)
{
    const QString what = size.isValid() ? QStringLiteral("picture of %1 x %2 pixels, %3 bytes")
                                              .arg(size.width())
                                              .arg(size.height())
                                              .arg(imageBytes(size))
                                        : QStringLiteral("picture");
    return {Kind::TooLarge,
            QStringLiteral("%1: decoding takes more than %2 bytes").arg(what).arg(maxMemory),
            format,
            {},
            0};
}

// Whether memory was what a failed decoder lacked. JPG's says so; of the others the image itself is
// by far the largest need.
bool lacksMemory(const QString &messages, QSize size)
{
    return messages.contains(QStringLiteral("Insufficient memory")) ||
           (size.isValid() && QImage(size, QImage::Format_RGB32).isNull());
}

QString undecodableWords(const QByteArray &picture)
{
    const QString fault = PictureCheck::of(picture).fault;
    return fault.isEmpty() ? undecodedFault(false) : fault;
}

// What is wrong with a picture that has been decoded.
QString damage(const QByteArray &picture, const QString &messages)
{
    const PictureCheck check = PictureCheck::of(picture);
    const bool isKnown = check.format != DocCovRslt::PAGE_FORMAT_NONE;
    return isKnown && !check.fault.isEmpty() ? check.fault : decoderFault(messages);
}

QByteArray toAnswer(const PictureVerdict &verdict)
{
    QByteArray answer;
    QDataStream stream(&answer, QIODevice::WriteOnly);
    stream << static_cast<qint32>(verdict.kind) << verdict.words << verdict.format << verdict.size
           << verdict.bytes;
    return answer;
}

PictureVerdict crashed(const QString &how)
{
    return {Kind::Crashed, QStringLiteral("the decoder crashes: ") + how, {}, {}, 0};
}

PictureVerdict fromAnswer(const QByteArray &answer)
{
    PictureVerdict verdict;
    qint32 kind = 0;
    QDataStream stream(answer);
    stream >> kind >> verdict.words >> verdict.format >> verdict.size >> verdict.bytes;
    verdict.kind = static_cast<Kind>(kind);
    return stream.status() == QDataStream::Ok ? verdict : crashed(QStringLiteral("no answer"));
}

// So that not each child has to do it.
void loadDecoders()
{
    static const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    Q_UNUSED(formats)
}

} // namespace

PictureVerdict PictureVerdict::of(const QByteArray &picture, qint64 maxMemory)
{
    loadDecoders();
    const ChildResult result =
        runInChild([&] { return toAnswer(inProcess(picture, maxMemory)); }, {maxMemory});
    switch (result.ending) {
    case ChildResult::Ending::Finished:
        return fromAnswer(result.answer);
    case ChildResult::Ending::Crashed:
        return crashed(result.fault);
    case ChildResult::Ending::TimedOut:
        return {Kind::TimedOut, QStringLiteral("the decoder ") + result.fault, {}, {}, 0};
    case ChildResult::Ending::NotStarted:
        break;
    }
    return {Kind::Unchecked, QStringLiteral("cannot be decoded now: ") + result.fault, {}, {}, 0};
}

PictureVerdict PictureVerdict::inProcess(const QByteArray &picture, qint64 maxMemory)
{
    QByteArray format;
    QSize announced;
    try {
        format = formatOf(picture);
        announced = pictureSize(picture);
        if (imageBytes(announced) > maxMemory)
            return tooLarge(format, announced, maxMemory);
        const LibraryLog::DecoderSilence silence;
        LibraryLog::takeMessages(); // about other pictures
        const QImage image = QImage::fromData(picture);
        const QString messages = LibraryLog::takeMessages();
        if (image.isNull() && lacksMemory(messages, announced))
            return tooLarge(format, announced, maxMemory);
        if (image.isNull())
            return {Kind::Undecodable, undecodableWords(picture), format, {}, 0};
        const QString fault = damage(picture, messages);
        return {fault.isEmpty() ? Kind::Decoded : Kind::Damaged, fault, format, image.size(),
                image.sizeInBytes()};
    } catch (const std::bad_alloc &) {
        return tooLarge(format, announced, maxMemory);
    }
}
