#include "tools/docpage/PageFile.h"

#include "emfdeal/EmfDeal.h"
#include "tools/docpage/InputFile.h"
#include "tools/docpage/LibraryLog.h"

namespace {

bool isSupported(qint32 format)
{
    return format == DocCovRslt::PAGE_FORMAT_JPG || format == DocCovRslt::PAGE_FORMAT_PPT_ANIM ||
           format == DocCovRslt::PAGE_FORMAT_PNG;
}

// What the library will refuse, told from the header and the number of bytes after it.
QString headerFault(const PageResultHeader &header, qint64 payloadBytes)
{
    if (header.magic != PageResultHeader::kMagic)
        return QStringLiteral("not a page result file: it does not begin with 88 88 88 88");
    if (header.version != PageResultHeader::kVersion)
        return QStringLiteral("unknown version 0x%1 of a page result file")
            .arg(header.version, 4, 16, QLatin1Char('0'));
    if (!isSupported(header.picFormat))
        return QStringLiteral("unsupported format %1").arg(header.picFormat);
    if (header.datSize < 0)
        return QStringLiteral("corrupt: the header announces %1 payload bytes").arg(header.datSize);
    if (header.datSize == 0)
        return QStringLiteral("empty payload");
    if (header.datSize > payloadBytes)
        return QStringLiteral("truncated: the header announces %1 payload bytes, %2 are there")
            .arg(header.datSize)
            .arg(payloadBytes);
    return {};
}

// Reads the header into `page`.
QString readHeader(const QString &path, PageFile &page)
{
    QFile file(path);
    const QString fault = openInput(file);
    if (!fault.isEmpty())
        return fault;
    char head[PageResultHeader::kSize] = {};
    const qint64 headBytes = file.read(head, sizeof head);
    if (headBytes < 0)
        return file.errorString();
    if (headBytes < PageResultHeader::kSize)
        return QStringLiteral("not a page result file: too short for its header (%1 of 14 bytes)")
            .arg(headBytes);
    page.header = PageResultHeader::parse(head);
    const qint64 payloadBytes = file.size() - PageResultHeader::kSize;
    page.trailingBytes = payloadBytes - page.header.datSize;
    return headerFault(page.header, payloadBytes);
}

} // namespace

QString pageFileName(int number)
{
    return QStringLiteral("page_%1").arg(number);
}

PageFile PageFile::read(const QString &path)
{
    PageFile page;
    page.fault = readHeader(path, page);
    if (page.fault.isEmpty() && EmfDeal::decodeEmf(path, page.payload) != page.header.picFormat) {
        // The file had all the bytes a moment ago.
        const QString line = LibraryLog::takeFirstLine();
        page.fault = line.startsWith(QStringLiteral("getPicDataFromFile readSize"))
                         ? QStringLiteral("cannot be read: out of memory, or changed meanwhile")
                         : line;
    }
    return page;
}
