#include "tools/docpage/PngStructure.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

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
constexpr uchar kPaletteColour = 3;   // the kind of colour that needs a palette

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

bool isSizeUsable(const uchar *header)
{
    const auto width = qFromBigEndian<quint32>(header);
    const auto height = qFromBigEndian<quint32>(header + 4);
    return width > 0 && width <= kMaxLength && height > 0 && height <= kMaxLength;
}

// Bits per sample and kind of colour go together as the format allows; there is one way to
// compress, one to filter, and two to interlace.
bool isEncodingKnown(const uchar *header)
{
    const uchar depth = header[8];
    const bool isPowerOfTwo = depth > 0 && depth <= 16 && (depth & (depth - 1)) == 0;
    bool isDepthRight = false;
    switch (header[9]) {
    case 0: // grey
        isDepthRight = isPowerOfTwo;
        break;
    case kPaletteColour:
        isDepthRight = isPowerOfTwo && depth <= 8;
        break;
    case 2: // red, green, blue
    case 4: // grey with alpha
    case 6: // red, green, blue with alpha
        isDepthRight = depth == 8 || depth == 16;
        break;
    default:
        break;
    }
    return isDepthRight && header[10] == 0 && header[11] == 0 && header[12] <= 1;
}

// A chunk that begins with a capital cannot be passed over.
bool isUnknownButNeeded(const QByteArray &name)
{
    return name[0] >= 'A' && name[0] <= 'Z' && name != "IHDR" && name != "PLTE" && name != "IDAT" &&
           name != "IEND";
}

} // namespace

bool PngStructure::isPng(const QByteArray &bytes)
{
    return bytes.startsWith(kSignature);
}

QSize PngStructure::size(const QByteArray &bytes)
{
    constexpr int kHeaderEnd =
        kSignatureSize + kLengthSize + kTypeSize + int(kHeaderLength) + kChecksumSize;
    if (!isPng(bytes) || bytes.size() < kHeaderEnd)
        return {};
    const auto *const chunk = reinterpret_cast<const uchar *>(bytes.constData()) + kSignatureSize;
    const uchar *const type = chunk + kLengthSize;
    const uchar *const header = type + kTypeSize;
    const bool isHeader = qFromBigEndian<quint32>(chunk) == kHeaderLength &&
                          std::memcmp(type, "IHDR", kTypeSize) == 0 &&
                          isChecksumRight(type, kHeaderLength);
    if (!isHeader || !isSizeUsable(header) || !isEncodingKnown(header))
        return {};
    return {qFromBigEndian<qint32>(header), qFromBigEndian<qint32>(header + 4)};
}

QString PngStructure::fault(const QByteArray &bytes)
{
    const auto *const begin = reinterpret_cast<const uchar *>(bytes.constData());
    const uchar *const end = begin + bytes.size();
    const uchar *chunk = begin + kSignatureSize;
    bool hasPixels = false;
    bool lacksPalette = false;

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
        if (isFirst) {
            if (!isSizeUsable(data))
                return corrupt(QStringLiteral("picture size"));
            if (!isEncodingKnown(data))
                return corrupt(QStringLiteral("header"));
            lacksPalette = data[9] == kPaletteColour;
        }
        if (isUnknownButNeeded(name))
            return corrupt(QStringLiteral("unknown chunk ") + QLatin1String(name));
        if (name == "PLTE")
            lacksPalette = false;
        if (name == "IDAT" && lacksPalette)
            return corrupt(QStringLiteral("no palette"));
        if (name == "IDAT" && length > 0)
            hasPixels = true;
        if (name == "IEND")
            return hasPixels ? QString() : corrupt(QStringLiteral("no pixels"));
        chunk = data + length + kChecksumSize;
    }
    return QStringLiteral("PNG picture is truncated");
}
