// What bench_startup compares startup_library with: decodes the picture of a page result file with
// QImage alone, and prints a hash of its pixels.
#include "PixelHash.h"

#include <QFile>

int main(int, char *argv[])
{
    constexpr int kHead = 14;
    QFile file(QFile::decodeName(argv[1]));
    if (!file.open(QIODevice::ReadOnly) || !file.seek(kHead))
        return 1;
    return printHash(QImage::fromData(file.readAll()));
}
