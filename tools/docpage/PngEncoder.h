#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

/// Encodes an image as a PNG picture.
/// \param quality 0 (small) to 100 (fast); -1 for Qt's own choice
/// \return what went wrong; empty when `png` is the picture
QString encodePng(const QImage &image, QByteArray &png, int quality = -1);
