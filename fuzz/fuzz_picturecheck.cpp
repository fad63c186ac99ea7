// Any bytes as a picture whose structure is checked: what follows its end makes no difference, and
// what is cut off it does.
#include "fuzz/Fuzz.h"
#include "fuzz/Mutators.h"
#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/PictureCheck.h"
#include "tools/docpage/PictureSize.h"

#include <QSize>
#include <QtEndian>

namespace {

QSize sizeInHeader(const QByteArray &png)
{
    return {qFromBigEndian<qint32>(png.constData() + 16),
            qFromBigEndian<qint32>(png.constData() + 20)};
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t most, unsigned int seed)
{
    return mutatePng(data, size, most, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    LibraryLog::divert();
    const QByteArray bytes = byteArray(data, size);
    const PictureCheck check = PictureCheck::of(bytes);
    const bool isPng = check.format == DocCovRslt::PAGE_FORMAT_PNG;
    require(isPng || check.format == DocCovRslt::PAGE_FORMAT_JPG ||
            check.format == DocCovRslt::PAGE_FORMAT_NONE);
    require(check.format != DocCovRslt::PAGE_FORMAT_NONE || !check.fault.isEmpty());

    const PictureCheck cut = PictureCheck::of(bytes.left(bytes.size() / 2));
    if (check.fault.isEmpty())
        require(PictureCheck::of(bytes + QByteArray(20, '\xFF')).fault.isEmpty());
    else
        require(!cut.fault.isEmpty());

    const QSize announced = pictureSize(bytes);
    require(!announced.isValid() || !announced.isEmpty());
    if (isPng && check.fault.isEmpty())
        require(!announced.isValid() || announced == sizeInHeader(bytes));
    return 0;
}
