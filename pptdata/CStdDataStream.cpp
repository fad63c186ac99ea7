#include "pptdata/CStdDataStream.h"

CStdDataStream::CStdDataStream(const QByteArray &bytes)
{
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    setDevice(&buffer);
}

CStdDataStream::CStdDataStream(QByteArray *bytes, QIODevice::OpenMode mode)
    : buffer(bytes)
{
    buffer.open(mode | QIODevice::Unbuffered);
    setDevice(&buffer);
}

CStdDataStream::~CStdDataStream() = default;

CStdDataStream &operator<<(CStdDataStream &stream, const QByteArray &bytes)
{
    static const QByteArray empty("");
    static_cast<QDataStream &>(stream) << (bytes.isNull() ? empty : bytes);
    return stream;
}
