#pragma once

#include <KxBase/KxGlobal.h>

#include <string>

namespace KxBase {

/// Bytes of any value, NULs included. A value type: it owns its bytes and a copy is deep.
/// Reentrant: one object must not be changed while another thread uses it.
class KXBASE_EXPORT KxByteArray
{
public:
    /// No bytes.
    KxByteArray() = default;
    /// A copy of `size` bytes from `data`; no bytes when `data` is null or `size` is negative.
    KxByteArray(const char *data, int size);

    /// The bytes, never null and followed by a NUL; valid until the object is changed or destroyed.
    const char *constData() const noexcept { return m_bytes.c_str(); }
    /// The number of bytes, without the NUL that follows them.
    int size() const noexcept { return static_cast<int>(m_bytes.size()); }

    friend bool operator==(const KxByteArray &a, const KxByteArray &b) noexcept
    {
        return a.m_bytes == b.m_bytes;
    }
    friend bool operator!=(const KxByteArray &a, const KxByteArray &b) noexcept
    {
        return !(a == b);
    }

private:
    std::string m_bytes; // never longer than the largest int
};

} // namespace KxBase
