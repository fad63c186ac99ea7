// The encoder, on its thread, against a plain reading, writing and deleting of the same files, by
// turns in one run, and its peak memory with few and with many files. The exit status is 1 when a
// bound is missed.
#include "emfdeal/EmfDeal.h"

#include <KxBase/KxLog.h>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr double kMaxGrowthKiB = 1024; // of the peak memory, whatever the number of files

bool isBoundMissed = false;

void require(bool condition, const char *what)
{
    if (condition)
        return;
    std::fprintf(stderr, "bench_encode: %s\n", what);
    std::exit(EXIT_FAILURE);
}

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

    // One job, from the call to its last signal.
    void encode(const Files &files)
    {
        int made = -1;
        QEventLoop loop;
        QObject::connect(&m_deal, &EmfDeal::s_EmfEncodeFinished, &loop,
                         [&](const std::string &, const QStringList &outputs) {
                             made = outputs.size();
                             loop.quit();
                         });
        QObject::connect(&m_deal, &EmfDeal::s_EmfEncodeFailed, &loop, &QEventLoop::quit);
        m_deal.startEmfEncode("job", DocCovRslt::PAGE_FORMAT_PNG, files.paths(), files.prefix());
        loop.exec();
        require(made == files.paths().size(), "the job failed");
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

template <typename Work>
double seconds(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The third argument is the bound in hundredths.
void Encode_AgainstCopy(benchmark::State &state)
{
    const auto count = static_cast<int>(state.range(0));
    const auto size = static_cast<int>(state.range(1));
    const double bound = static_cast<double>(state.range(2)) / 100;
    Encoder encoder;
    encoder.encode(Files(count, size)); // the first of each finds everything cold
    copyPlainly(Files(count, size), size);
    std::vector<double> copies;
    std::vector<double> ratios;
    bool isCopyFirst = false;
    for (auto _ : state) {
        const auto copy = [&] {
            const Files files(count, size);
            return seconds([&] { copyPlainly(files, size); });
        };
        const auto encode = [&] {
            const Files files(count, size);
            return seconds([&] { encoder.encode(files); });
        };
        isCopyFirst = !isCopyFirst;
        double copied = isCopyFirst ? copy() : 0;
        const double encoded = encode();
        copied = isCopyFirst ? copied : copy();
        state.SetIterationTime(encoded);
        copies.push_back(copied);
        ratios.push_back(encoded / copied);
    }
    state.counters["copy_ms"] = 1000 * median(copies);
    state.counters["ratio"] = median(ratios);
    state.counters["bound"] = bound;
    if (median(ratios) > bound) {
        isBoundMissed = true;
        state.SkipWithError("slower than the bound");
    }
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

void Encode_PeakMemory(benchmark::State &state)
{
    const auto count = static_cast<int>(state.range(0));
    const auto size = static_cast<int>(state.range(1));
    for (auto _ : state) {
        const double ofNone = peakKiB(0, size);
        const double ofOne = peakKiB(1, size);
        const double ofMany = peakKiB(count, size);
        state.SetIterationTime(1e-3);
        state.counters["peak0_KiB"] = ofNone;
        state.counters["peak1_KiB"] = ofOne;
        state.counters["peak_KiB"] = ofMany;
        const double file = static_cast<double>(size) / 1024;
        if (ofMany > ofOne + kMaxGrowthKiB || ofOne > ofNone + file + kMaxGrowthKiB) {
            isBoundMissed = true;
            state.SkipWithError("the peak memory is more than that of the largest file");
        }
    }
}

// First, while this process is still small.
BENCHMARK(Encode_PeakMemory)
    ->ArgNames({"files", "bytes"})
    ->Args({20, 5'000'000})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Encode_AgainstCopy)
    ->ArgNames({"files", "bytes", "bound_percent"})
    ->Args({400, 60'000, 130})
    ->Iterations(31)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Encode_AgainstCopy)
    ->ArgNames({"files", "bytes", "bound_percent"})
    ->Args({10, 5'000'000, 105})
    ->Iterations(31)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    KxBase::KxSetLogSink([](void *, Kxlogger::E_LOG_LEVEL_DEF, const char *, const char *) {},
                         nullptr);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    return isBoundMissed ? EXIT_FAILURE : EXIT_SUCCESS;
}
