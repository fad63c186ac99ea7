#include "fuzz/Mutators.h"

#include "fuzz/Fuzz.h"

#include <QtEndian>

#include <algorithm>

#include <zlib.h>

namespace {

constexpr std::size_t kSignatureSize = 8;
constexpr std::size_t kTypeSize = 4;
constexpr std::size_t kAroundData = 4 + kTypeSize + 4; // length, type and checksum of a chunk

void correctChecksums(std::uint8_t *picture, std::size_t size)
{
    for (std::size_t at = kSignatureSize; at + kAroundData <= size;) {
        const std::size_t length = qFromBigEndian<quint32>(picture + at);
        if (length > size - at - kAroundData)
            break;
        const std::uint8_t *type = picture + at + 4;
        const auto checksum = crc32(0, type, static_cast<uInt>(kTypeSize + length));
        qToBigEndian(static_cast<quint32>(checksum), picture + at + 4 + kTypeSize + length);
        at += kAroundData + length;
    }
}

} // namespace

std::size_t mutatePng(std::uint8_t *data, std::size_t size, std::size_t most, unsigned int seed)
{
    const std::size_t mutated = LLVMFuzzerMutate(data, size, most);
    if (seed % 8 != 0 && byteArray(data, mutated).startsWith("\x89PNG\r\n\x1a\n"))
        correctChecksums(data, mutated);
    return mutated;
}

std::size_t mutateBehind(std::size_t settings, Mutator *mutate, std::uint8_t *data,
                         std::size_t size, std::size_t most, unsigned int seed)
{
    if (most <= settings)
        return LLVMFuzzerMutate(data, size, most);
    std::fill(data + std::min(size, settings), data + settings, std::uint8_t(0));
    if (seed % 8 == 0)
        LLVMFuzzerMutate(data, settings, settings);
    const std::size_t behind = std::max(size, settings) - settings;
    return settings + mutate(data + settings, behind, most - settings, seed / 8);
}
