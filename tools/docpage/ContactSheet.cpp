#include "tools/docpage/ContactSheet.h"

#include <QPainter>

#include <new>

namespace {

constexpr int kWidth = 240; // of a picture, and its greatest height
constexpr int kGap = 12;
constexpr int kLabelHeight = 22;
constexpr int kFontSize = 13;
constexpr int kMostColumns = 10;

} // namespace

bool ContactSheet::takes(qint64 index, qint64 count)
{
    const qint64 last = count - 1;
    constexpr qint64 kSteps = kMostPictures - 1; // from the first picture to the last one
    const qint64 stride = qMax<qint64>(1, (last + kSteps - 1) / kSteps);
    return index == last || index % stride == 0;
}

void ContactSheet::add(const QImage &image, const QString &label)
{
    const QImage picture =
        image.scaled(kWidth, kWidth, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (picture.isNull()) // there would be a gap
        throw std::bad_alloc();
    m_pictures.append({picture, label});
}

QImage ContactSheet::image() const
{
    if (m_pictures.isEmpty())
        return {};
    const int count = m_pictures.size();
    int columns = 1;
    while (columns < kMostColumns && columns * columns < count)
        ++columns;
    const int rows = (count + columns - 1) / columns;
    const QSize cell(kWidth + kGap, m_pictures.constFirst().image.height() + kLabelHeight + kGap);

    QImage sheet(columns * cell.width() + kGap, rows * cell.height() + kGap, QImage::Format_RGB32);
    sheet.fill(QColor(0xf2, 0xf3, 0xf5));
    QPainter painter(&sheet);
    QFont font = painter.font();
    font.setPixelSize(kFontSize);
    painter.setFont(font);
    painter.setPen(Qt::black);
    for (int i = 0; i < count; ++i) {
        const QPoint corner(kGap + i % columns * cell.width(), kGap + i / columns * cell.height());
        const QImage &picture = m_pictures.at(i).image;
        painter.drawImage(corner, picture);
        painter.drawText(QRect(corner.x(), corner.y() + picture.height(), kWidth, kLabelHeight),
                         Qt::AlignCenter, m_pictures.at(i).label);
    }
    return sheet;
}
