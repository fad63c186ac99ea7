#include "tools/docpage/JpgStructure.h"

#include <QtEndian>

#include <cstring>

namespace {

// The second bytes of markers; the first is FF.
enum Marker : uchar {
    STUFFED = 0x00, // no marker: an FF of the picture data
    TEM = 0x01,     // stands alone
    SOF0 = 0xC0,    // the first of the frame headers
    DHT = 0xC4,     // lies between those
    JPG = 0xC8,     // lies between those
    DAC = 0xCC,     // lies between those
    SOF15 = 0xCF,   // the last of the frame headers
    RST0 = 0xD0,    // stands alone, the first of the restart markers
    RST7 = 0xD7,    // the last of the restart markers
    SOI = 0xD8,     // start of the picture
    EOI = 0xD9,     // end of the picture
    SOS = 0xDA,     // header of a scan, which the picture data follows
    FILL = 0xFF     // any number may precede a marker
};

QString corrupt(const char *what)
{
    return QStringLiteral("JPG picture is corrupt (%1)").arg(QLatin1String(what));
}

bool isFrameHeader(uchar marker)
{
    return marker >= SOF0 && marker <= SOF15 && marker != DHT && marker != JPG && marker != DAC;
}

bool standsAlone(uchar marker)
{
    return marker == STUFFED || marker == TEM || (marker >= RST0 && marker <= RST7);
}

// The second byte of the next marker that counts; `end` when there is none. What lies before it,
// picture data or bytes that decoders skip, is passed over.
const uchar *nextMarker(const uchar *at, const uchar *end)
{
    for (;;) {
        at = static_cast<const uchar *>(std::memchr(at, FILL, static_cast<size_t>(end - at)));
        while (at && at < end && *at == FILL)
            ++at;
        if (!at || at == end)
            return end;
        if (!standsAlone(*at))
            return at;
    }
}

} // namespace

bool JpgStructure::isJpg(const QByteArray &bytes)
{
    return bytes.startsWith("\xFF\xD8");
}

QString JpgStructure::fault(const QByteArray &bytes)
{
    const auto *const begin = reinterpret_cast<const uchar *>(bytes.constData());
    const uchar *const end = begin + bytes.size();
    const uchar *at = begin + 2;
    bool hasFrame = false;
    bool hasScan = false;

    while ((at = nextMarker(at, end)) < end) {
        const uchar marker = *at++;
        if (marker == EOI)
            return hasScan ? QString() : corrupt("no picture data");
        if (marker == SOI)
            return corrupt("a second picture begins within it");
        if (marker < SOF0)
            return corrupt("unknown marker");
        const qint64 room = end - at;
        if (room < 2)
            break;
        const int length = qFromBigEndian<quint16>(at); // with these two bytes
        if (length < 2)
            return corrupt("length of a segment");
        if (length > room)
            break;
        if (isFrameHeader(marker)) {
            // length, precision, height, width, number of components
            if (length < 8 || qFromBigEndian<quint16>(at + 3) == 0 ||
                qFromBigEndian<quint16>(at + 5) == 0)
                return corrupt("picture size");
            hasFrame = true;
        } else if (marker == SOS) {
            if (!hasFrame)
                return corrupt("picture data without a size");
            hasScan = true;
        }
        at += length;
    }
    return QStringLiteral("JPG picture is truncated");
}
