// Reading a page result file against read() of the same bytes. The exit status is 1 when the bound
// is missed.
#include "Turns.h"
#include "emfdeal/EmfDeal.h"
#include "tests/PageFiles.h"

#include <memory>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kBytes = 10'000'000;
constexpr int kHead = 14;
constexpr qint32 kPng = 4;

QByteArray payload()
{
    QByteArray bytes(kBytes, '\0');
    for (int i = 0; i < kBytes; ++i)
        bytes[i] = static_cast<char>(i % 251);
    return bytes;
}

/// The memory is taken each time, as a reader of whole files has to.
std::unique_ptr<char[]> readPlainly(const QByteArray &name)
{
    char head[kHead];
    std::unique_ptr<char[]> bytes(new char[kBytes]);
    const int file = ::open(name.constData(), O_RDONLY | O_CLOEXEC);
    const bool isRead =
        ::read(file, head, kHead) == kHead && ::read(file, bytes.get(), kBytes) == kBytes;
    ::close(file);
    return isRead ? std::move(bytes) : nullptr;
}

} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir dir;
    const QString path =
        PageFiles::write(dir, QStringLiteral("page"), PageFiles::pageResultFile(kPng, payload()));
    const QByteArray name = QFile::encodeName(path);

    QByteArray data;
    require(EmfDeal::decodeEmf(path, data) == kPng && data == payload(), "the payload differs");
    const auto plain = readPlainly(name);
    require(plain && data == QByteArray::fromRawData(plain.get(), kBytes), "the file differs");

    addBenchmark("pagefile/10_MB", 201, [&](Turns &turns) {
        turns.compare(
            [&] {
                QByteArray bytes;
                return seconds([&] { EmfDeal::decodeEmf(path, bytes); });
            },
            [&] {
                std::unique_ptr<char[]> bytes;
                return seconds([&] { bytes = readPlainly(name); });
            });
    });
    return runBenchmarks(argc, argv);
}
