// Any bytes as an animation model: it is read as its fields say, what can be read can be written,
// and is then read the same.
#include "fuzz/Fuzz.h"
#include "fuzz/Mutators.h"
#include "tests/PlainModel.h"

namespace {

// The plain reader takes no more than some thousands of objects from a list.
constexpr int kMostComparedBytes = 65536;

bool read(PPT_fileDat &model, const QByteArray &bytes)
{
    CStdDataStream stream(bytes);
    return model.streamFrom(stream);
}

QByteArray written(const PPT_fileDat &model)
{
    QByteArray bytes;
    CStdDataStream stream(&bytes, QIODevice::WriteOnly);
    require(model.streamTo(stream));
    return bytes;
}

// The same, field by field over a plain stream.
void comparePlainly(const PPT_fileDat &model, const QByteArray &bytes)
{
    if (bytes.size() > kMostComparedBytes)
        return;
    PPT_fileDat plain;
    QDataStream in(bytes);
    require(PlainModel::read(in, plain));
    QByteArray out;
    {
        QDataStream stream(&out, QIODevice::WriteOnly);
        PlainModel::write(stream, plain);
    }
    plain.release();
    require(out == written(model));
}

void readAgain(const PPT_fileDat &model)
{
    const QByteArray once = written(model);
    PPT_fileDat again;
    require(read(again, once));
    require(written(again) == once);
    again.release();
    PPT_fileDat half;
    require(!read(half, once.left(once.size() / 2)) && half.pages.empty());
}

// Pages change hands: each is freed once, which the sanitizer sees.
void hand(PPT_fileDat &model)
{
    const QByteArray before = written(model);
    PPT_fileDat twin;
    require(read(twin, before));
    if (!twin.pages.empty()) {
        const quint16 first = twin.pages.begin()->first;
        PPT_fileDat one;
        require(model.makePageFileDat(first, one) && one.getPage(first) == model.getPage(first));
        one.pages.clear(); // the page is still the model's
        model.ClearDat(model.pages);
    }
    model.appendPageFileDat(twin);
    require(twin.pages.empty());
    require(written(model) == before);
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t most, unsigned int seed)
{
    return mutateModel(data, size, most, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = byteArray(data, size);
    PPT_fileDat model;
    if (read(model, bytes)) {
        comparePlainly(model, bytes);
        readAgain(model);
        hand(model);
    } else {
        require(model.pages.empty());
    }
    model.release();
    require(model.pages.empty());
    return 0;
}
