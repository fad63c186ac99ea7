#pragma once

#include <KxBase/KxGlobal.h>
#include <KxBase/KxVariant.h>

#include <cstddef>
#include <map>
#include <string>

namespace KxBase {

/// Values by text keys (UTF-8), in the byte order of the keys. A value type. Reentrant: one object
/// must not be changed while another thread uses it.
class KXBASE_EXPORT KxVariantMap
{
    using Entries = std::map<std::string, KxVariant>;

public:
    /// `first` is the key and `second` the value; valid until its entry is gone.
    using iterator = Entries::iterator;
    using const_iterator = Entries::const_iterator;

    /// The value under `key`; one that holds nothing is put there when the key is new.
    KxVariant &operator[](const std::string &key) { return m_entries[key]; }

    /// The entry with exactly this key, or end().
    iterator find(const std::string &key) { return m_entries.find(key); }
    const_iterator find(const std::string &key) const { return m_entries.find(key); }

    iterator begin() noexcept { return m_entries.begin(); }
    iterator end() noexcept { return m_entries.end(); }
    const_iterator begin() const noexcept { return m_entries.begin(); }
    const_iterator end() const noexcept { return m_entries.end(); }

    /// The number of entries.
    std::size_t size() const noexcept { return m_entries.size(); }
    bool empty() const noexcept { return m_entries.empty(); }

    friend bool operator==(const KxVariantMap &a, const KxVariantMap &b)
    {
        return a.m_entries == b.m_entries;
    }
    friend bool operator!=(const KxVariantMap &a, const KxVariantMap &b) { return !(a == b); }

private:
    Entries m_entries;
};

} // namespace KxBase
