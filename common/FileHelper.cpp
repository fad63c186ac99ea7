#include "common/FileHelper.h"

#include <QCryptographicHash>
#include <QFile>
#include <QUuid>

#include <limits>

namespace {

QString hexText(const QCryptographicHash &hash)
{
    return QString::fromLocal8Bit(hash.result().toHex());
}

int wrapped(qint64 number)
{
    return static_cast<int>(static_cast<quint32>(number));
}

// The side that is not `bound`, of a picture whose other side is made `bound`: rounded up.
int fittedSide(int side, int otherSide, int bound)
{
    return wrapped(qint64(side) * bound + otherSide - 1) / otherSide;
}

} // namespace

bool ReadDataFromFile(const QString &path, QByteArray &data)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    data = file.readAll();
    return true;
}

int WriteDataToFile2(const QByteArray &data, const QString &path, bool append)
{
    QFile file(path);
    const auto mode = QIODevice::WriteOnly | (append ? QIODevice::Append : QIODevice::Truncate);
    if (file.open(mode) && file.write(data) == data.size())
        return 0;
    return file.error();
}

bool WriteDataToFile(const QByteArray &data, const QString &path, bool append)
{
    return WriteDataToFile2(data, path, append) == 0;
}

QString MakeMd5(const QByteArray &data)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    hash.addData(data);
    return hexText(hash);
}

int GetFileMd5(const QString &path, QString &md5)
{
    constexpr int kChunk = 1 << 20;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.error();
    QCryptographicHash hash(QCryptographicHash::Md5);
    QByteArray chunk(kChunk, Qt::Uninitialized);
    while (!file.atEnd()) {
        const qint64 size = file.read(chunk.data(), kChunk);
        if (size < 0)
            return file.error();
        if (size == 0) // not at its end, but there is no more
            break;
        hash.addData(chunk.constData(), static_cast<int>(size));
    }
    md5 = hexText(hash);
    return 0;
}

QString makeUUID()
{
    QString id = QUuid::createUuid().toString();
    id.remove(QLatin1Char('{'));
    id.remove(QLatin1Char('}'));
    return id;
}

QByteArray uncompressRowZlibDat(const unsigned char *data, int len)
{
    constexpr int kLongest = std::numeric_limits<int>::max() - 64; // with what goes in front of it
    if (len < 0 || len > kLongest)
        return {};
    QByteArray prefixed(reinterpret_cast<const char *>(&len), sizeof len);
    prefixed.append(reinterpret_cast<const char *>(data), len);
    return qUncompress(prefixed);
}

QSize GetEncodeSize(const QSize &src, const QSize &max)
{
    if (src.width() < 1 || src.height() < 1)
        return src;
    if (src.width() <= max.width() && src.height() <= max.height())
        return src;
    const int widthScale = wrapped(qint64(max.width()) * 10000) / src.width();
    const int heightScale = wrapped(qint64(max.height()) * 10000) / src.height();
    if (widthScale >= heightScale)
        return {fittedSide(src.width(), src.height(), max.height()), max.height()};
    return {max.width(), fittedSide(src.height(), src.width(), max.width())};
}

QSize GetSizeFromString(const QString &str, const QString &sep)
{
    const QList<int> numbers = strToIntList(str, sep);
    return numbers.size() < 2 ? QSize(-1, -1) : QSize(numbers[0], numbers[1]);
}

QList<int> strToIntList(const QString &str, const QString &sep)
{
    QList<int> numbers;
    for (const QString &part : str.split(sep, Qt::SkipEmptyParts))
        numbers.append(part.toInt());
    return numbers;
}
