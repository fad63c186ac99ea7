// Decoding an animation model against memcpy of the same bytes, by turns in one run. The exit
// status is 1 when the bound is missed.
#include "pptdata/PPT_fileDat.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace {

constexpr double kMaxRatio = 1.15; // of the time that memcpy takes

bool isBoundMissed = false;

QByteArray encodedModel(int shapes, int effects, int bytes)
{
    PPT_fileDat model;
    auto *page = new PPT_Page;
    model.pages[0] = page;
    page->pageImage = QByteArray(1, 'p');
    for (int i = 0; i < shapes; ++i) {
        auto *shape = new PPT_Shape;
        shape->shapeId = static_cast<quint16>(i);
        shape->picDat = QByteArray((bytes - effects * 64) / shapes - 38, static_cast<char>(i));
        page->shapes.push_back(shape);
    }
    for (int i = 0; i < effects; ++i) {
        auto *effect = new PPT_Effect;
        effect->shapeId = static_cast<quint16>(i % shapes);
        effect->timing.duration = 0.5F;
        page->effects.push_back(effect);
    }
    QByteArray encoded;
    CStdDataStream stream(&encoded, QIODevice::WriteOnly);
    if (!model.streamTo(stream))
        std::abort();
    model.release();
    return encoded;
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
    std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
    return values[values.size() / 2];
}

// The decoded model is freed outside the measured time, and so is the copy.
void Model_Decode(benchmark::State &state)
{
    const auto shapes = static_cast<int>(state.range(0));
    const auto effects = static_cast<int>(state.range(1));
    const QByteArray encoded = encodedModel(shapes, effects, static_cast<int>(state.range(2)));
    std::vector<double> copied;
    std::vector<double> decoded;
    for (auto _ : state) {
        std::unique_ptr<char[]> copy;
        copied.push_back(seconds([&] {
            copy.reset(new char[static_cast<size_t>(encoded.size())]);
            std::memcpy(copy.get(), encoded.constData(), static_cast<size_t>(encoded.size()));
            benchmark::ClobberMemory();
        }));
        copy.reset();
        PPT_fileDat model;
        bool isRead = false;
        decoded.push_back(seconds([&] {
            CStdDataStream stream(encoded);
            isRead = model.streamFrom(stream);
        }));
        if (!isRead || model.pages.begin()->second->shapes.size() != static_cast<size_t>(shapes) ||
            model.pages.begin()->second->effects.size() != static_cast<size_t>(effects))
            state.SkipWithError("the model was not decoded");
        model.release();
        state.SetIterationTime(decoded.back());
    }
    const double ratio = median(decoded) / median(copied);
    state.counters["memcpy_ms"] = median(copied) * 1e3;
    state.counters["decode_ms"] = median(decoded) * 1e3;
    state.counters["ratio"] = ratio;
    isBoundMissed = isBoundMissed || ratio > kMaxRatio;
}

BENCHMARK(Model_Decode)
    ->ArgNames({"shapes", "effects", "bytes"})
    ->Args({200, 2000, 10'000'000})
    ->Iterations(201)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    if (isBoundMissed)
        std::fprintf(stderr, "bench_model: decoding took more than %.2f of memcpy\n", kMaxRatio);
    return isBoundMissed ? EXIT_FAILURE : EXIT_SUCCESS;
}
