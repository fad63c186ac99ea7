// GetFileMd5() of a large file against `md5sum` of the same file, by turns in one run, and its peak
// memory with an empty file and with the large one. The exit status is 1 when a bound is missed.
#include "CommandRun.h"
#include "common/FileHelper.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstring>

namespace {

constexpr double kMaxRatio = 1.2;           // of the time that md5sum takes
constexpr double kMaxGrowthKiB = 16 * 1024; // of the peak memory, whatever the file's size
constexpr int kMiB = 1 << 20;

bool isBoundMissed = false;

/// A file of so many MiB, no two of them alike.
class LargeFile
{
public:
    explicit LargeFile(int mebibytes)
        : path(dir.filePath(QStringLiteral("file")).toStdString())
    {
        QFile file(QString::fromStdString(path));
        require(file.open(QIODevice::WriteOnly), "cannot write the file");
        QByteArray part(kMiB, '\0');
        for (int i = 0; i < part.size(); ++i)
            part[i] = static_cast<char>(i % 251);
        for (int i = 0; i < mebibytes; ++i) {
            std::memcpy(part.data(), &i, sizeof i);
            require(file.write(part) == part.size(), "cannot write the file");
        }
    }

    /// `command` followed by the path.
    std::vector<std::string> after(std::vector<std::string> command) const
    {
        command.push_back(path);
        return command;
    }

private:
    QTemporaryDir dir;
    std::string path;
};

// Two programs that do not find the same are not worth comparing.
void requireEqualDigests(const LargeFile &file)
{
    const QString name = QString::fromStdString(file.after({}).front());
    QProcess md5sum;
    md5sum.start(QStringLiteral("md5sum"), {name});
    require(md5sum.waitForFinished(-1) && md5sum.exitCode() == 0, "md5sum failed");
    QString md5;
    require(GetFileMd5(name, md5) == 0, "GetFileMd5 failed");
    require(md5 == QString::fromLatin1(md5sum.readAllStandardOutput().left(32)),
            "the digests differ");
}

Usage runMd5Sum(const LargeFile &file)
{
    return run(file.after({"md5sum"}));
}

// This program, see main().
Usage runGetFileMd5(const LargeFile &file)
{
    return run(file.after({"/proc/self/exe", "--digest"}));
}

void Md5_AgainstMd5Sum(benchmark::State &state)
{
    const LargeFile file(static_cast<int>(state.range(0)));
    requireEqualDigests(file);
    runMd5Sum(file); // the first run of each finds a cold disk
    runGetFileMd5(file);
    std::vector<double> sums;
    std::vector<double> ratios;
    for (auto _ : state) {
        const double sum = runMd5Sum(file).seconds;
        const double digest = runGetFileMd5(file).seconds;
        state.SetIterationTime(digest);
        sums.push_back(sum);
        ratios.push_back(digest / sum);
    }
    state.counters["md5sum_ms"] = 1000 * median(sums);
    state.counters["ratio"] = median(ratios);
    if (median(ratios) > kMaxRatio) {
        isBoundMissed = true;
        state.SkipWithError("slower than 1.2 times md5sum");
    }
}

void Md5_PeakMemory(benchmark::State &state)
{
    const LargeFile empty(0);
    const LargeFile large(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const Usage ofEmpty = runGetFileMd5(empty);
        const Usage ofLarge = runGetFileMd5(large);
        state.SetIterationTime(ofLarge.seconds);
        state.counters["empty_KiB"] = ofEmpty.peakKiB;
        state.counters["peak_KiB"] = ofLarge.peakKiB;
        if (ofLarge.peakKiB > ofEmpty.peakKiB + kMaxGrowthKiB) {
            isBoundMissed = true;
            state.SkipWithError("more than 16 MiB of memory");
        }
    }
}

BENCHMARK(Md5_AgainstMd5Sum)
    ->ArgName("MiB")
    ->Arg(1024)
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Md5_PeakMemory)
    ->ArgName("MiB")
    ->Arg(1024)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 3 && std::strcmp(argv[1], "--digest") == 0) {
        QString md5;
        return GetFileMd5(QString::fromLocal8Bit(argv[2]), md5);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    return isBoundMissed ? EXIT_FAILURE : EXIT_SUCCESS;
}
