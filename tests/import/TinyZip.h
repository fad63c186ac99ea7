#pragma once

#include <QByteArray>
#include <QList>

/// Zip archives, as far as a reader of their entries needs them: without checksums.
namespace TinyZip {

struct Entry
{
    QByteArray name;
    QByteArray content;
    bool isCompressed = false;
};

inline QByteArray number(quint64 value, int bytes)
{
    QByteArray text;
    for (int i = 0; i < bytes; ++i)
        text.append(static_cast<char>(value >> (8 * i)));
    return text;
}

inline QByteArray zeros(int count)
{
    return QByteArray(count, '\0');
}

/// Without what zlib puts around it.
inline QByteArray deflated(const QByteArray &content)
{
    const QByteArray bytes = qCompress(content);
    return bytes.mid(4 + 2, bytes.size() - 4 - 2 - 4);
}

inline QByteArray archive(const QList<Entry> &entries, const QByteArray &comment = {})
{
    QByteArray zip;
    QByteArray directory;
    for (const Entry &entry : entries) {
        const QByteArray stored = entry.isCompressed ? deflated(entry.content) : entry.content;
        const QByteArray common =
            number(entry.isCompressed ? 8 : 0, 2) + zeros(8) + number(quint64(stored.size()), 4) +
            number(quint64(entry.content.size()), 4) + number(quint64(entry.name.size()), 2);
        directory += "PK\1\2" + number(0x00140014, 4) + zeros(2) + common + zeros(12) +
                     number(quint64(zip.size()), 4) + entry.name;
        zip += "PK\3\4" + number(20, 2) + zeros(2) + common + zeros(2) + entry.name + stored;
    }
    return zip + directory + "PK\5\6" + zeros(8) + number(quint64(directory.size()), 4) +
           number(quint64(zip.size()), 4) + number(quint64(comment.size()), 2) + comment;
}

} // namespace TinyZip
