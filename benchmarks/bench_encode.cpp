// The encoder, on its thread, against a plain reading, writing and deleting of the same files, and
// its peak memory with few and with many files. The exit status is 1 when a bound is missed.
#include "Turns.h"
#include "emfdeal/EmfDeal.h"

#include <KxBase/KxLog.h>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Files to be consumed, and a place for what is made of them.
class Files
{
public:
    Files(int count, int size)
    {
        require(QDir(m_dir.path()).mkdir(QStringLiteral("out")), "no folder");
        const QByteArray piece(20'000, 'x'); // small, so that its memory is no file's
        for (int i = 0; i < count; ++i) {
            m_paths << m_dir.filePath(QStringLiteral("in%1").arg(i));
            QFile file(m_paths.last());
            require(file.open(QIODevice::WriteOnly), "cannot create a file");
            for (int written = 0; written < size; written += piece.size())
                require(file.write(piece) == piece.size(), "cannot write a file");
        }
    }

    const QStringList &paths() const { return m_paths; }
    QString prefix() const { return m_dir.filePath(QStringLiteral("out/")); }

private:
    QTemporaryDir m_dir;
    QStringList m_paths;
};

/// A running encoder.
class Encoder
{
public:
    Encoder() { m_deal.start(); }
    ~Encoder()
    {
        m_deal.quit();
        m_deal.wait();
    }
    Q_DISABLE_COPY_MOVE(Encoder)

    // One job, from the call to its last signal. Returns what it made.
    QStringList encode(const Files &files)
    {
        QStringList made;
        QEventLoop loop;
        QObject::connect(&m_deal, &EmfDeal::s_EmfEncodeFinished, &loop,
                         [&](const std::string &, const QStringList &outputs) {
                             made = outputs;
                             loop.quit();
                         });
        QObject::connect(&m_deal, &EmfDeal::s_EmfEncodeFailed, &loop, &QEventLoop::quit);
        m_deal.startEmfEncode("job", DocCovRslt::PAGE_FORMAT_PNG, files.paths(), files.prefix());
        loop.exec();
        require(made.size() == files.paths().size(), "the job failed");
        return made;
    }

private:
    EmfDeal m_deal;
};

void transfer(int from, int to, std::vector<char> &buffer)
{
    require(from >= 0 && to >= 0, "cannot open a file");
    ssize_t got = 0;
    while ((got = ::read(from, buffer.data(), buffer.size())) > 0)
        require(::write(to, buffer.data(), static_cast<size_t>(got)) == got, "cannot write");
    require(got == 0, "cannot read");
    ::close(from);
    ::close(to);
}

// Each file is read, written under another name and deleted. The memory for it is taken each time,
// as a reader of whole files has to.
void copyPlainly(const Files &files, int size)
{
    int number = 0;
    for (const QString &path : files.paths()) {
        const QByteArray in = QFile::encodeName(path);
        const QByteArray out = QFile::encodeName(files.prefix() + QString::number(number++));
        std::vector<char> buffer(static_cast<size_t>(size));
        transfer(::open(in.constData(), O_RDONLY | O_CLOEXEC),
                 ::open(out.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666), buffer);
        ::unlink(in.constData());
    }
}

// A page result file is a head and the bytes of the input.
void requireWrapped()
{
    constexpr int kSize = 60'000;
    const Files files(3, kSize);
    const QByteArray expected =
        EmfDeal::getHeader(kSize, DocCovRslt::PAGE_FORMAT_PNG) + QByteArray(kSize, 'x');
    for (const QString &path : Encoder().encode(files)) {
        QFile file(path);
        require(file.open(QIODevice::ReadOnly) && file.readAll() == expected, "a page differs");
    }
}

// By the clock, as the encoder works on another thread and both wait for files. What there is
// for it is made outside of the measured time, and removed.
template <typename Work>
double secondsWith(int count, int size, Work work)
{
    const Files files(count, size);
    const auto begin = std::chrono::steady_clock::now();
    work(files);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void againstCopy(Turns &turns, int count, int size)
{
    Encoder encoder;
    turns.compare(
        [&] {
            return secondsWith(count, size, [&](const Files &files) { encoder.encode(files); });
        },
        [&] {
            return secondsWith(count, size, [&](const Files &files) { copyPlainly(files, size); });
        });
}

// The peak memory of a process that encodes so many files.
double peakKiB(int count, int size)
{
    const Files files(count, size);
    const pid_t child = ::fork();
    if (child == 0) {
        Encoder().encode(files);
        ::_exit(EXIT_SUCCESS);
    }
    int status = -1;
    rusage used = {};
    require(::wait4(child, &status, 0, &used) == child && status == 0, "a process failed");
    return static_cast<double>(used.ru_maxrss);
}

// What many files take beyond the memory of one, or one beyond its bytes.
double growthKiB(int count, int size)
{
    const double ofNone = peakKiB(0, size);
    const double ofOne = peakKiB(1, size);
    const double ofMany = peakKiB(count, size);
    return std::max(ofMany - ofOne, ofOne - ofNone - double(size) / 1024);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    KxBase::KxSetLogSink([](void *, Kxlogger::E_LOG_LEVEL_DEF, const char *, const char *) {},
                         nullptr);
    requireWrapped();

    // First, while this process is still small.
    addBenchmark("encode/memory", 1,
                 [](Turns &turns) { turns.measure([] { return growthKiB(20, 5'000'000); }); });
    addBenchmark("encode/400_of_60_kB", 31, [](Turns &turns) { againstCopy(turns, 400, 60'000); });
    addBenchmark("encode/10_of_5_MB", 31, [](Turns &turns) { againstCopy(turns, 10, 5'000'000); });
    return runBenchmarks(argc, argv);
}
