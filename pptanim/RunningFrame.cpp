#include "pptanim/RunningFrame.h"

#include <QPainter>

#include <algorithm>
#include <cstring>

namespace {

// More of them cost more than painting what lies between: to add one to a region takes the longer,
// the more there are.
constexpr int kMostRects = 24;

bool isInPieces(const QRegion &region)
{
    return region.rectCount() > kMostRects;
}

bool isUsual(const QImage &image)
{
    const QImage::Format format = image.format();
    return image.devicePixelRatio() == 1 &&
           (format == QImage::Format_RGB32 || format == QImage::Format_ARGB32 ||
            format == QImage::Format_ARGB32_Premultiplied);
}

bool isMoving(const Scene::Picture &picture)
{
    return picture.isMoving;
}

QRect placeOf(const Scene::Picture &picture)
{
    return {picture.at, picture.image.size()};
}

// Copies what lies at `rect` from an image of the rows from `fromTop` on.
void copyRect(QImage &to, const QImage &from, int fromTop, const QRect &rect)
{
    const auto size = static_cast<size_t>(rect.width()) * sizeof(QRgb);
    const auto offset = static_cast<size_t>(rect.x()) * sizeof(QRgb);
    const uchar *source = from.constScanLine(rect.y() - fromTop) + offset;
    uchar *target = to.scanLine(rect.y()) + offset;
    for (int rows = rect.height(); rows > 0; --rows) {
        std::memcpy(target, source, size);
        source += from.bytesPerLine();
        target += to.bytesPerLine();
    }
}

} // namespace

bool RunningFrame::fits(const Scene &scene)
{
    const auto &pictures = scene.pictures;
    return isUsual(scene.background) && std::any_of(pictures.begin(), pictures.end(), isMoving) &&
           std::all_of(pictures.begin(), pictures.end(),
                       [](const Scene::Picture &picture) { return isUsual(picture.image); });
}

RunningFrame::RunningFrame(const Scene &scene, const SceneKind &kind)
    : m_kind(kind)
    , m_isByRows(scene.background.format() == QImage::Format_ARGB32)
    , m_resting(scene.background)
{
    const auto begin = scene.pictures.begin();
    const auto end = scene.pictures.end();
    const auto lowest = std::find_if(begin, end, isMoving);
    m_lowestMoving = static_cast<size_t>(lowest - begin);

    const QRect page = m_resting.rect();
    QRect rows; // on the page: of those far beyond it the sum may be too high for numbers
    for (auto picture = lowest; picture != end; ++picture) {
        if (picture->isMoving)
            rows |= QRect(0, picture->at.y(), page.width(), picture->image.height()) & page;
    }

    m_resting.detach();
    if (m_resting.isNull())
        return;
    QPainter painter(&m_resting);
    const auto drawResting = [&](const Scene::Picture &picture) {
        if (!picture.isMoving)
            painter.drawImage(picture.at, picture.image);
    };
    std::for_each(begin, lowest, drawResting);
    m_below = m_resting.copy(rows.isEmpty() ? QRect(0, 0, 1, 1) : rows); // null: memory lacks
    m_belowTop = rows.top();
    std::for_each(lowest, end, drawResting);
}

QImage RunningFrame::paint(const Scene &scene, ReadyPictures &ready)
{
    std::vector<bool> movers;
    if (m_below.isNull() || !m_kind.goesOn(scene, movers))
        return {};
    const Touched touched = this->touched(scene, movers, ready);
    FrameBuffers::Buffer &buffer = m_buffers.next(m_resting);
    if (buffer.image.isNull())
        return {};
    for (const QRect &rect : buffer.painted - touched.region)
        copyRect(buffer.image, m_resting, 0, rect);
    buffer.painted = touched.region; // before anything can fail
    for (const QRect &rect : touched.seeThrough)
        copyRect(buffer.image, m_below, m_belowTop, rect);
    QPainter painter(&buffer.image);
    for (const QRect &rect : touched.region)
        drawPictures(painter, rect, scene, ready);
    painter.end(); // an image that is being painted on is not shared, but copied
    return buffer.image;
}

// Where pictures move, but for what lies below a solid part of what rests above them. Onto ARGB32
// Qt paints with 16 bits a colour, and the last digit of a pixel depends on where the line began
// that was painted: there it is whole rows.
RunningFrame::Touched RunningFrame::touched(const Scene &scene, const std::vector<bool> &movers,
                                            ReadyPictures &ready) const
{
    const QRect page = m_resting.rect();
    Touched touched;
    for (size_t i = m_lowestMoving; i < scene.pictures.size(); ++i) {
        const Scene::Picture &picture = scene.pictures[i];
        const QRect place = placeOf(picture) & page;
        if (movers[i])
            touched.region += m_isByRows && !place.isEmpty()
                                  ? QRect(0, place.y(), page.width(), place.height())
                                  : place;
        else if (!m_isByRows && touched.region.intersects(place))
            touched.region -= ready.of(picture.image).solid.translated(picture.at);
        if (isInPieces(touched.region))
            touched.region = touched.region.boundingRect();
    }
    touched.seeThrough = touched.region;
    for (size_t i = m_lowestMoving; i < scene.pictures.size() && !isInPieces(touched.seeThrough);
         ++i) {
        const Scene::Picture &picture = scene.pictures[i];
        if (movers[i] && !m_isByRows)
            touched.seeThrough -= ready.of(picture.image).solid.translated(picture.at);
    }
    return touched;
}

void RunningFrame::drawPictures(QPainter &painter, const QRect &rect, const Scene &scene,
                                ReadyPictures &ready) const
{
    painter.setClipRect(rect);
    for (size_t i = m_lowestMoving; i < scene.pictures.size(); ++i) {
        const Scene::Picture &picture = scene.pictures[i];
        if (placeOf(picture).intersects(rect))
            painter.drawImage(picture.at,
                              m_isByRows ? picture.image : ready.of(picture.image).image);
    }
}
