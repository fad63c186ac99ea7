// Any bytes as a page result file: the reader takes from them what they hold, and nothing else.
#include "emfdeal/EmfDeal.h"
#include "fuzz/Fuzz.h"
#include "fuzz/Silence.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    silenceLogs();
    const QByteArray bytes = byteArray(data, size);
    static const MemoryFile file;
    file.write(bytes);

    QByteArray payload;
    const int stored = EmfDeal::getPicDataFromFile(file.path(), payload);
    require(bytes.mid(14).startsWith(payload));
    QByteArray accepted;
    const int format = EmfDeal::decodeEmf(file.path(), accepted);
    require(accepted == payload);
    require(format == 5 || format == stored);
    if (format != 5) {
        require(format < 5 && format != 0 && format != 1 && !payload.isEmpty());
        const auto code = static_cast<DocCovRslt::PAGE_FORMAT_DEF>(format);
        require(bytes.startsWith(EmfDeal::getHeader(payload.size(), code) + payload));
    }
    return 0;
}
