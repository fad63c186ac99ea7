#include "tools/docpage/deck/SlideModel.h"

namespace {

constexpr int kHeadSize = 24;

} // namespace

QString SlideModel::read(const QByteArray &payload)
{
    CStdDataStream stream(payload);
    if (data.streamFrom(stream)) {
        bytesAfter = stream.device()->bytesAvailable();
        return {};
    }
    if (payload.size() >= kHeadSize && data.head.magic != PPT_FileHead::kMagic)
        return QStringLiteral("no slide animation data: it does not begin with \"PTAM\"");
    if (payload.size() >= kHeadSize && data.head.version != PPT_FileHead::kVersion)
        return QStringLiteral("unknown version %1 of slide animation data").arg(data.head.version);
    return QStringLiteral("the slide animation data is truncated or corrupt");
}

QByteArray SlideModel::payload() const
{
    QByteArray bytes;
    bytes.reserve(static_cast<int>(payloadSize()));
    CStdDataStream stream(&bytes, QIODevice::WriteOnly);
    data.streamTo(stream);
    return bytes;
}

qint64 SlideModel::payloadSize() const
{
    constexpr qint64 kPage = 2 + 4 + 14 + 4 + 4; // number, length, transition, two counts
    constexpr qint64 kShape = 2 + 32 + 4;        // number, place, length
    constexpr qint64 kEffect = 64;
    qint64 size = kHeadSize + 4; // with the number of pages
    for (const auto &entry : data.pages) {
        const PPT_Page &page = *entry.second;
        size += kPage + page.pageImage.size() + kEffect * static_cast<qint64>(page.effects.size());
        for (const PPT_Shape *shape : page.shapes)
            size += kShape + shape->picDat.size();
    }
    return size;
}
