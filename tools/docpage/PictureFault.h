#pragma once

#include <QByteArray>
#include <QString>

/// The most pixels that a picture, or all pictures of a slide, may have: a small file may announce
/// one that takes all the memory there is.
constexpr qint64 kMaxPixels = 1 << 28; // 1 GiB as an image

/// Why a picture of this size is not worth decoding; empty when it is.
QString pictureSizeFault(const QByteArray &picture);

/// Why a picture is not worth showing: it is incomplete, too large, or cannot be decoded. Empty
/// when it is. JPG, PNG, and the other formats that Qt knows are pictures.
QString pictureFault(const QByteArray &picture);
