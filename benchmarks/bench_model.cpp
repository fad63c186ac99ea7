// Decoding an animation model against memcpy of the same bytes. The exit status is 1 when the bound
// is missed.
#include "Turns.h"
#include "pptdata/PPT_fileDat.h"
#include "tests/PlainModel.h"

#include <cstring>
#include <memory>

namespace {

constexpr int kShapes = 200;
constexpr int kEffects = 2000;
constexpr int kBytes = 10'000'000;

QByteArray encodedModel()
{
    PPT_fileDat model;
    auto *page = new PPT_Page;
    model.pages[0] = page;
    page->pageImage = QByteArray(1, 'p');
    for (int i = 0; i < kShapes; ++i) {
        auto *shape = new PPT_Shape;
        shape->shapeId = static_cast<quint16>(i);
        shape->picDat = QByteArray((kBytes - kEffects * 64) / kShapes - 38, static_cast<char>(i));
        page->shapes.push_back(shape);
    }
    for (int i = 0; i < kEffects; ++i) {
        auto *effect = new PPT_Effect;
        effect->shapeId = static_cast<quint16>(i % kShapes);
        effect->timing.duration = 0.5F;
        page->effects.push_back(effect);
    }
    QByteArray encoded;
    CStdDataStream stream(&encoded, QIODevice::WriteOnly);
    require(model.streamTo(stream), "the model cannot be written");
    model.release();
    return encoded;
}

void requireSameFields(const QByteArray &encoded)
{
    PPT_fileDat model;
    CStdDataStream stream(encoded);
    require(model.streamFrom(stream), "the model is refused");
    PPT_fileDat expected;
    QDataStream plainStream(encoded);
    require(PlainModel::read(plainStream, expected), "the model is not plain");
    require(expected.pages.at(0)->effects.size() == kEffects, "the model has too few effects");
    require(PlainModel::fields(model) == PlainModel::fields(expected), "a field differs");
    model.release();
    expected.release();
}

double copySeconds(const QByteArray &encoded)
{
    const auto size = static_cast<size_t>(encoded.size());
    std::unique_ptr<char[]> copy;
    return seconds([&] {
        copy.reset(new char[size]);
        std::memcpy(copy.get(), encoded.constData(), size);
        benchmark::ClobberMemory();
    });
}

// The decoded model is freed outside the measured time, and so is the copy: glibc puts small blocks
// together only when a large one is asked for.
double decodeSeconds(const QByteArray &encoded)
{
    PPT_fileDat model;
    const double taken = seconds([&] {
        CStdDataStream stream(encoded);
        model.streamFrom(stream);
    });
    model.release();
    std::unique_ptr<char[]> large(new char[1 << 16]);
    benchmark::DoNotOptimize(large.get());
    return taken;
}

} // namespace

int main(int argc, char *argv[])
{
    const QByteArray encoded = encodedModel();
    requireSameFields(encoded);
    addBenchmark("model/10_MB", 301, [&](Turns &turns) {
        turns.compare([&] { return decodeSeconds(encoded); }, [&] { return copySeconds(encoded); });
    });
    return runBenchmarks(argc, argv);
}
