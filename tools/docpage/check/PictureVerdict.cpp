#include "tools/docpage/check/PictureVerdict.h"

#include "tools/docpage/DisplayManager.h"
#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/PictureCheck.h"
#include "tools/docpage/PictureFault.h"
#include "tools/docpage/PictureSize.h"
#include "tools/docpage/check/DecodingBudget.h"
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

// What the picture says of itself, without being decoded.
struct Announced
{
    QByteArray format;
    QSize size;
    qint64 bytes = 0; // of the image that is kept
};

// The bits of a pixel of the image that the decoder will make; the player's when it does not tell.
int announcedDepth(const QByteArray &picture)
{
    constexpr int kDepth = 32;
    QBuffer buffer;
    buffer.setData(picture);
    QImageReader reader(&buffer);
    const LibraryLog::DecoderSilence silence;
    const int depth = QImage(1, 1, reader.imageFormat()).depth();
    return depth > 0 ? depth : kDepth;
}

void readAnnounced(const QByteArray &picture, PictureUse use, Announced &announced)
{
    announced.format = formatOf(picture);
    announced.size = pictureSize(picture);
    announced.bytes = use == PictureUse::Slide
                          ? imageBytes(announced.size)
                          : imageBytes(announced.size, announcedDepth(picture));
}

PictureVerdict tooLarge(const Announced &announced, qint64 maxMemory)
{
    const QSize size = announced.size;
    const QString what = size.isValid() ? QStringLiteral("picture of %1 x %2 pixels, %3 bytes")
                                              .arg(size.width())
                                              .arg(size.height())
                                              .arg(announced.bytes)
                                        : QStringLiteral("picture");
    return {Kind::TooLarge,
            QStringLiteral("%1: decoding takes more than %2 bytes").arg(what).arg(maxMemory),
            announced.format,
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

// A broken decoder may have written it.
PictureVerdict fromAnswer(const QByteArray &answer)
{
    PictureVerdict verdict;
    qint32 kind = 0;
    QDataStream stream(answer);
    stream >> kind >> verdict.words >> verdict.format >> verdict.size >> verdict.bytes;
    const bool isKind = kind >= 0 && kind <= static_cast<qint32>(Kind::Unchecked);
    if (stream.status() != QDataStream::Ok || !isKind)
        return crashed(QStringLiteral("no answer"));
    verdict.kind = static_cast<Kind>(kind);
    return verdict;
}

// So that not each child has to do it.
void loadDecoders()
{
    static const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    Q_UNUSED(formats)
}

} // namespace

PictureVerdict PictureVerdict::of(const QByteArray &picture, PictureUse use, DecodingBudget &budget)
{
    if (!budget.isTimeLeft())
        return {Kind::Unchecked,
                QStringLiteral("not decoded: the pictures before it took all the time there is for "
                               "a file"),
                {},
                {},
                0};
    loadDecoders();
    const ChildResult result = runInChild(
        [&] { return toAnswer(inProcess(picture, use, budget.memory())); }, budget.limits());
    budget.spend(result);
    switch (result.ending) {
    case ChildResult::Ending::Finished:
        return fromAnswer(result.answer);
    case ChildResult::Ending::Crashed:
        return crashed(result.fault);
    case ChildResult::Ending::OutOfMemory:
        return tooLarge({}, budget.memory());
    case ChildResult::Ending::TimedOut:
        return {Kind::TimedOut, QStringLiteral("the decoder ") + result.fault, {}, {}, 0};
    case ChildResult::Ending::NotStarted:
        break;
    }
    return {Kind::Unchecked, QStringLiteral("cannot be decoded now: ") + result.fault, {}, {}, 0};
}

PictureVerdict PictureVerdict::inProcess(const QByteArray &picture, PictureUse use,
                                         qint64 maxMemory)
{
    Announced announced;
    try {
        readAnnounced(picture, use, announced);
        if (announced.bytes > maxMemory)
            return tooLarge(announced, maxMemory);
        const LibraryLog::DecoderSilence silence;
        LibraryLog::takeMessages(); // about other pictures
        const QImage image = QImage::fromData(picture);
        const QString messages = LibraryLog::takeMessages();
        if (image.isNull() && lacksMemory(messages, announced.size))
            return tooLarge(announced, maxMemory);
        if (image.isNull())
            return {Kind::Undecodable, undecodableWords(picture), announced.format, {}, 0};
        const QString fault = damage(picture, messages);
        return {fault.isEmpty() ? Kind::Decoded : Kind::Damaged, fault, announced.format,
                image.size(),
                use == PictureUse::Slide ? imageBytes(image.size()) : image.sizeInBytes()};
    } catch (const std::bad_alloc &) {
        return tooLarge(announced, maxMemory);
    }
}
