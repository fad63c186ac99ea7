#include "tools/docimport/ZipEntry.h"

#include <QIODevice>
#include <QtEndian>

#include <algorithm>

#include <zlib.h>

namespace {

constexpr quint32 kEndMagic = 0x06054b50;
constexpr quint32 kEntryMagic = 0x02014b50;
constexpr quint32 kLocalMagic = 0x04034b50;
constexpr int kEndSize = 22;
constexpr int kEntrySize = 46;
constexpr int kLocalSize = 30;
constexpr int kMostDirectory = 1 << 24;

/// The numbers of a record.
class Record
{
public:
    Record(const QByteArray &bytes, int at)
        : m_bytes(bytes.constData() + at)
    {
    }

    quint16 at16(int offset) const { return qFromLittleEndian<quint16>(m_bytes + offset); }
    quint32 at32(int offset) const { return qFromLittleEndian<quint32>(m_bytes + offset); }

private:
    const char *m_bytes;
};

struct Entry
{
    int method = 0;
    qint64 size = 0; // as it is stored
    qint64 local = 0;
};

QByteArray readAt(QIODevice &archive, qint64 offset, qint64 size)
{
    return offset <= archive.size() && archive.seek(offset) ? archive.read(size) : QByteArray();
}

// A comment of any length follows it.
QByteArray directoryOf(QIODevice &archive)
{
    constexpr qint64 kMostComment = 0xffff;
    const qint64 tail = std::min(archive.size(), kEndSize + kMostComment);
    const QByteArray bytes = readAt(archive, archive.size() - tail, tail);
    for (int at = bytes.size() - kEndSize; at >= 0; --at) {
        const Record end(bytes, at);
        if (end.at32(0) == kEndMagic)
            return readAt(archive, end.at32(16), std::min<qint64>(end.at32(12), kMostDirectory));
    }
    return {};
}

bool findEntry(const QByteArray &directory, const QByteArray &name, Entry &entry)
{
    for (int at = 0; at + kEntrySize <= directory.size();) {
        const Record record(directory, at);
        if (record.at32(0) != kEntryMagic)
            return false;
        const int nameSize = record.at16(28);
        if (directory.mid(at + kEntrySize, nameSize) == name) {
            entry = {record.at16(10), record.at32(20), record.at32(42)};
            return true;
        }
        at += kEntrySize + nameSize + record.at16(30) + record.at16(32);
    }
    return false;
}

QByteArray inflated(const QByteArray &bytes, int most)
{
    QByteArray result(most, Qt::Uninitialized);
    z_stream stream = {};
    if (::inflateInit2(&stream, -MAX_WBITS) != Z_OK) // negative: without a header
        return {};
    QByteArray input = bytes;
    stream.next_in = reinterpret_cast<Bytef *>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef *>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    ::inflate(&stream, Z_SYNC_FLUSH);
    result.truncate(static_cast<int>(stream.total_out));
    ::inflateEnd(&stream);
    return result;
}

} // namespace

QByteArray zipEntry(QIODevice &archive, const QByteArray &name, int most)
{
    Entry entry;
    if (!findEntry(directoryOf(archive), name, entry))
        return {};
    const QByteArray local = readAt(archive, entry.local, kLocalSize);
    if (local.size() < kLocalSize || Record(local, 0).at32(0) != kLocalMagic)
        return {};
    const qint64 data =
        entry.local + kLocalSize + Record(local, 0).at16(26) + Record(local, 0).at16(28);
    const QByteArray stored = readAt(archive, data, std::min<qint64>(entry.size, most));
    return entry.method == 0 ? stored : inflated(stored, most);
}
