#pragma once

#include <QFile>

/// Opens `file` for reading, unbuffered.
/// \return what is wrong with it as an input; empty when it is open, a regular file, and not empty
QString openInput(QFile &file);
