#pragma once

#include "common/DocDisplayGlobal.h"

#include <QBuffer>
#include <QByteArray>
#include <QDataStream>

/// The binary stream of the animation model: a QDataStream with its default settings, so that all
/// values are big-endian and floats travel as 8-byte doubles. Leave the settings as they are: the
/// model reads and writes whole records at once and does not ask for them.
class DOCDISPLAY_EXPORT CStdDataStream : public QDataStream
{
public:
    /// Reads `bytes`, of which it keeps a (shared) copy.
    explicit CStdDataStream(const QByteArray &bytes);

    /// Reads or writes `*bytes`, which stays the caller's and must outlive the stream.
    CStdDataStream(QByteArray *bytes, QIODevice::OpenMode mode);

    ~CStdDataStream();

private:
    QBuffer buffer; // unbuffered: a device's own buffer would only copy the bytes once more
};

/// Writes a byte array: its length as an unsigned 32-bit number, then its bytes. A null array is
/// written as an empty one; a plain QDataStream would write the length 0xFFFFFFFF instead, and so
/// would a byte array that is not the first of a chain, as what `stream << id` returns is a
/// QDataStream.
DOCDISPLAY_EXPORT CStdDataStream &operator<<(CStdDataStream &stream, const QByteArray &bytes);
