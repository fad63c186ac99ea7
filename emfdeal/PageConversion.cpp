// One input file becomes one page result file.
#include "emfdeal/EmfDeal.h"

#include "common/FileHelper.h"
#include "emfdeal/Guarded.h"
#include "emfdeal/LogModule.h"

#include <KxBase/KxLog.h>

namespace {

constexpr int kQuality = 95;
constexpr int kResolution = 120;
constexpr int kLargePng = 256000; // bytes; above it a JPG is tried

void logResult(const QString &src, const EmfDeal::PageCovrRslt &rslt)
{
    KxBase::KxSDKCommonLog(Kxlogger::LOG_LEVEL_INFO, kLogModule,
                           "encodeEmf(%s), rslt format:%d, len:%d", src.toUtf8().constData(),
                           rslt.picFormat, rslt.rsltDat.size());
}

} // namespace

bool EmfDeal::encodeEmf_inner(const QString &src, const QString &dst)
{
    QByteArray emf;
    PageCovrRslt rslt;
    if (!ReadDataFromFile(src, emf) || !checkEmfFile(emf) || !CovrEmf(emf, rslt) ||
        !WriteEmfDealRsltFile(dst, rslt))
        return false;
    logResult(src, rslt);
    return true;
}

bool EmfDeal::encodeOther_inner(const QString &src, const QString &dst,
                                DocCovRslt::PAGE_FORMAT_DEF fmt)
{
    PageCovrRslt rslt;
    rslt.picFormat = fmt;
    if (fmt == DocCovRslt::PAGE_FORMAT_NONE || !ReadDataFromFile(src, rslt.rsltDat) ||
        !WriteEmfDealRsltFile(dst, rslt))
        return false;
    logResult(src, rslt);
    return true;
}

bool EmfDeal::CovrEmf(QByteArray &emf, EmfDeal::PageCovrRslt &rslt)
{
    QByteArray png;
    if (!CovEmf2Pic(emf, png, QStringLiteral("PNG"), kQuality, kResolution))
        return false;
    rslt.picFormat = DocCovRslt::PAGE_FORMAT_PNG;
    rslt.rsltDat = png;
    QByteArray jpg;
    if (png.size() > kLargePng && succeeds([&] {
            return CovEmf2Pic(emf, jpg, QStringLiteral("JPG"), kQuality, kResolution);
        }) &&
        jpg.size() < png.size()) {
        rslt.picFormat = DocCovRslt::PAGE_FORMAT_JPG;
        rslt.rsltDat = jpg;
    }
    return true;
}

bool EmfDeal::CovEmf2Pic(const QString &src, const QString &dst, const QString &format, int quality,
                         int resolution)
{
    QByteArray emf;
    QByteArray picture;
    return ReadDataFromFile(src, emf) && CovEmf2Pic(emf, picture, format, quality, resolution) &&
           WriteDataToFile(picture, dst, false);
}
