#pragma once

#include "AnimModel.h"

#include <QPainter>

/// The player that paints every visible shape for every frame, without regard to time: what the
/// library's player must show. Pictures, states and places are the library's: how these become a
/// frame is what it tells.
class PlainPainter : public AnimModel::OpenPlayer
{
public:
    QImage GetImg() override
    {
        if (!curPage)
            return {};
        QImage frame = MakeImage(curPage->pageImage);
        if (frame.isNull())
            return frame;
        getAllShapeDrawState();
        if (frame.format() == QImage::Format_Indexed8) // which nobody can paint on
            return frame;
        QPainter painter(&frame);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        QList<ShapeAnimDat *> visible;
        CoverShapes(shapeAnimDats, visible);
        for (ShapeAnimDat *dat : qAsConst(visible)) {
            if (dat->shape)
                draw(painter, *dat);
        }
        painter.end();
        return frame;
    }

private:
    void draw(QPainter &painter, ShapeAnimDat &dat)
    {
        QRect atRest = GetShapeOrgRect(dat.shape);
        const QPoint at = GetAnimCurretRect(dat, atRest).topLeft();
        const QImage picture = MakeImage(dat.shape->picDat);
        // Nothing is seen of what is farther away than an image can be large, and at the ends of
        // the range Qt's sums of coordinates may overflow.
        constexpr int kFar = 1 << 30;
        if (!picture.isNull() && qMax(qAbs(qint64(at.x())), qAbs(qint64(at.y()))) < kFar)
            painter.drawImage(at, picture);
    }
};
