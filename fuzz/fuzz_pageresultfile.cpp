// Any bytes as a page result file: the reader takes from them what they hold, and nothing else.
#include "emfdeal/EmfDeal.h"

#include <KxBase/KxLog.h>

#include <cstdint>
#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void ignoreLine(void *, Kxlogger::E_LOG_LEVEL_DEF, const char *, const char *) {}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    KxBase::KxSetLogSink(ignoreLine, nullptr);
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    static const int file = memfd_create("page", 0);
    require(ftruncate(file, 0) == 0);
    require(pwrite(file, data, size, 0) == static_cast<ssize_t>(size));
    const QString path = QStringLiteral("/proc/self/fd/%1").arg(file);

    QByteArray payload;
    const int stored = EmfDeal::getPicDataFromFile(path, payload);
    require(bytes.mid(14).startsWith(payload));
    QByteArray accepted;
    const int format = EmfDeal::decodeEmf(path, accepted);
    require(accepted == payload);
    require(format == 5 || format == stored);
    if (format != 5) {
        require(format < 5 && format != 0 && format != 1 && !payload.isEmpty());
        const auto code = static_cast<DocCovRslt::PAGE_FORMAT_DEF>(format);
        require(bytes.startsWith(EmfDeal::getHeader(payload.size(), code) + payload));
    }
    return 0;
}
