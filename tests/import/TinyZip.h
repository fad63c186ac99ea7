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

inline QByteArray number(quint32 value, int bytes)
{
    QByteArray text;
    for (int i = 0; i < bytes; ++i)
        text.append(static_cast<char>(value >> (8 * i)));
    return text;
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
        const QByteArray common = number(entry.isCompressed ? 8 : 0, 2) + number(0, 8) +
                                  number(quint32(stored.size()), 4) +
                                  number(quint32(entry.content.size()), 4) +
                                  number(quint32(entry.name.size()), 2);
        directory += "PK\1\2" + number(0x00140014, 4) + number(0, 2) + common + number(0, 12) +
                     number(quint32(zip.size()), 4) + entry.name;
        zip +=
            "PK\3\4" + number(20, 2) + number(0, 2) + common + number(0, 2) + entry.name + stored;
    }
    return zip + directory + "PK\5\6" + number(0, 8) + number(quint32(directory.size()), 4) +
           number(quint32(zip.size()), 4) + number(quint32(comment.size()), 2) + comment;
}

} // namespace TinyZip
