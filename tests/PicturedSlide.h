#pragma once

#include "AnimModel.h"
#include "PageFiles.h"

#include <QImage>
#include <QRandomGenerator>

#include <cmath>

/// Slides made by chance: pictures of many kinds at many places, and effects that move them.
class PicturedSlide
{
public:
    explicit PicturedSlide(quint32 seed)
        : m_random(seed)
    {
    }

    QRandomGenerator &random() { return m_random; }
    bool isOneIn(int chances) { return m_random.bounded(chances) == 0; }

    /// Every pixel by chance, also where the format does not look.
    QImage noise(QSize size, QImage::Format format)
    {
        QImage image(size, QImage::Format_ARGB32);
        for (int y = 0; y < size.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
            for (int x = 0; x < size.width(); ++x)
                line[x] = m_random.generate();
        }
        if (format == QImage::Format_RGB32 && image.reinterpretAsFormat(format))
            return image;
        return image.convertToFormat(format);
    }

    /// A picture of a shape. Half of them have a part that is opaque.
    QImage picture()
    {
        const int longest = isOneIn(10) ? 260 : 45;
        const QSize size(1 + m_random.bounded(longest), 1 + m_random.bounded(longest));
        QImage image = noise(size, QImage::Format_ARGB32);
        const double edge = m_random.bounded(10.0);
        const int kind = m_random.bounded(8);
        for (int y = 0; y < size.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
            for (int x = 0; x < size.width(); ++x)
                line[x] = (line[x] & 0xFFFFFF) | (alpha(kind, edge, size, x, y, line[x]) << 24);
        }
        return kind == 7 ? image.convertToFormat(anyFormat()) : image;
    }

    QByteArray encodedPicture()
    {
        return isOneIn(12) ? QByteArray("no picture") : PageFiles::encoded(picture());
    }

    PPT_Page *page(QSize size, const QByteArray &background)
    {
        std::list<PPT_Shape *> shapes;
        const int count = m_random.bounded(14);
        for (int i = 0; i < count; ++i) {
            shapes.push_back(AnimModel::newShape(1 + m_random.bounded(count), place(size.width()),
                                                 place(size.height()), place(60), place(60),
                                                 encodedPicture()));
        }
        std::list<PPT_Effect *> effects;
        for (int i = m_random.bounded(12); i > 0; --i) {
            effects.push_back(AnimModel::newEffect(
                1 + m_random.bounded(3), float(m_random.bounded(4.0)),
                1 + m_random.bounded(count + 1), isOneIn(3) ? AnimModel::kLeave : AnimModel::kEnter,
                m_random.bounded(10)));
        }
        return AnimModel::newPage(std::move(shapes), std::move(effects), background);
    }

private:
    QImage::Format anyFormat()
    {
        return static_cast<QImage::Format>(1 + m_random.bounded(QImage::NImageFormats - 1));
    }

    // Mostly somewhere on the page.
    float place(int length)
    {
        constexpr float kOdd[] = {-1e30F,         -2e9F,  -1.1e9F,
                                  -1073741760.0F, -1e9F,  -30000,
                                  -0.7F,          40000,  1.05e9F,
                                  1073741760.0F,  1.1e9F, 2147483520.0F,
                                  3.5e12F,        0,      AnimModel::kInfinity,
                                  AnimModel::kNaN};
        if (isOneIn(25))
            return kOdd[m_random.bounded(int(std::size(kOdd)))];
        return float(m_random.bounded(1.4 * length) - 0.3 * length);
    }

    static QRgb alpha(int kind, double edge, QSize size, int x, int y, QRgb chance)
    {
        const double right = size.width() - 1 - x;
        const double bottom = size.height() - 1 - y;
        switch (kind) {
        case 0: // opaque
        case 1:
            return 0xFF;
        case 2: // with soft edges
        case 3: {
            const double inside = std::min({x + 1.0, y + 1.0, right + 1, bottom + 1, edge});
            return QRgb(255 * inside / std::max(edge, 1.0)) | (inside == edge ? 0xFF : 0);
        }
        case 4: // an ellipse
            return std::hypot((x - right) / size.width(), (y - bottom) / size.height()) < 1 ? 0xFF
                                                                                            : 0;
        case 5: // thin strokes
            return (x + 2 * y) % 7 < 2 ? 0xFF : 0;
        default: // anything
            return chance >> 24;
        }
    }

    QRandomGenerator m_random;
};
