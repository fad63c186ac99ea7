#pragma once

#include <cstring>

/// A floating point number of given bits: what no arithmetic makes, as a kind of NaN, too.
template <typename Float, typename Bits>
Float fromBits(Bits bits)
{
    static_assert(sizeof(Float) == sizeof(Bits));
    Float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

template <typename Bits, typename Float>
Bits bitsOf(Float value)
{
    return fromBits<Bits>(value);
}
