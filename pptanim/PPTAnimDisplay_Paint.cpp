// Painting: decoded pictures, their cache, and the frame made of them.
#include "pptanim/PPTAnimDisplay.h"

#include <QPainter>

namespace {

bool isFastFormat(QImage::Format format)
{
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32 ||
           format == QImage::Format_ARGB32_Premultiplied;
}

// An image with colours has less than 2^30 pixels a side: what is farther away leaves no trace. At
// the ends of the range Qt's sums of coordinates may overflow.
bool isNearby(const QPoint &at)
{
    constexpr int kFar = 1 << 30;
    return at.x() > -kFar && at.x() < kFar && at.y() > -kFar && at.y() < kFar;
}

} // namespace

QImage PPTAnimDisplay::MakeImage(const QByteArray &data)
{
    QImage image;
    const auto cached = picCachs.find(&data);
    if (cached != picCachs.end())
        image = cached->second;
    if (cachPic && isFastFormat(image.format()))
        return image;
    if (image.isNull())
        image.loadFromData(data);
    if (!cachPic)
        return image;
    if (!isFastFormat(image.format()))
        image = image.convertToFormat(QImage::Format_ARGB32);
    picCachs[&data] = image;
    return image;
}

QImage PPTAnimDisplay::GetImg()
{
    if (!curPage)
        return {};
    const QImage background = MakeImage(curPage->pageImage);
    if (background.isNull())
        return background;
    return cachPic ? frameOnce(background) : plainFrame(background);
}

QImage PPTAnimDisplay::plainFrame(QImage image)
{
    QPainter painter;
    // The one format that a decoder makes and a painter cannot paint on, and would log about. The
    // shapes' states are brought up to date all the same.
    if (image.format() != QImage::Format_Indexed8 && painter.begin(&image))
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
    PaintShapes(painter);
    if (painter.isActive())
        painter.end();
    return image;
}

QImage PPTAnimDisplay::frameOnce(const QImage &background)
{
    const quint64 evaluation = updateShapeStates();
    if (!lastFrame.isNull() && evaluation == lastFrameEvaluation &&
        background.cacheKey() == lastBackground)
        return lastFrame;
    lastFrame = {}; // the painter may take it back
    Scene scene;
    scene.background = background;
    const bool isWhole = addPictures(scene);
    QImage frame = framePainter.paint(scene);
    if (isWhole) {
        lastFrame = frame;
        lastFrameEvaluation = evaluation;
        lastBackground = background.cacheKey();
    }
    return frame;
}

bool PPTAnimDisplay::addPictures(Scene &scene)
{
    QList<ShapeAnimDat *> list;
    CoverShapes(shapeAnimDats, list);
    scene.pictures.reserve(static_cast<size_t>(list.size()));
    bool isWhole = true;
    for (ShapeAnimDat *dat : qAsConst(list)) {
        if (!dat->shape)
            continue;
        QRect org = GetShapeOrgRect(dat->shape);
        const QPoint at = GetAnimCurretRect(*dat, org).topLeft();
        QImage picture = MakeImage(dat->shape->picDat);
        isWhole = isWhole && !picture.isNull();
        if (picture.isNull() || !isNearby(at))
            continue;
        const bool isMoving = dat->drawState == DRAW_MOVE;
        const unsigned int left = dat->effectDuration - dat->effectPassed;
        if (isMoving && (scene.movingFor == 0 || left < scene.movingFor))
            scene.movingFor = left;
        scene.pictures.push_back({std::move(picture), at, isMoving});
    }
    return isWhole;
}

void PPTAnimDisplay::PaintShapes(QPainter &painter)
{
    updateShapeStates();
    QList<ShapeAnimDat *> list;
    CoverShapes(shapeAnimDats, list);
    DrawShapes(painter, list);
}

void PPTAnimDisplay::DrawShapes(QPainter &painter, QList<ShapeAnimDat *> &list)
{
    for (ShapeAnimDat *dat : qAsConst(list)) {
        if (dat)
            DrawShape(painter, *dat);
    }
}

void PPTAnimDisplay::DrawShape(QPainter &painter, ShapeAnimDat &d)
{
    if (!d.shape || d.drawState == DRAW_HIDE)
        return;
    QRect org = GetShapeOrgRect(d.shape);
    const QPoint at = GetAnimCurretRect(d, org).topLeft();
    const QImage picture = MakeImage(d.shape->picDat);
    if (!picture.isNull() && isNearby(at))
        painter.drawImage(at, picture);
}

void PPTAnimDisplay::MakePicCachs()
{
    if (!curPage || !cachPic)
        return;
    MakeImage(curPage->pageImage);
    QList<ShapeAnimDat *> list;
    CoverShapes(shapeAnimDats, list);
    for (const ShapeAnimDat *dat : qAsConst(list)) {
        if (dat->shape)
            MakeImage(dat->shape->picDat);
    }
}

void PPTAnimDisplay::SetCachPic(bool on)
{
    cachPic = on;
    if (on)
        MakePicCachs();
    else
        ClearPicCachs();
}

bool PPTAnimDisplay::IsCachPic()
{
    return cachPic;
}

void PPTAnimDisplay::ClearPicCachs()
{
    picCachs.clear();
    lastFrame = {};
    framePainter.clear();
}
