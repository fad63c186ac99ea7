#pragma once

#include <QByteArray>
#include <QImage>

/// Whether the pixels of images of this format are a QRgb each.
bool isQRgbFormat(QImage::Format format);

/// The SHA-256 of an image's pixels as hexadecimal digits: row by row from the top, each pixel as
/// the four bytes blue, green, red and alpha as they are, alpha FF where the image has none. The
/// image has a QRgb format, as the frames of a player that caches its pictures.
QByteArray frameHash(const QImage &image);
