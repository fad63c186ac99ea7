#pragma once

#include <QImage>

/// Saves a picture as a PNG file, which appears or replaces another when it is complete.
/// \return what went wrong; empty when the file is there
QString savePng(const QImage &image, const QString &path);
