#pragma once

#include "AnimModel.h"
#include "LogSpy.h"
#include "PageFiles.h"

#include <QImage>

#include <iterator>

/// Pictures whose pixels a test can name, and players that paint them.
namespace AnimPaint {

using PageFiles::encoded;

constexpr QRgb kGrey = 0xFF808080;
constexpr QRgb kRed = 0xFFFF0000;
constexpr QRgb kGreen = 0xFF00FF00;
constexpr QRgb kBlue = 0xFF0000FF;
constexpr QRgb kYellow = 0xFFFFFF00;

inline QImage flat(int width, int height, QRgb colour, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(width, height, format);
    image.fill(colour);
    return image;
}

inline QByteArray png(int width, int height, QRgb colour)
{
    return encoded(flat(width, height, colour));
}

inline QImage indexed(int width, int height, const QVector<QRgb> &colours)
{
    QImage image(width, height, QImage::Format_Indexed8);
    image.setColorTable(colours);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, static_cast<uint>((x + y) % colours.size()));
    }
    return image;
}

/// A frame drawn by hand: pixel by pixel, and none outside of the image.
inline void fill(QImage &image, QRect rect, QRgb colour)
{
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            if (x >= 0 && y >= 0 && x < image.width() && y < image.height())
                image.setPixel(x, y, colour);
        }
    }
}

inline QByteArray garbage()
{
    return QByteArrayLiteral("no picture");
}

/// What anybody logs while it lives, through Qt or through the library.
class Silence
{
public:
    Silence()
        : before(qInstallMessageHandler(&Silence::receive))
    {
        qtMessages.clear();
    }
    ~Silence() { qInstallMessageHandler(before); }
    Q_DISABLE_COPY_MOVE(Silence)

    QStringList lines() { return qtMessages + spy.takeLines(); }

private:
    static void receive(QtMsgType, const QMessageLogContext &, const QString &message)
    {
        qtMessages << message;
    }

    static inline QStringList qtMessages; // a handler has no context
    QtMessageHandler before;
    LogSpy spy;
};

/// Plays a page at once.
class Player : public AnimModel::OpenPlayer
{
public:
    Player() = default;
    explicit Player(PPT_Page *page, float width = 60)
    {
        if (!Init(1, AnimModel::modelBytes({page}, width), 25)) // page 1, as newPage() numbers it
            qFatal("no model");
    }

    PPT_Shape *shape(int index) { return *std::next(curPage->shapes.begin(), index); }
    int state(int shapeId) { return shapeAnimDats.at(shapeId).drawState; }
    QImage imageAt(unsigned int step, unsigned int ms)
    {
        SetAnimStep(step);
        SetAnimPassedDuration(ms);
        return GetImg();
    }
};

} // namespace AnimPaint
