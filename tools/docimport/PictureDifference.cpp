#include "tools/docimport/PictureDifference.h"

namespace {

bool isFar(int one, int other)
{
    constexpr int kVisible = 32;
    return qAbs(one - other) > kVisible;
}

bool isOther(QRgb one, QRgb other)
{
    return one != other && (isFar(qRed(one), qRed(other)) || isFar(qGreen(one), qGreen(other)) ||
                            isFar(qBlue(one), qBlue(other)));
}

} // namespace

double differenceOf(const QImage &one, const QImage &other)
{
    if (one.size() != other.size())
        return 1;
    qint64 others = 0;
    for (int y = 0; y < one.height(); ++y) {
        const auto *first = reinterpret_cast<const QRgb *>(one.constScanLine(y));
        const auto *second = reinterpret_cast<const QRgb *>(other.constScanLine(y));
        for (int x = 0; x < one.width(); ++x)
            others += isOther(first[x], second[x]) ? 1 : 0;
    }
    const qint64 all = qint64{one.width()} * one.height();
    return all == 0 ? 0 : double(others) / double(all);
}
