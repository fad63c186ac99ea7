#include "tools/docpage/SlidePlayer.h"

#include "tools/docpage/DisplayManager.h"
#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/PictureFault.h"
#include "tools/docpage/PictureSize.h"

#include <QStringList>
#include <QVector>

namespace {

// The pages that a model has, as a part of a message.
QString pageNumbers(const PPT_fileDat &model)
{
    constexpr size_t kShown = 8;
    QStringList numbers;
    for (const auto &entry : model.pages) {
        if (numbers.size() == kShown) {
            numbers += QStringLiteral("...");
            break;
        }
        numbers += QString::number(entry.first);
    }
    return numbers.isEmpty() ? QStringLiteral("none") : numbers.join(QStringLiteral(", "));
}

struct Picture
{
    QString name;
    QByteArray bytes;
};

QVector<Picture> picturesOf(const PPT_Page &page)
{
    QVector<Picture> pictures{{QStringLiteral("background"), page.pageImage}};
    for (const PPT_Shape *shape : page.shapes) {
        if (!shape->picDat.isEmpty()) // there need not be one
            pictures.append(
                {QStringLiteral("picture of shape %1").arg(shape->shapeId), shape->picDat});
    }
    return pictures;
}

// The player keeps all pictures of a page, so that their sum is what counts.
QString sizeFault(const QVector<Picture> &pictures)
{
    qint64 pixels = 0;
    for (const Picture &picture : pictures) {
        const QString fault = pictureSizeFault(picture.bytes);
        if (!fault.isEmpty())
            return picture.name + QStringLiteral(": ") + fault;
        const QSize size = pictureSize(picture.bytes);
        if (size.isValid())
            pixels += qint64(size.width()) * size.height();
    }
    return pixels <= kMaxPixels ? QString()
                                : QStringLiteral("pictures too large: %1 pixels").arg(pixels);
}

// The player leaves out a picture that it cannot decode, and shows a part of an incomplete one.
QString contentFault(const QVector<Picture> &pictures)
{
    for (const Picture &picture : pictures) {
        const QString fault = pictureFault(picture.bytes);
        if (!fault.isEmpty())
            return picture.name + QStringLiteral(": ") + fault;
    }
    return {};
}

// Reads a slide into `model`, and its pictures into `pictures`. Returns why it cannot be shown at
// all.
QString readSlide(const QByteArray &payload, unsigned int page, SlideModel &model,
                  QVector<Picture> &pictures)
{
    const QString fault = model.read(payload);
    if (!fault.isEmpty())
        return fault;
    const PPT_Page *slide =
        page > 0xFFFF ? nullptr : model.data.getPage(static_cast<quint16>(page));
    if (!slide)
        return QStringLiteral("holds no page %1; its pages: %2")
            .arg(page)
            .arg(pageNumbers(model.data));
    if (slide->pageImage.isEmpty())
        return QStringLiteral("page %1 has no background").arg(page);
    pictures = picturesOf(*slide);
    return sizeFault(pictures);
}

} // namespace

QString slideSizeFault(const QByteArray &payload, unsigned int page, SlideModel &model)
{
    QVector<Picture> pictures;
    return readSlide(payload, page, model, pictures);
}

QString slideFault(const QByteArray &payload, unsigned int page)
{
    SlideModel model;
    QVector<Picture> pictures;
    const QString fault = readSlide(payload, page, model, pictures);
    return fault.isEmpty() ? contentFault(pictures) : fault;
}

SlidePlayer::SlidePlayer(const QByteArray &payload, unsigned int page, int fps)
    : m_player(CreatePPTAnimDisplayer())
    , m_fault(load(payload, page, fps))
{
}

QString SlidePlayer::load(const QByteArray &payload, unsigned int page, int fps)
{
    const QString fault = slideFault(payload, page);
    if (!fault.isEmpty())
        return fault;
    if (!m_player->Init(static_cast<int>(page), payload, fps))
        return QStringLiteral("the slide animation data cannot be loaded");
    const LibraryLog::DecoderSilence silence;
    m_player->SetCachPic(true);
    return {};
}

QImage SlidePlayer::frame()
{
    const LibraryLog::DecoderSilence silence;
    QImage image = m_player->GetImg();
    if (image.isNull() && m_fault.isEmpty())
        m_fault = undecodedFault(true);
    return image;
}
