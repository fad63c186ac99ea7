// Any bytes as an animation model: what can be read can be written, and is then read the same.
#include "pptdata/PPT_fileDat.h"

#include <cstdint>
#include <cstdlib>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    PPT_fileDat model;
    if (read(model, bytes)) {
        const QByteArray once = written(model);
        PPT_fileDat again;
        require(read(again, once));
        require(written(again) == once);
        again.release();
    } else {
        require(model.pages.empty());
    }
    model.release();
    require(model.pages.empty());
    return 0;
}
