#include "tools/docpage/PageFile.h"

#include "emfdeal/EmfDeal.h"
#include "tools/docpage/InputFile.h"

namespace {

bool isSupported(qint32 format)
{
    return format == DocCovRslt::PAGE_FORMAT_JPG || format == DocCovRslt::PAGE_FORMAT_PPT_ANIM ||
           format == DocCovRslt::PAGE_FORMAT_PNG;
}

struct Fault
{
    const char *code = "";
    qint64 offset = 0;
    QString words;
};

// What the library will refuse, told from the header and the number of bytes after it.
Fault headerFault(const PageResultHeader &header, qint64 payloadBytes)
{
    constexpr qint64 kVersionOffset = 4;
    constexpr qint64 kFormatOffset = 6;
    constexpr qint64 kSizeOffset = 10;
    if (header.magic != PageResultHeader::kMagic)
        return {"bad-magic", 0,
                QStringLiteral("not a page result file: it does not begin with 88 88 88 88")};
    if (header.version != PageResultHeader::kVersion)
        return {"bad-version", kVersionOffset,
                QStringLiteral("unknown version 0x%1 of a page result file")
                    .arg(header.version, 4, 16, QLatin1Char('0'))};
    if (!isSupported(header.picFormat))
        return {"bad-format", kFormatOffset,
                QStringLiteral("unsupported format %1").arg(header.picFormat)};
    if (header.datSize < 0)
        return {
            "bad-length", kSizeOffset,
            QStringLiteral("corrupt: the header announces %1 payload bytes").arg(header.datSize)};
    if (header.datSize == 0)
        return {"empty-payload", kSizeOffset, QStringLiteral("empty payload")};
    if (header.datSize > payloadBytes)
        return {"short-payload", kSizeOffset,
                QStringLiteral("truncated: the header announces %1 payload bytes, %2 are there")
                    .arg(header.datSize)
                    .arg(payloadBytes)};
    return {};
}

Fault unreadable(const QString &words)
{
    return {"unreadable", 0, words};
}

// Reads the header into `page`.
Fault readHeader(const QString &path, PageFile &page)
{
    QFile file(path);
    const QString fault = openInput(file);
    if (!fault.isEmpty())
        return unreadable(fault);
    char head[PageResultHeader::kSize] = {};
    const qint64 headBytes = file.read(head, sizeof head);
    if (headBytes < 0)
        return unreadable(file.errorString());
    if (headBytes < PageResultHeader::kSize)
        return {"short-header", 0,
                QStringLiteral("not a page result file: too short for its header (%1 of 14 bytes)")
                    .arg(headBytes)};
    page.header = PageResultHeader::parse(head);
    const qint64 payloadBytes = file.size() - PageResultHeader::kSize;
    page.trailingBytes = payloadBytes - page.header.datSize;
    return headerFault(page.header, payloadBytes);
}

Fault readFile(const QString &path, PageFile &page)
{
    Fault fault = readHeader(path, page);
    if (!fault.words.isEmpty() || EmfDeal::decodeEmf(path, page.payload) == page.header.picFormat)
        return fault;
    // Its header was good a moment ago, and the library does not know the system's reason.
    return unreadable(
        QStringLiteral("cannot be read: a read error, out of memory, or changed meanwhile"));
}

} // namespace

QString pageFileName(int number)
{
    return QStringLiteral("page_%1").arg(number);
}

PageFile PageFile::read(const QString &path)
{
    PageFile page;
    const Fault fault = readFile(path, page);
    page.fault = fault.words;
    page.faultCode = fault.code;
    page.faultOffset = fault.offset;
    return page;
}
