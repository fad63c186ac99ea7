// Runs a fuzz target over the files of the folders and files given, without a fuzzer.
#include "fuzz/Fuzz.h"

#include <QDirIterator>
#include <QFile>

#include <cstdio>

namespace {

bool replay(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(file.errorString()));
        return false;
    }
    const QByteArray bytes = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                           static_cast<std::size_t>(bytes.size()));
    return true;
}

} // namespace

// What mutators are built on: here nothing is mutated.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *, std::size_t size, std::size_t)
{
    return size;
}

int main(int argc, char **argv)
{
    int replayed = 0;
    int failed = 0;
    for (int i = 1; i < argc; ++i) {
        const QString path = QFile::decodeName(argv[i]);
        if (QFileInfo(path).isDir()) {
            QDirIterator files(path, QDir::Files);
            while (files.hasNext())
                (replay(files.next()) ? replayed : failed) += 1;
        } else {
            (replay(path) ? replayed : failed) += 1;
        }
    }
    std::printf("%d inputs replayed\n", replayed);
    return replayed > 0 && failed == 0 ? 0 : 1;
}
