#pragma once

#include <QByteArray>
#include <QString>

/// The most pixels that a picture, or all pictures of a slide, may have: a small file may announce
/// one that takes all the memory there is.
constexpr qint64 kMaxPixels = 1 << 28; // 1 GiB as an image

/// Why a picture of this size is not worth decoding; empty when it is.
QString pictureSizeFault(const QByteArray &picture);

/// That, or why a picture is incomplete, as far as its structure tells. Decodes nothing.
QString pictureStructureFault(const QByteArray &picture);

/// What is wrong with a picture of which the decoders have reported this; empty when nothing is.
QString decoderFault(const QString &messages);

/// Why a picture is not worth showing: it is incomplete, too large, or cannot be decoded. Empty
/// when it is. JPG, PNG, and the other formats that Qt knows are pictures.
QString pictureFault(const QByteArray &picture);
