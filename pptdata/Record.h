#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QDataStream>
#include <QtEndian>

#include <array>
#include <climits>
#include <cstring>
#include <type_traits>

inline bool isOk(const QDataStream &stream)
{
    return stream.status() == QDataStream::Ok;
}

/// Whether nothing but zeros will come: a list may be announced to be as long as it likes.
inline bool isExhausted(const QDataStream &stream)
{
    return !isOk(stream) && (!stream.device() || stream.device()->atEnd());
}

/// What has not been read yet, where it lies in memory; nothing if it does not, or once reading has
/// failed. What is taken from there is to be skipped.
struct BytesAhead
{
    explicit BytesAhead(const QDataStream &stream)
    {
        const auto *buffer = qobject_cast<const QBuffer *>(stream.device());
        if (!isOk(stream) || !buffer || !buffer->isReadable())
            return;
        const QByteArray &bytes = buffer->data();
        const qint64 at = qMin<qint64>(buffer->pos(), bytes.size());
        data = bytes.constData() + at;
        size = bytes.size() - at;
    }

    const char *data = nullptr;
    qint64 size = 0;
};

/// A run of N bytes of the stream that is read or written at once and taken apart here: a device is
/// asked once per object, not once per field. All values are big-endian; a float is a double there.
template <int N>
class RecordReader
{
public:
    /// Reads up to N bytes. Short data sets the stream's status; what it lacks is zero.
    explicit RecordReader(QDataStream &stream)
        : available(qMax(stream.readRawData(bytes.data(), N), 0))
    {
    }

    /// Takes N bytes that have been read already.
    explicit RecordReader(const char *record)
        : available(N)
    {
        std::memcpy(bytes.data(), record, N);
    }

    /// The next value; zero when it is not there as a whole.
    template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T>>>
    RecordReader &operator>>(T &value)
    {
        value = fits<T>() ? qFromBigEndian<T>(bytes.data() + at) : T();
        at += int(sizeof(T));
        return *this;
    }
    RecordReader &operator>>(float &value)
    {
        double wide = 0;
        *this >> wide;
        value = static_cast<float>(wide);
        return *this;
    }

private:
    template <typename T>
    bool fits() const
    {
        return at + int(sizeof(T)) <= available;
    }

    std::array<char, N> bytes;
    int available;
    int at = 0;
};

template <int N>
class RecordWriter
{
public:
    template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T>>>
    RecordWriter &operator<<(T value)
    {
        qToBigEndian<T>(value, bytes.data() + at);
        at += int(sizeof(T));
        return *this;
    }
    RecordWriter &operator<<(float value) { return *this << static_cast<double>(value); }

    void writeTo(QDataStream &stream) const
    {
        Q_ASSERT(at == N);
        stream.writeRawData(bytes.data(), N);
    }

private:
    std::array<char, N> bytes;
    int at = 0;
};

/// Reads a byte array as QDataStream does, but makes no room for more than is there: the length is
/// only a claim.
inline void readByteArray(QDataStream &stream, QByteArray &bytes)
{
    constexpr quint32 kNull = 0xFFFFFFFF;
    quint32 length = 0;
    stream >> length;
    bytes.clear();
    if (length == kNull)
        return;
    if (length == 0) {
        bytes = QByteArray("", 0); // takes no memory, as resize(0) would
        return;
    }
    if (length > stream.device()->bytesAvailable()) {
        stream.skipRawData(INT_MAX); // to the end, which sets the status
        return;
    }
    bytes.resize(static_cast<int>(length));
    stream.readRawData(bytes.data(), bytes.size());
}
