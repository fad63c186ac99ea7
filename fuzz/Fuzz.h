#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

// What libFuzzer calls, if a target has it, and offers. A replay calls the first and mutates
// nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t most, unsigned int seed);
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t most);

/// Ends the process with a find when what must hold does not. Not inlined: the stack tells where.
[[gnu::noinline]] inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

inline QByteArray byteArray(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), static_cast<int>(size)};
}

/// A regular file in memory, for what is only read from files.
class MemoryFile
{
public:
    MemoryFile()
        : descriptor(memfd_create("input", MFD_CLOEXEC))
    {
        require(descriptor >= 0);
    }
    ~MemoryFile() { ::close(descriptor); }
    Q_DISABLE_COPY_MOVE(MemoryFile)

    void write(const QByteArray &content) const
    {
        require(::ftruncate(descriptor, 0) == 0);
        require(::pwrite(descriptor, content.constData(), static_cast<size_t>(content.size()), 0) ==
                content.size());
    }

    QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(descriptor); }

private:
    int descriptor;
};
