#include "tools/docpage/check/PageReport.h"

#include "tools/docpage/Console.h"
#include "tools/docpage/PageFile.h"
#include "tools/docpage/check/ModelCheck.h"

#include <new>

namespace {

constexpr qint64 kFormatOffset = 6;

const char *codeOf(PictureVerdict::Kind kind)
{
    switch (kind) {
    case PictureVerdict::Kind::Damaged:
        return "picture-damaged";
    case PictureVerdict::Kind::Undecodable:
        return "picture-undecodable";
    case PictureVerdict::Kind::TooLarge:
        return "picture-too-large";
    case PictureVerdict::Kind::Crashed:
        return "decoder-crashed";
    case PictureVerdict::Kind::TimedOut:
        return "decoder-timed-out";
    case PictureVerdict::Kind::Decoded:
    case PictureVerdict::Kind::Unchecked:
        break;
    }
    return "picture-unchecked";
}

void checkFormat(const PageFile &page, const PictureVerdict &picture, Findings &findings)
{
    const bool isPng = page.header.picFormat == DocCovRslt::PAGE_FORMAT_PNG;
    if (picture.isShown() && picture.format != (isPng ? "png" : "jpeg"))
        findings.add(Severity::Warning, "format-mismatch", kFormatOffset,
                     QStringLiteral("announced as %1, the picture is %2")
                         .arg(isPng ? QStringLiteral("PNG") : QStringLiteral("JPG"),
                              QString::fromLatin1(picture.format).toUpper()));
}

void checkPage(const QString &file, qint64 maxMemory, PageReport &report)
{
    const PageFile page = PageFile::read(file);
    if (!page.fault.isEmpty()) {
        report.findings.add(Severity::Error, page.faultCode, page.faultOffset, page.fault);
        return;
    }
    constexpr qint64 kStart = PageResultHeader::kSize;
    if (page.trailingBytes > 0)
        report.findings.add(Severity::Warning, "trailing-bytes", kStart + page.payload.size(),
                            QStringLiteral("the payload is ") +
                                followedByIgnored(page.trailingBytes));
    report.format = page.header.picFormat;
    DecodingBudget budget(maxMemory);
    if (report.format == DocCovRslt::PAGE_FORMAT_PPT_ANIM)
        ModelCheck(report, budget).check(page.payload, kStart, file);
    else
        checkFormat(page,
                    report.addPicture({page.payload, PictureUse::Page, QString(), kStart}, budget),
                    report.findings);
}

} // namespace

PageReport PageReport::of(const QString &file, qint64 maxMemory)
{
    PageReport report;
    try {
        checkPage(file, maxMemory, report);
    } catch (const std::bad_alloc &) {
        report.findings.add(Severity::Error, "unreadable", 0, QStringLiteral("out of memory"));
    }
    return report;
}

PictureVerdict PageReport::addPicture(const FilePicture &picture, DecodingBudget &budget)
{
    PictureVerdict verdict = PictureVerdict::of(picture.bytes, picture.use, budget);
    const QString begin = picture.name.isEmpty() ? QString() : picture.name + QStringLiteral(": ");
    if (verdict.kind != PictureVerdict::Kind::Decoded)
        findings.add(verdict.isShown() ? Severity::Warning : Severity::Error, codeOf(verdict.kind),
                     picture.offset, begin + verdict.words);
    if (verdict.isShown()) {
        images.push_back({picture.offset, verdict.size, verdict.bytes});
        decodedBytes += verdict.bytes;
    }
    return verdict;
}
