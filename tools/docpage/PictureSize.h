#pragma once

#include <QByteArray>
#include <QSize>

/// The size in pixels that an encoded picture announces, without decoding it. Goes by the content,
/// as the display manager does; not valid when that is no picture, or one without pixels.
QSize pictureSize(const QByteArray &picture);
