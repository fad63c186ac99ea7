// `docpage wrap` of many pictures against `cp` of the same files, by turns in one run, and its peak
// memory with few and with many pictures. The exit status is 1 when a bound is missed.
#include "CommandRun.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

constexpr double kMaxRatio = 2.5;      // of the time that cp takes
constexpr double kMaxGrowthKiB = 1024; // of the peak memory, whatever the number of pictures

bool isBoundMissed = false;

// A picture of noise, which takes about `bytes` bytes as a file.
QByteArray noise(const char *format, int bytes)
{
    QByteArray file;
    double side = 100;
    for (int attempt = 0; attempt < 3; ++attempt) {
        QImage image(static_cast<int>(side), static_cast<int>(side), QImage::Format_RGB32);
        QRandomGenerator random(1);
        for (int y = 0; y < image.height(); ++y) {
            auto *pixels = reinterpret_cast<QRgb *>(image.scanLine(y));
            std::generate_n(pixels, image.width(), [&] { return random.generate() | 0xFF000000U; });
        }
        QBuffer buffer(&file);
        require(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, format), "no picture");
        side *= std::sqrt(static_cast<double>(bytes) / file.size());
    }
    return file;
}

/// Picture files, PNG and JPG by turns, and a place for the results beside them.
class Pictures
{
public:
    Pictures(int count, int bytes)
    {
        const QByteArray kinds[] = {noise("PNG", bytes), noise("JPG", bytes)};
        for (int i = 0; i < count; ++i) {
            QFile file(dir.filePath(QStringLiteral("picture%1").arg(i)));
            const QByteArray &picture = kinds[i % 2];
            require(file.open(QIODevice::WriteOnly) && file.write(picture) == picture.size(),
                    "cannot write a picture");
            paths.push_back(file.fileName().toStdString());
        }
    }

    /// `command` followed by the paths of all pictures.
    std::vector<std::string> after(std::vector<std::string> command) const
    {
        command.insert(command.end(), paths.begin(), paths.end());
        return command;
    }

    /// An empty folder.
    std::string results() const
    {
        QDir folder(dir.filePath(QStringLiteral("results")));
        require(folder.removeRecursively() && folder.mkpath(QStringLiteral(".")), "no folder");
        return folder.path().toStdString();
    }

private:
    QTemporaryDir dir;
    std::vector<std::string> paths;
};

Usage runCopy(const Pictures &pictures)
{
    return run(pictures.after({"cp", "-t", pictures.results()}));
}

Usage runWrap(const Pictures &pictures)
{
    return run(pictures.after({DOCPAGE_PROGRAM, "wrap", "-o", pictures.results()}));
}

void Wrap_AgainstCopy(benchmark::State &state)
{
    const Pictures pictures(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    runCopy(pictures); // the first run of each finds a cold disk
    runWrap(pictures);
    std::vector<double> copies;
    std::vector<double> ratios;
    for (auto _ : state) {
        const double copy = runCopy(pictures).seconds;
        const double wrap = runWrap(pictures).seconds;
        state.SetIterationTime(wrap);
        copies.push_back(copy);
        ratios.push_back(wrap / copy);
    }
    state.counters["cp_ms"] = 1000 * median(copies);
    state.counters["ratio"] = median(ratios);
    if (median(ratios) > kMaxRatio) {
        isBoundMissed = true;
        state.SkipWithError("slower than 2.5 times cp");
    }
}

void Wrap_PeakMemory(benchmark::State &state)
{
    const Pictures few(10, static_cast<int>(state.range(1)));
    const Pictures many(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    for (auto _ : state) {
        const Usage least = run({"true"}); // a child starts out with what this program occupies
        const Usage ofFew = runWrap(few);
        const Usage ofMany = runWrap(many);
        state.SetIterationTime(ofMany.seconds);
        state.counters["least_KiB"] = least.peakKiB;
        state.counters["peak10_KiB"] = ofFew.peakKiB;
        state.counters["peak_KiB"] = ofMany.peakKiB;
        if (ofMany.peakKiB > ofFew.peakKiB + kMaxGrowthKiB) {
            isBoundMissed = true;
            state.SkipWithError("the peak memory grows with the number of pictures");
        }
    }
}

BENCHMARK(Wrap_AgainstCopy)
    ->ArgNames({"pictures", "bytes"})
    ->Args({1000, 500 * 1000})
    ->Iterations(7)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Wrap_PeakMemory)
    ->ArgNames({"pictures", "bytes"})
    ->Args({1000, 500 * 1000})
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    return isBoundMissed ? EXIT_FAILURE : EXIT_SUCCESS;
}
