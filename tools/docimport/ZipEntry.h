#pragma once

#include <QByteArray>

class QIODevice;

/// The beginning of an entry of a zip archive, at most `most` bytes; empty when there is none of
/// that name, or it cannot be read. An archive that is damaged is nothing else: whoever reads all
/// of it will tell.
QByteArray zipEntry(QIODevice &archive, const QByteArray &name, int most);
