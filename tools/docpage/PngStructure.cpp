#include "tools/docpage/PngStructure.h"

#include <QtEndian>

#include <algorithm>

#include <zlib.h>

namespace {

constexpr char kSignature[] = "\x89PNG\r\n\x1a\n";
constexpr int kSignatureSize = sizeof kSignature - 1;

// What surrounds the data of a chunk.
constexpr int kLengthSize = 4;
constexpr int kTypeSize = 4;
constexpr int kChecksumSize = 4;
constexpr quint32 kMaxLength = 0x7FFFFFFF;

constexpr quint32 kHeaderLength = 13; // width and height come first

QString corrupt(const QString &what)
{
    return QStringLiteral("PNG picture is corrupt (%1)").arg(what);
}

bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isChecksumRight(const uchar *type, quint32 length)
{
    const uInt checkedSize = kTypeSize + length;
    return crc32(0, type, checkedSize) == qFromBigEndian<quint32>(type + checkedSize);
}

} // namespace

bool PngStructure::isPng(const QByteArray &bytes)
{
    return bytes.startsWith(kSignature);
}

QString PngStructure::fault(const QByteArray &bytes)
{
    const auto *const begin = reinterpret_cast<const uchar *>(bytes.constData());
    const uchar *const end = begin + bytes.size();
    const uchar *chunk = begin + kSignatureSize;
    bool hasPixels = false;

    for (bool isFirst = true;; isFirst = false) {
        const qint64 room = end - chunk - (kLengthSize + kTypeSize + kChecksumSize);
        if (room < 0)
            break;
        const auto length = qFromBigEndian<quint32>(chunk);
        const uchar *const type = chunk + kLengthSize;
        const uchar *const data = type + kTypeSize;
        const QByteArray name(reinterpret_cast<const char *>(type), kTypeSize);
        if (!std::all_of(name.begin(), name.end(), isLetter))
            return corrupt(QStringLiteral("type of a chunk"));
        if (length > kMaxLength)
            return corrupt(QStringLiteral("length of chunk ") + QLatin1String(name));
        if (length > room)
            break;
        if (!isChecksumRight(type, length))
            return corrupt(QStringLiteral("checksum of chunk ") + QLatin1String(name));

        if (isFirst != (name == "IHDR") || (isFirst && length != kHeaderLength))
            return corrupt(QStringLiteral("header"));
        if (isFirst &&
            (qFromBigEndian<quint32>(data) == 0 || qFromBigEndian<quint32>(data + 4) == 0))
            return corrupt(QStringLiteral("picture size"));
        if (name == "IDAT" && length > 0)
            hasPixels = true;
        if (name == "IEND")
            return hasPixels ? QString() : corrupt(QStringLiteral("no pixels"));
        chunk = data + length + kChecksumSize;
    }
    return QStringLiteral("PNG picture is truncated");
}
