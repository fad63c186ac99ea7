#include "emfdeal/DecodedFormat.h"
#include "emfdeal/EmfDeal.h"
#include "emfdeal/LogModule.h"
#include "emfdeal/PageResultHeader.h"

#include <KxBase/KxLog.h>

#include <QFile>

#include <array>
#include <limits>
#include <new>

namespace {

// The most of a payload that is read: what one QByteArray can hold, with room for its own head and
// the closing NUL.
qint64 payloadLimit(const PageResultHeader &header)
{
    constexpr qint64 kMaxByteArray = std::numeric_limits<int>::max() - 64;
    return qMin<qint64>(static_cast<quint32>(header.datSize), kMaxByteArray);
}

// Reads up to `limit` bytes, growing with what the file has rather than with what is announced.
// When memory runs out it ends like a file that does.
QByteArray readUpTo(QFile &file, qint64 limit)
{
    constexpr qint64 kStep = 65536; // for files that do not tell their size

    QByteArray bytes;
    try {
        while (bytes.size() < limit) {
            const int have = bytes.size();
            const qint64 step = qMin(limit - have, qMax(file.size() - file.pos(), kStep));
            bytes.resize(have + static_cast<int>(step));
            const qint64 got = file.read(bytes.data() + have, step);
            bytes.resize(have + static_cast<int>(qMax<qint64>(got, 0)));
            if (got <= 0)
                break;
        }
        if (!bytes.isEmpty())
            bytes.squeeze(); // growing by steps has made room for up to twice as many
    } catch (const std::bad_alloc &) {
        return bytes;
    }
    return bytes;
}

// Reads up to `limit` bytes, which are not kept, and returns how many there were. A seek would pass
// over those that cannot be read, too.
qint64 countUpTo(QFile &file, qint64 limit)
{
    std::array<char, 65536> block;
    qint64 count = 0;
    while (count < limit) {
        const qint64 got = file.read(block.data(), qMin<qint64>(limit - count, block.size()));
        if (got <= 0)
            break;
        count += got;
    }
    return count;
}

// Opens a page result file and reads its header; the payload comes next. What is refused is logged.
bool openPage(QFile &file, PageResultHeader &header)
{
    if (!file.open(QIODevice::ReadOnly)) {
        KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, kLogModule,
                               "IsEmfDealRsltFile, open fialed! (err:%d, file:%s)", file.error(),
                               file.fileName().toUtf8().constData());
        return false;
    }

    // A failed read (-1) is no short one: it goes on with the zeros and is refused by the magic.
    std::array<char, PageResultHeader::kSize> head = {};
    const auto headRead = static_cast<qint32>(file.read(head.data(), head.size()));
    if (static_cast<quint32>(headRead) < head.size()) {
        KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, kLogModule,
                               "IsEmfDealRsltFile, file too small! (file:%s, size:%d)",
                               file.fileName().toUtf8().constData(), static_cast<int>(file.size()));
        return false;
    }
    header = PageResultHeader::parse(head.data());
    if (!header.isPageResultFile()) {
        KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, kLogModule,
                               "IsEmfDealRsltFile, file format err! (0x%x,0x%x)", header.magic,
                               static_cast<unsigned int>(header.version));
        return false;
    }
    return true;
}

// The format of a page with a payload of `size` bytes; none, and a log line, when it falls short.
int formatOf(const PageResultHeader &header, qint64 size)
{
    if (size != header.datSize) {
        KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, kLogModule,
                               "getPicDataFromFile readSize:%d != headDatSize:%d",
                               static_cast<int>(size), header.datSize);
        return DocCovRslt::PAGE_FORMAT_NONE;
    }
    return header.picFormat;
}

// The gate: `fmt` when such a page can be shown, else none and a log line.
int shownFormat(const QString &path, int fmt, qint64 size)
{
    // The lower bound is compared unsigned: a negative format is handed on for the caller to
    // refuse.
    if (fmt > DocCovRslt::PAGE_FORMAT_PNG ||
        static_cast<quint32>(fmt) < static_cast<quint32>(DocCovRslt::PAGE_FORMAT_JPG)) {
        KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, kLogModule,
                               "decodeEmf, picFormat(%d) not support! (file:%s)", fmt,
                               path.toUtf8().constData());
        return DocCovRslt::PAGE_FORMAT_NONE;
    }
    if (size <= 0) {
        KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, kLogModule,
                               "decodeEmf, rsltDat.size <= 0! (file:%s)",
                               path.toUtf8().constData());
        return DocCovRslt::PAGE_FORMAT_NONE;
    }
    return fmt;
}

} // namespace

QByteArray EmfDeal::getHeader(int datSize, DocCovRslt::PAGE_FORMAT_DEF picFormat)
{
    PageResultHeader header;
    header.picFormat = picFormat;
    header.datSize = datSize;
    return header.toBytes();
}

QByteArray DocDisplayAddHeader(const QByteArray &data)
{
    return EmfDeal::getHeader(data.size(), DocCovRslt::PAGE_FORMAT_JPG) + data;
}

bool EmfDeal::WriteEmfDealRsltFile(const QString &path, EmfDeal::PageCovrRslt &rslt)
{
    QFile file(path);
    // Unbuffered: what fails when a buffer is flushed on closing would go unnoticed.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, kLogModule,
                               "CreateEmfDealRsltFile! (err:%d, file:%s)", file.error(),
                               path.toUtf8().constData());
        return false;
    }
    const QByteArray header = getHeader(rslt.rsltDat.size(), rslt.picFormat);
    if (file.write(header) < header.size() || file.write(rslt.rsltDat) < rslt.rsltDat.size()) {
        KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_ERROR, kLogModule,
                               "WrtEmfDealRsltFile! (err:%d, file:%s)", file.error(),
                               path.toUtf8().constData());
        return false;
    }
    file.close();
    return true;
}

int EmfDeal::getPicDataFromFile(const QString &path, QByteArray &data)
{
    QFile file(path);
    PageResultHeader header;
    if (!openPage(file, header))
        return DocCovRslt::PAGE_FORMAT_NONE;
    data = readUpTo(file, payloadLimit(header));
    return formatOf(header, data.size());
}

int EmfDeal::decodeEmf(const QString &path, QByteArray &data)
{
    const int fmt = getPicDataFromFile(path, data);
    return shownFormat(path, fmt, data.size());
}

int decodedFormat(const QString &path)
{
    QFile file(path);
    PageResultHeader header;
    if (!openPage(file, header))
        return shownFormat(path, DocCovRslt::PAGE_FORMAT_NONE, 0);
    const qint64 size = countUpTo(file, payloadLimit(header));
    return shownFormat(path, formatOf(header, size), size);
}
