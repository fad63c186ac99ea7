#pragma once

#include <QFile>

/// Opens `file` for reading, unbuffered.
/// \return what is wrong with it as an input; empty when it is open, a regular file, and not empty
QString openInput(QFile &file);

/// Reads a whole file, which must not be larger than the payload of a page result file may be.
/// \return what is wrong with it; empty when `bytes` are its content
QString readInput(const QString &path, QByteArray &bytes);
